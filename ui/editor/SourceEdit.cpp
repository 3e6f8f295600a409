#include "ui/editor/SourceEdit.h"

#include <QContextMenuEvent>
#include <QFontMetricsF>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>
#include <QTextDocument>
#include <memory>

#include "ui/common/Fonts.h"
#include "ui/common/Naming.h"

namespace tavinor {

namespace {

constexpr int tabColumns = 8;

/// Inside the toolkit a line ends in a paragraph separator.
QString withLineFeeds(QString text) {
    return text.replace(QChar(QChar::ParagraphSeparator), QChar(QChar::LineFeed));
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
}

/// Not `toPlainText`, which turns no-break spaces into plain ones.
QString SourceEdit::source() const {
    return withLineFeeds(document()->toRawText());
}

void SourceEdit::setSource(const QString& text) {
    setPlainText(text);
}

void SourceEdit::select(qsizetype start, qsizetype length) {
    QTextCursor cursor(document());
    cursor.setPosition(static_cast<int>(start));
    cursor.setPosition(static_cast<int>(start + length), QTextCursor::KeepAnchor);
    setTextCursor(cursor);
}

bool SourceEdit::belongsToMenus(const QKeyEvent& event) const {
    return menuKeys_.contains(QKeySequence(event.keyCombination()));
}

/// The toolkit offers every key to the box with the focus before its menus see it.
bool SourceEdit::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride && belongsToMenus(*static_cast<QKeyEvent*>(event))) {
        event->ignore();
        return true;
    }
    return QPlainTextEdit::event(event);
}

/// The key of a disabled command comes here, and does nothing.
void SourceEdit::keyPressEvent(QKeyEvent* event) {
    if (!belongsToMenus(*event)) QPlainTextEdit::keyPressEvent(event);
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

/// The toolkit's menu, without the promise that Ctrl+A selects all: here it opens a file.
void SourceEdit::contextMenuEvent(QContextMenuEvent* event) {
    const std::unique_ptr<QMenu> menu(createStandardContextMenu(event->pos()));
    if (auto* selectAll = menu->findChild<QAction*>(QStringLiteral("select-all"))) {
        selectAll->setText(selectAll->text().section('\t', 0, 0));
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
