#include "ui/editor/SourceEdit.h"

#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QFontMetricsF>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextDocument>
#include <QTimerEvent>
#include <algorithm>
#include <new>
#include <utility>

#include "ui/common/FocusGate.h"
#include "ui/common/Fonts.h"
#include "ui/common/MemoryGuard.h"
#include "ui/common/Naming.h"
#include "ui/editor/EditKeys.h"
#include "ui/editor/SourceCharacters.h"

namespace tavinor {

namespace {

constexpr int tabColumns = 8;
constexpr int retryPeriod = 1000;  // milliseconds

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
    connect(document(), &QTextDocument::contentsChange, this, [this](int position, int removed, int added) {
        if (!settingSource_) foreign_.note(position, added);
        change_ = {.position = position, .removed = removed, .added = added};
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
    if (!largeEdits_.isGoingOn() && !FocusGate::isInReach(this)) {
        takeBack();
        return;
    }
    if (document()->isEmpty()) arriving_.drop();
    foreign_.replace();
    undoSteps_ = document()->availableUndoSteps();
    emit edited();
}

/// What a tool has written behind a modal window. Where Qt has made it a part of what the user typed last,
/// that is typed again.
void SourceEdit::takeBack() {
    const QScopedValueRollback setting(settingSource_, true);
    foreign_.forget();
    if (document()->availableUndoSteps() > undoSteps_) {
        QPlainTextEdit::undo();
    } else {
        const QString typed = source().remove(change_.position, change_.added);
        const int written = change_.added;
        QPlainTextEdit::undo();
        QTextCursor cursor(document());
        cursor.setPosition(change_.position);
        cursor.insertText(typed.mid(change_.position, change_.removed - written));
    }
    document()->clearUndoRedoStacks(QTextDocument::RedoStack);
    undoSteps_ = document()->availableUndoSteps();
}

/// Not `toPlainText`, which turns no-break spaces into plain ones.
QString SourceEdit::source() {
    fill();
    return sourceCharacters(document()->toRawText());
}

void SourceEdit::setSource(const QString& text) {
    largeEdits_.forget();
    undoSteps_ = 0;
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

}  // namespace tavinor
