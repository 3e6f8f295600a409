#include "ui/editor/SourceEdit.h"

#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QDragEnterEvent>
#include <QDragLeaveEvent>
#include <QDropEvent>
#include <QFontMetricsF>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextDocument>
#include <QTimerEvent>
#include <algorithm>
#include <memory>
#include <utility>

#include "ui/common/FileDrops.h"
#include "ui/common/Fonts.h"
#include "ui/common/MemoryGuard.h"
#include "ui/common/Naming.h"
#include "ui/editor/EditKeys.h"
#include "ui/editor/SourceCharacters.h"
#include "ui/editor/SourceLimits.h"

namespace tavinor {

namespace {

constexpr int tabColumns = 8;
/// Qt takes it for this on some platforms only.
constexpr QKeyCombination redoKey = Qt::ControlModifier | Qt::Key_Y;

/// Inside Qt a line ends in a paragraph separator.
QString withLineFeeds(QString text) {
    return text.replace(QChar(QChar::ParagraphSeparator), QChar(QChar::LineFeed));
}

}  // namespace

SourceEdit::SourceEdit(const QString& name, const QString& accessibleName, QWidget* parent)
    : UnwrappedText(parent), largeEdits_(this) {
    named(this, name, accessibleName);
    useFont(this, fixedFont);
    setTabStops();
    setFrameShape(QFrame::NoFrame);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    viewport()->setMouseTracking(true);
    connect(this, &QPlainTextEdit::selectionChanged, this, &SourceEdit::touched);
    connect(document(), &QTextDocument::contentsChange, this,
            [this](int position, int /*removed*/, int added) { noteAdded(position, added); });
    connect(this, &QPlainTextEdit::textChanged, this, &SourceEdit::noteEdit);
    connect(&largeEdits_, &LargeEdits::memoryOut, this, [this] { emit refused(memoryOutText()); });
}

/// Keys, input methods and assistive tools put characters into the text on ways of their own.
void SourceEdit::noteAdded(int position, int added) {
    if (settingSource_) return;
    QTextBlock block = document()->findBlock(position);
    for (; block.isValid() && block.position() < position + added; block = block.next()) {
        const QString text = block.text();
        for (int i = std::max(position - block.position(), 0); i < text.size(); ++i) {
            if (isForeignToSource(text[i])) foreign_.append(block.position() + i);
        }
    }
}

/// Not while the user goes back: what was replaced is there again until the next undo, and replacing it once
/// more would leave no way further back.
void SourceEdit::replaceForeign() {
    const QList<int> positions = std::exchange(foreign_, {});
    if (positions.isEmpty() || document()->isRedoAvailable()) return;
    QTextCursor cursor(document());
    cursor.joinPreviousEditBlock();
    for (const int position : positions) {
        cursor.setPosition(position);
        cursor.setPosition(position + 1, QTextCursor::KeepAnchor);
        cursor.insertText(sourceCharacters(document()->characterAt(position)));
    }
    cursor.endEditBlock();
}

/// An assistive tool writes without any event. Where it has taken away all that it found, it meant all of the
/// text.
void SourceEdit::noteEdit() {
    if (settingSource_) return;
    if (document()->isEmpty()) arriving_.drop();
    replaceForeign();
    emit edited();
}

/// Not `toPlainText`, which turns no-break spaces into plain ones.
QString SourceEdit::source() {
    fill();
    return sourceCharacters(document()->toRawText());
}

void SourceEdit::setSource(const QString& text) {
    largeEdits_.forget();
    returning_.reset();
    arriving_ = TextPieces(sourceCharacters(text));
    const QScopedValueRollback setting(settingSource_, true);
    setPlainText(arriving_.next());
    // A piece must not become a step of undo; until the last one has come there is nothing to undo.
    setUndoRedoEnabled(false);
    filling_.start(0, this);
    if (arriving_.areAllTaken()) fill();
}

SourceEdit::Place SourceEdit::placeOf(int position) const {
    const QTextBlock block = document()->findBlock(position);
    return {block.blockNumber(), position - block.position()};
}

/// The nearest one there is.
int SourceEdit::positionOf(const Place& place) const {
    const int line = std::min(place.line, document()->blockCount() - 1);
    const QTextBlock block = document()->findBlockByNumber(line);
    return block.position() + std::min(place.column, block.length() - 1);
}

void SourceEdit::setSourceInPlace(const QString& text) {
    const View view =
        returning_.value_or(View{placeOf(textCursor().anchor()), placeOf(textCursor().position()),
                                 verticalScrollBar()->value(), horizontalScrollBar()->value()});
    setSource(text);
    returning_ = view;
    returnToView();
}

/// As soon as all of its lines are there.
void SourceEdit::returnToView() {
    if (!returning_) return;
    const int last = std::max(
        {returning_->anchor.line, returning_->caret.line, returning_->row + verticalScrollBar()->pageStep()});
    if (isFilling() && blockCount() <= last + 1) return;
    const View view = *std::exchange(returning_, std::nullopt);
    QTextCursor cursor(document());
    cursor.setPosition(positionOf(view.anchor));
    cursor.setPosition(positionOf(view.caret), QTextCursor::KeepAnchor);
    setTextCursor(cursor);
    verticalScrollBar()->setValue(view.row);
    horizontalScrollBar()->setValue(view.left);
}

void SourceEdit::handOut(const std::function<void(const QString&)>& take) const {
    for (QTextBlock block = document()->firstBlock(); block.isValid(); block = block.next()) {
        take(block.next().isValid() ? block.text() + '\n' : block.text());
    }
    arriving_.handOut(take);
}

void SourceEdit::addPiece() {
    const QScopedValueRollback setting(settingSource_, true);
    QTextCursor end(document());
    end.movePosition(QTextCursor::End);
    end.insertText(arriving_.next());
}

/// The window is served meanwhile; what the user does then waits.
void SourceEdit::fill() {
    largeEdits_.finish();
    if (!isFilling()) return;
    while (!arriving_.areAllTaken()) {
        addPiece();
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    }
    filling_.stop();
    arriving_.drop();
    setUndoRedoEnabled(true);
    returnToView();
}

void SourceEdit::timerEvent(QTimerEvent* event) {
    if (event->timerId() != filling_.timerId()) {
        QPlainTextEdit::timerEvent(event);
        return;
    }
    addPiece();
    returnToView();
    if (arriving_.areAllTaken()) fill();
}

bool SourceEdit::viewportEvent(QEvent* event) {
    if (needsWholeText(*event)) fill();
    return QPlainTextEdit::viewportEvent(event);
}

void SourceEdit::insertFromMimeData(const QMimeData* source) {
    if (!source->hasText()) return;
    fill();
    const QString text = sourceCharacters(source->text());
    if (!dropping_ && !accepts(text, textCursor())) return;
    if (LargeEdits::isLarge(text) || LargeEdits::isLarge(textCursor())) {
        largeEdits_.replace(textCursor(), textCursor(), text);
    } else {
        insertPlainText(text);
    }
    ensureCursorVisible();
}

/// Refused before Qt takes away what is only being moved.
void SourceEdit::dropEvent(QDropEvent* event) {
    fill();
    const QTextCursor place = cursorForPosition(event->position().toPoint());
    const QString text = sourceCharacters(event->mimeData()->text());
    if (!accepts(text, place)) {
        event->ignore();
        return;
    }
    if (LargeEdits::isLarge(text)) {
        dropLarge(event, place, text);
        return;
    }
    const QScopedValueRollback dropping(dropping_, true);
    QPlainTextEdit::dropEvent(event);
}

/// Done when the drag is over: the program that the text comes from waits for that. Qt shows where a drop
/// would go until the mouse leaves.
void SourceEdit::dropLarge(QDropEvent* event, const QTextCursor& place, const QString& text) {
    QDragLeaveEvent leave;
    dragLeaveEvent(&leave);
    event->acceptProposedAction();
    const bool moved = event->source() == viewport() && event->dropAction() == Qt::MoveAction;
    const auto drop = [this, moved, place, text] {
        fill();
        largeEdits_.replace(moved ? textCursor() : place, place, text);
    };
    QMetaObject::invokeMethod(this, drop, Qt::QueuedConnection);
}

/// False when `text` cannot take the place of what `cursor` selects; the user is told why.
bool SourceEdit::accepts(const QString& text, const QTextCursor& cursor) {
    const QString reason = whyTooLarge(extentWith(text, cursor));
    if (!reason.isEmpty()) emit refused(reason);
    return reason.isEmpty();
}

void SourceEdit::cut() {
    fill();
    if (!LargeEdits::isLarge(textCursor())) {
        QPlainTextEdit::cut();
        return;
    }
    copy();
    largeEdits_.removeSelection();
}

void SourceEdit::undo() {
    fill();
    largeEdits_.undo();
}

void SourceEdit::redo() {
    fill();
    largeEdits_.redo();
}

void SourceEdit::select(qsizetype start, qsizetype length) {
    fill();
    QTextCursor cursor(document());
    cursor.setPosition(static_cast<int>(start));
    cursor.setPosition(static_cast<int>(start + length), QTextCursor::KeepAnchor);
    setTextCursor(cursor);
}

bool SourceEdit::belongsToMenus(const QKeyEvent& event) const {
    return menuKeys_.contains(QKeySequence(event.keyCombination()));
}

/// Qt offers every key to the box with the focus before its menus see it.
bool SourceEdit::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride && belongsToMenus(*static_cast<QKeyEvent*>(event))) {
        event->ignore();
        return true;
    }
    if (needsWholeText(*event)) fill();
    return QPlainTextEdit::event(event);
}

