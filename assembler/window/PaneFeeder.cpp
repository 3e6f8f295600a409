#include "assembler/window/PaneFeeder.h"

#include <QCoreApplication>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTextCursor>

#include "assembler/window/LongLines.h"
#include "ui/common/MessageBoxes.h"

namespace tavinor {

namespace {

constexpr qint64 showPeriod = 60;  // milliseconds
constexpr qsizetype pieceSize =
    qsizetype{256} * 1024;  // bytes: a pane takes about this much between two paints

/// The length of the first piece of `text`, whole lines of it.
qsizetype firstPiece(const QByteArray& text) {
    if (text.size() <= pieceSize) return text.size();
    const qsizetype lineEnd = text.indexOf('\n', pieceSize);
    return lineEnd < 0 ? text.size() : lineEnd + 1;
}

}  // namespace

PaneFeeder::PaneFeeder(QPlainTextEdit* listing, QPlainTextEdit* report, QWidget* window)
    : listing_{listing, {}}, report_{report, {}}, window_(window) {
    sinceShown_.start();
}

void PaneFeeder::cleared(Pane pane) {
    feed(pane).waiting.clear();
    feed(pane).clearFirst = true;
}

void PaneFeeder::appended(Pane pane, std::string_view text) {
    QByteArray& waiting = feed(pane).waiting;
    if (text.size() <= longestPaneLine) {
        waiting.append(text.data(), static_cast<qsizetype>(text.size()));
    } else {
        waiting.append(withoutLongLines(text));
    }
    if (sinceShown_.elapsed() < showPeriod) return;
    showPiece(listing_);
    showPiece(report_);
    QCoreApplication::processEvents();
    sinceShown_.restart();
}

void PaneFeeder::message(std::string_view text) {
    finish();
    showMessage(window_, QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
}

void PaneFeeder::finish() {
    while (!listing_.waiting.isEmpty() || !report_.waiting.isEmpty()) {
        showPiece(listing_);
        showPiece(report_);
        QCoreApplication::processEvents();
    }
}

/// Shows the next lines at the end of a pane, which is scrolled there.
void PaneFeeder::showPiece(Feed& feed) {
    if (feed.clearFirst) feed.pane->clear();
    feed.clearFirst = false;
    if (feed.waiting.isEmpty()) return;
    const qsizetype length = firstPiece(feed.waiting);
    QTextCursor end(feed.pane->document());
    end.movePosition(QTextCursor::End);
    end.insertText(QString::fromUtf8(feed.waiting.left(length)));
    feed.waiting.remove(0, length);
    feed.pane->verticalScrollBar()->setValue(feed.pane->verticalScrollBar()->maximum());
}

}  // namespace tavinor
