#pragma once

#include <QKeySequence>
#include <QList>
#include <QPlainTextEdit>
#include <QString>

namespace tavinor {

/// The text box of the editor: fixed-width, unwrapped, tab stops every eight columns. A line end counts as
/// one character.
class SourceEdit : public QPlainTextEdit {
    Q_OBJECT

  public:
    SourceEdit(const QString& name, const QString& accessibleName, QWidget* parent);

    /// The whole text, to the letter, with LF between its lines.
    [[nodiscard]] QString source() const;
    /// Puts another text in place of the whole one; it cannot be undone. Any kind of line end is taken.
    void setSource(const QString& text);

    [[nodiscard]] bool hasSelection() const { return textCursor().hasSelection(); }
    /// Position, counted from 0, at which the selection starts; the caret's where nothing is selected.
    [[nodiscard]] qsizetype selectionStart() const { return textCursor().selectionStart(); }
    /// Selects and scrolls into view; `start` counts from 0.
    void select(qsizetype start, qsizetype length);

    /// Keys that the menus act on also while the text has the focus, whatever the text box does with them.
    void leaveToMenus(const QList<QKeySequence>& keys) { menuKeys_ = keys; }

  signals:
    /// The box got the focus, a key was pressed in it, the mouse moved over it, or its selection changed.
    void touched();

  protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void changeEvent(QEvent* event) override;
    [[nodiscard]] QMimeData* createMimeDataFromSelection() const override;

  private:
    [[nodiscard]] bool belongsToMenus(const QKeyEvent& event) const;
    void setTabStops();

    QList<QKeySequence> menuKeys_;
};

}  // namespace tavinor
