// How texts come into the editor's box and leave it: the clipboard, drag and drop.

#include <QApplication>
#include <QClipboard>
#include <QDragEnterEvent>
#include <QDragLeaveEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QScopedValueRollback>
#include <new>

#include "ui/common/FileDrops.h"
#include "ui/common/FocusGate.h"
#include "ui/editor/SourceCharacters.h"
#include "ui/editor/SourceEdit.h"
#include "ui/editor/SourceLimits.h"

namespace tavinor {

namespace {

/// Inside Qt a line ends in a paragraph separator.
QString withLineFeeds(QString text) {
    return text.replace(QChar(QChar::ParagraphSeparator), QChar(QChar::LineFeed));
}

}  // namespace

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
    if (!FocusGate::isInReach(this) || !accepts(text, place)) {
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

/// A file is left to the window, which opens it; the box would take its address for a text.
void SourceEdit::dragEnterEvent(QDragEnterEvent* event) {
    if (carriesFiles(*event->mimeData())) {
        event->ignore();
    } else {
        QPlainTextEdit::dragEnterEvent(event);
    }
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