/// The key of a disabled command comes here, and does nothing. A line has one kind of end, so Shift makes no
/// difference to Enter.
void SourceEdit::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::InsertLineSeparator)) {
        QKeyEvent enter(event->type(), Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"),
                        event->isAutoRepeat());
        takeKey(&enter);
    } else if (event->keyCombination() == redoKey || event->matches(QKeySequence::Redo)) {
        redo();
    } else if (event->matches(QKeySequence::Undo)) {
        undo();
    } else if (!belongsToMenus(*event)) {
        takeKey(event);
    }
    emit touched();
}

void SourceEdit::takeKey(QKeyEvent* event) {
    const bool large = LargeEdits::isLarge(textCursor());
    if (large && event->matches(QKeySequence::Cut)) {
        cut();
    } else if (large && removesSelection(*event)) {
        largeEdits_.removeSelection();
    } else if (large && replacesSelection(*event)) {
        largeEdits_.removeSelection([this, event] { QPlainTextEdit::keyPressEvent(event); });
    } else {
        QPlainTextEdit::keyPressEvent(event);
    }
}

void SourceEdit::inputMethodEvent(QInputMethodEvent* event) {
    const auto compose = [this, event] { QPlainTextEdit::inputMethodEvent(event); };
    const bool writes = !event->commitString().isEmpty() || !event->preeditString().isEmpty();
    if (writes && LargeEdits::isLarge(textCursor())) {
        largeEdits_.removeSelection(compose);
    } else {
        compose();
    }
}

