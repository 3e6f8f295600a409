#pragma once

#include <QBasicTimer>
#include <QKeySequence>
#include <QList>
#include <QString>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>

#include "ui/common/UnwrappedText.h"
#include "ui/editor/ForeignCharacters.h"
#include "ui/editor/LargeEdits.h"
#include "ui/editor/TextPieces.h"

namespace tavinor {

/// The text box of the editor: fixed-width, unwrapped, tab stops every eight columns. A line end counts as
/// one character. Qt takes a microsecond or more for each line, so a long text is in view at once
/// and comes in by pieces while nothing else is going on; what is typed, clicked or read finds all of it
/// there.
class SourceEdit : public UnwrappedText {
    Q_OBJECT

  public:
    SourceEdit(const QString& name, const QString& accessibleName, QWidget* parent);

    /// Its characters, also those that are still to come into the box.
    [[nodiscard]] qsizetype size() const { return document()->characterCount() - 1 + arriving_.left(); }
    /// The whole text, to the letter, with LF between its lines.
    [[nodiscard]] QString source();
    /// Puts another text in place of the whole one; it cannot be undone. See `sourceCharacters` for what
    /// becomes of some of them. Silent.
    void setSource(const QString& text);
    /// The same for another version of the text: caret, selection and what is in view stay at their lines.
    void setSourceInPlace(const QString& text);
    /// Hands out the whole text line by line, each with its LF, and changes nothing. Needs no memory for a
    /// copy of it.
    void handOut(const std::function<void(const QString&)>& take) const;

    [[nodiscard]] bool hasSelection() const { return textCursor().hasSelection(); }
    /// Position, counted from 0, at which the selection starts; the caret's where nothing is selected.
    [[nodiscard]] qsizetype selectionStart() const { return textCursor().selectionStart(); }
    /// Selects and scrolls into view; `start` counts from 0.
    void select(qsizetype start, qsizetype length);

    /// Whether the end of the text is still to come into the box.
    [[nodiscard]] bool isFilling() const { return filling_.isActive(); }

    /// Keys that the menus act on also while the text has the focus, whatever the text box does with them:
    /// see behaviour.md, Editor: keys and text.
    void leaveToMenus(const QList<QKeySequence>& keys) { menuKeys_ = keys; }

    /// How long a change of the text may take before it shows how far it is.
    void setPatience(std::chrono::milliseconds patience) { largeEdits_.setPatience(patience); }

    // In place of the box's own, which would not answer for seconds where much is to be done, and know no
    // lack of memory.
    void cut();
    void copy();
    void undo();
    void redo();

  signals:
    /// The box got the focus, a key was pressed in it, the mouse moved over it, or its selection changed.
    void touched();
    /// The user changed the text.
    void edited();
    /// A change is too large, for the reason given, or there is too little memory. Nothing has changed.
    void refused(const QString& reason);

  protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void changeEvent(QEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void insertFromMimeData(const QMimeData* source) override;
    void dropEvent(QDropEvent* event) override;
    [[nodiscard]] QMimeData* createMimeDataFromSelection() const override;

  private:
    /// A place in the text as a reader thinks of it.
    struct Place {
        int line;
        int column;
    };

    /// What the user sees of the text, and where the next key goes.
    struct View {
        Place anchor;
        Place caret;
        int row;   ///< Of the vertical scroll bar.
        int left;  ///< Of the horizontal one.
    };

    /// Characters of the text that went, and others that came there.
    struct Change {
        int position = 0;
        int removed = 0;
        int added = 0;
    };

    [[nodiscard]] Place placeOf(int position) const;
    [[nodiscard]] int positionOf(const Place& place) const;
    [[nodiscard]] bool belongsToMenus(const QKeyEvent& event) const;
    void noteEdit();
    void takeBack();
    void takeKey(QKeyEvent* event);
    void dropLarge(QDropEvent* event, const QTextCursor& place, const QString& text);
    bool accepts(const QString& text, const QTextCursor& cursor);
    void setTabStops();
    void addPiece();
    void fill();
    void fillMore();
    bool guarded(const std::function<void()>& procedure);
    void insert(const QMimeData& source);
    void drop(QDropEvent* event);
    [[nodiscard]] std::unique_ptr<QMimeData> selectionAsMimeData() const;
    void returnToView();

    TextPieces arriving_;            ///< The text that is coming in.
    QBasicTimer filling_;            ///< Runs until all of it has come.
    bool shortOfMemory_ = false;     ///< The last piece has not come; the user has been told.
    std::optional<View> returning_;  ///< What is to be seen again when enough of it has.
    LargeEdits largeEdits_;
    bool settingSource_ = false;  ///< A change of the text is none of the user's.
    bool dropping_ = false;       ///< Looked at already.
    Change change_;               ///< The last one.
    int undoSteps_ = 0;           ///< Before that change.
    ForeignCharacters foreign_;
    QList<QKeySequence> menuKeys_;
};

}  // namespace tavinor
