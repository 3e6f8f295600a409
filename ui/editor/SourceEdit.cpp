#include "ui/editor/SourceEdit.h"

#include <QContextMenuEvent>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFontMetricsF>
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
#include "ui/common/Naming.h"
#include "ui/editor/SourceCharacters.h"
#include "ui/editor/SourceLimits.h"

namespace tavinor {

namespace {

constexpr int tabColumns = 8;
/// Qt takes it for this on some platforms only.
constexpr QKeyCombination redoKey = Qt::ControlModifier | Qt::Key_Y;
// What comes in between two paints, whichever is reached first.
constexpr qsizetype pieceSize = qsizetype{512} * 1024;  // characters
constexpr int pieceLines = 32'000;

/// Inside Qt a line ends in a paragraph separator.
QString withLineFeeds(QString text) {
    return text.replace(QChar(QChar::ParagraphSeparator), QChar(QChar::LineFeed));
}

bool isModifier(int key) {
    return key == Qt::Key_Control || key == Qt::Key_Alt || key == Qt::Key_AltGr || key == Qt::Key_Shift ||
           key == Qt::Key_Meta;
}

/// Whether the event may change the text, or depends on where it ends. The beginning of a menu's key does
/// not.
bool needsWholeText(const QEvent& event) {
    switch (event.type()) {
        case QEvent::KeyPress: return !isModifier(static_cast<const QKeyEvent&>(event).key());
        case QEvent::InputMethod:
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
        case QEvent::ContextMenu: return true;
        default: return false;
    }
}

}  // namespace

SourceEdit::SourceEdit(const QString& name, const QString& accessibleName, QWidget* parent)
    : QPlainTextEdit(parent) {
    named(this, name, accessibleName);
    useFont(this, fixedFont);
    setTabStops();
    setLineWrapMode(QPlainTextEdit::NoWrap);
    setFrameShape(QFrame::NoFrame);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    viewport()->setMouseTracking(true);
    connect(this, &QPlainTextEdit::selectionChanged, this, &SourceEdit::touched);
    connect(document(), &QTextDocument::contentsChange, this,
            [this](int position, int /*removed*/, int added) { noteAdded(position, added); });
    connect(this, &QPlainTextEdit::textChanged, this, &SourceEdit::noteEdit);
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
    if (document()->isEmpty()) arriving_.truncate(arrived_);
    replaceForeign();
    emit edited();
}

/// Not `toPlainText`, which turns no-break spaces into plain ones.
QString SourceEdit::source() {
    fill();
    return sourceCharacters(document()->toRawText());
}

void SourceEdit::setSource(const QString& text) {
    arriving_ = sourceCharacters(text);
    arrived_ = 0;
    const QScopedValueRollback setting(settingSource_, true);
    setPlainText(nextPiece());
    // A piece must not become a step of undo; until the last one has come there is nothing to undo.
    setUndoRedoEnabled(false);
    filling_.start(0, this);
    if (arrived_ == arriving_.size()) fill();
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
    const Place anchor = placeOf(textCursor().anchor());
    const Place caret = placeOf(textCursor().position());
    const int row = verticalScrollBar()->value();
    const int left = horizontalScrollBar()->value();
    setSource(text);
    fill();
    QTextCursor cursor(document());
    cursor.setPosition(positionOf(anchor));
    cursor.setPosition(positionOf(caret), QTextCursor::KeepAnchor);
    setTextCursor(cursor);
    verticalScrollBar()->setValue(row);
    horizontalScrollBar()->setValue(left);
}

void SourceEdit::handOut(const std::function<void(const QString&)>& take) const {
    for (QTextBlock block = document()->firstBlock(); block.isValid(); block = block.next()) {
        take(block.next().isValid() ? block.text() + '\n' : block.text());
    }
    if (!isFilling()) return;
    for (qsizetype start = arrived_; start < arriving_.size();) {
        const qsizetype lineEnd = arriving_.indexOf('\n', start);
        const qsizetype end = lineEnd < 0 ? arriving_.size() : lineEnd + 1;
        take(arriving_.mid(start, end - start));
        start = end;
    }
}

/// Whole lines, so that no two pieces share one.
QString SourceEdit::nextPiece() {
    qsizetype end = arrived_;
    for (int lines = 0; end < arriving_.size() && end - arrived_ < pieceSize && lines < pieceLines; ++lines) {
        const qsizetype lineEnd = arriving_.indexOf('\n', end);
        end = lineEnd < 0 ? arriving_.size() : lineEnd + 1;
    }
    return arriving_.mid(std::exchange(arrived_, end), end - arrived_);
}

void SourceEdit::addPiece() {
    const QScopedValueRollback setting(settingSource_, true);
    QTextCursor end(document());
    end.movePosition(QTextCursor::End);
    end.insertText(nextPiece());
}

void SourceEdit::fill() {
    if (!isFilling()) return;
    while (arrived_ < arriving_.size()) addPiece();
    filling_.stop();
    arriving_.clear();
    arrived_ = 0;
    setUndoRedoEnabled(true);
}

void SourceEdit::timerEvent(QTimerEvent* event) {
    if (event->timerId() != filling_.timerId()) {
        QPlainTextEdit::timerEvent(event);
        return;
    }
    addPiece();
    if (arrived_ == arriving_.size()) fill();
}

bool SourceEdit::viewportEvent(QEvent* event) {
    if (needsWholeText(*event)) fill();
    return QPlainTextEdit::viewportEvent(event);
}

void SourceEdit::insertFromMimeData(const QMimeData* source) {
    if (!source->hasText()) return;
    fill();
    const QString text = sourceCharacters(source->text());
    const QString refusal = dropping_ ? QString() : whyNot(text, textCursor());
    if (!refusal.isEmpty()) {
        emit refused(refusal);
        return;
    }
    insertPlainText(text);
    ensureCursorVisible();
}

/// Refused before Qt takes away what is only being moved.
void SourceEdit::dropEvent(QDropEvent* event) {
    fill();
    const QPoint place = event->position().toPoint();
    const QString refusal = whyNot(sourceCharacters(event->mimeData()->text()), cursorForPosition(place));
    if (!refusal.isEmpty()) {
        event->ignore();
        emit refused(refusal);
        return;
    }
    const QScopedValueRollback dropping(dropping_, true);
    QPlainTextEdit::dropEvent(event);
}

/// Why `text` cannot take the place of what `cursor` selects; empty when it can.
QString SourceEdit::whyNot(const QString& text, const QTextCursor& cursor) const {
    const QTextBlock first = document()->findBlock(cursor.selectionStart());
    const QTextBlock last = document()->findBlock(cursor.selectionEnd());
    const QString before = first.text().left(cursor.selectionStart() - first.position());
    const QString behind = last.text().mid(cursor.selectionEnd() - last.position());
    SourceExtent extent = extentOf(before + text + behind);
    extent.lines += blockCount() - 1 - (last.blockNumber() - first.blockNumber());
    extent.size =
        document()->characterCount() - 1 - (cursor.selectionEnd() - cursor.selectionStart()) + text.size();
    return whyTooLarge(extent);
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
        QPlainTextEdit::keyPressEvent(&enter);
    } else if (event->keyCombination() == redoKey) {
        redo();
    } else if (!belongsToMenus(*event)) {
        QPlainTextEdit::keyPressEvent(event);
    }
    emit touched();
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
/// with that is the same everywhere.
void SourceEdit::contextMenuEvent(QContextMenuEvent* event) {
    const std::unique_ptr<QMenu> menu(createStandardContextMenu(event->pos()));
    if (auto* selectAll = menu->findChild<QAction*>(QStringLiteral("select-all"))) {
        selectAll->setText(selectAll->text().section('\t', 0, 0));
    }
    if (auto* again = menu->findChild<QAction*>(QStringLiteral("edit-redo"))) {
        again->setText(again->text().section('\t', 0, 0) + '\t' +
                       QKeySequence(redoKey).toString(QKeySequence::NativeText));
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