void SourceEdit::mouseMoveEvent(QMouseEvent* event) {
    QPlainTextEdit::mouseMoveEvent(event);
    emit touched();
}

void SourceEdit::focusInEvent(QFocusEvent* event) {
    QPlainTextEdit::focusInEvent(event);
    emit touched();
}

/// A file is left to the window, which opens it; the box would take its address for a text.
void SourceEdit::dragEnterEvent(QDragEnterEvent* event) {
    if (carriesFiles(*event->mimeData())) {
        event->ignore();
    } else {
        QPlainTextEdit::dragEnterEvent(event);
    }
}

/// Qt's menu, without the promise that Ctrl+A selects all: here it opens a file. It names the key to redo
/// with that is the same everywhere, and its commands are those of the box.
void SourceEdit::contextMenuEvent(QContextMenuEvent* event) {
    const std::unique_ptr<QMenu> menu(createStandardContextMenu(event->pos()));
    const auto withKey = [](const QAction& action, const QString& key) {
        return action.text().section('\t', 0, 0) + key;
    };
    if (auto* selectAll = menu->findChild<QAction*>(QStringLiteral("select-all"))) {
        selectAll->setText(withKey(*selectAll, {}));
    }
    const auto redirect = [&menu, this](const char* name, auto command) {
        auto* action = menu->findChild<QAction*>(QString::fromLatin1(name));
        if (action == nullptr) return action;
        disconnect(action, &QAction::triggered, nullptr, nullptr);
        connect(action, &QAction::triggered, this, command, Qt::QueuedConnection);  // the menu has gone then
        return action;
    };
    redirect("edit-undo", &SourceEdit::undo);
    if (QAction* again = redirect("edit-redo", &SourceEdit::redo)) {
        again->setText(withKey(*again, '\t' + QKeySequence(redoKey).toString(QKeySequence::NativeText)));
    }
    if (LargeEdits::isLarge(textCursor())) {
        redirect("edit-cut", &SourceEdit::cut);
        redirect("edit-delete", [this] { largeEdits_.removeSelection(); });
    }
    menu->exec(event->globalPos());
}

void SourceEdit::changeEvent(QEvent* event) {
    QPlainTextEdit::changeEvent(event);
    if (event->type() == QEvent::FontChange) setTabStops();
}

void SourceEdit::setTabStops() {
    setTabStopDistance(tabColumns * QFontMetricsF(font()).horizontalAdvance(' '));
}

QMimeData* SourceEdit::createMimeDataFromSelection() const {
    auto mime = std::make_unique<QMimeData>();
    mime->setText(withLineFeeds(textCursor().selectedText()));
    return mime.release();
}

}  // namespace tavinor
