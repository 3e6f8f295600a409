#include "ui/editor/SourceEdit.h"

#include <QApplication>
#include <QClipboard>
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
#include <new>
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
constexpr int retryPeriod = 1000;  // milliseconds

/// Inside Qt a line ends in a paragraph separator.
QString withLineFeeds(QString text) {
    return text.replace(QChar(QChar::ParagraphSeparator), QChar(QChar::LineFeed));
}

}  // namespace

SourceEdit::SourceEdit(const QString& name, const QString& accessibleName, QWidget* parent)
    : UnwrappedText(parent), largeEdits_(this), foreign_(document()) {
    named(this, name, accessibleName);
    useFont(this, fixedFont);
    setTabStops();
    setFrameShape(QFrame::NoFrame);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    viewport()->setMouseTracking(true);
    connect(this, &QPlainTextEdit::selectionChanged, this, &SourceEdit::touched);
    connect(document(), &QTextDocument::contentsChange, this,
            [this](int position, int /*removed*/, int added) {
                if (!settingSource_) foreign_.note(position, added);
            });
    connect(this, &QPlainTextEdit::textChanged, this, &SourceEdit::noteEdit);
    connect(&largeEdits_, &LargeEdits::memoryOut, this, [this] { emit refused(memoryOutText()); });
}

/// Runs a part of an event procedure. False where memory runs out: then it ends there, and no exception
/// reaches Qt, which called it.
bool SourceEdit::guarded(const std::function<void()>& procedure) {
    try {
        procedure();
        return true;
    } catch (const std::bad_alloc&) {
        emit refused(memoryOutText());
        return false;
    }
}

/// An assistive tool writes without any event. Where it has taken away all that it found, it meant all of the
/// text.
void SourceEdit::noteEdit() {
    if (settingSource_) return;
    if (document()->isEmpty()) arriving_.drop();
    foreign_.replace();
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
    const bool again = std::exchange(shortOfMemory_, false);
    try {
        fillMore();
    } catch (const std::bad_alloc&) {
        shortOfMemory_ = true;
        if (!again) emit refused(memoryOutText());
    }
    if (isFilling()) filling_.start(shortOfMemory_ ? retryPeriod : 0, this);
}

void SourceEdit::fillMore() {
    addPiece();
    returnToView();
    if (arriving_.areAllTaken()) fill();
}

bool SourceEdit::viewportEvent(QEvent* event) {
    if (needsWholeText(*event) && !guarded([this] { fill(); })) return true;
    return QPlainTextEdit::viewportEvent(event);
}

void SourceEdit::insertFromMimeData(const QMimeData* source) {
    guarded([this, source] { insert(*source); });
}

void SourceEdit::insert(const QMimeData& source) {
    if (!source.hasText()) return;
    fill();
    const QString text = sourceCharacters(source.text());
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
    if (!guarded([this, event] { drop(event); })) event->ignore();
}

void SourceEdit::drop(QDropEvent* event) {
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
    const auto procedure = [this, drop] { guarded(drop); };
    QMetaObject::invokeMethod(this, procedure, Qt::QueuedConnection);
}

/// False when `text` cannot take the place of what `cursor` selects; the user is told why.
bool SourceEdit::accepts(const QString& text, const QTextCursor& cursor) {
    const QString reason = whyTooLarge(extentWith(text, cursor));
    if (!reason.isEmpty()) emit refused(reason);
    return reason.isEmpty();
}

/// Nothing goes that has not come to the clipboard.
void SourceEdit::cut() {
    guarded([this] {
        fill();
        if (!hasSelection()) return;
        QApplication::clipboard()->setMimeData(selectionAsMimeData().release());
        if (LargeEdits::isLarge(textCursor())) {
            largeEdits_.removeSelection();
        } else {
            textCursor().removeSelectedText();
            ensureCursorVisible();
        }
    });
}

void SourceEdit::copy() {
    guarded([this] {
        if (hasSelection()) QApplication::clipboard()->setMimeData(selectionAsMimeData().release());
    });
}

void SourceEdit::undo() {
    guarded([this] {
        fill();
        largeEdits_.undo();
    });
}

void SourceEdit::redo() {
    guarded([this] {
        fill();
        largeEdits_.redo();
    });
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
    if (needsWholeText(*event) && !guarded([this] { fill(); })) return true;
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
    if (event->matches(QKeySequence::Cut)) {
        cut();
    } else if (event->matches(QKeySequence::Copy)) {
        copy();
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
    redirect("edit-cut", &SourceEdit::cut);
    redirect("edit-copy", &SourceEdit::copy);
    redirect("edit-undo", &SourceEdit::undo);
    if (QAction* again = redirect("edit-redo", &SourceEdit::redo)) {
        again->setText(withKey(*again, '\t' + QKeySequence(redoKey).toString(QKeySequence::NativeText)));
    }
    if (LargeEdits::isLarge(textCursor())) {
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

/// For what Qt does by itself: a drag, and the selection that other programs may paste. Without memory there
/// is nothing to be had.
QMimeData* SourceEdit::createMimeDataFromSelection() const {
    try {
        return selectionAsMimeData().release();
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

std::unique_ptr<QMimeData> SourceEdit::selectionAsMimeData() const {
    auto mime = std::make_unique<QMimeData>();
    mime->setText(withLineFeeds(textCursor().selectedText()));
    return mime;
}

}  // namespace tavinor
