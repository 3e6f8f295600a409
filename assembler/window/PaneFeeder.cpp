#include "assembler/window/PaneFeeder.h"

#include <QCoreApplication>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTextCursor>
#include <algorithm>
#include <utility>

#include "ui/common/MessageBoxes.h"

namespace tavinor {

namespace {

constexpr qint64 showPeriod = 60;  // milliseconds

// What a pane takes between two paints, in bytes. How long that takes it depends on the characters most of
// all.
constexpr qsizetype leastOfAPiece = qsizetype{8} * 1024;
constexpr qsizetype mostOfAPiece = qsizetype{256} * 1024;
constexpr qint64 shortPiece = 20;  // milliseconds
constexpr qint64 longPiece = 60;

/// The length of the first piece of `text`: lines that have about `size` bytes, or as many as Qt takes in a
/// moment.
qsizetype firstPiece(const QByteArray& text, qsizetype size) {
    qsizetype end = 0;
    for (int lines = 0; end < std::min(size, text.size()) && lines < PaneFeeder::mostLinesOfAPiece; ++lines) {
        const qsizetype lineEnd = text.indexOf('\n', end);
        end = lineEnd < 0 ? text.size() : lineEnd + 1;
    }
    return end;
}

}  // namespace

PaneFeeder::PaneFeeder(QPlainTextEdit* listing, QPlainTextEdit* report, QWidget* window)
    : listing_{.pane = listing, .waiting = {}, .lines = {}},
      report_{.pane = report, .waiting = {}, .lines = {}},
      window_(window),
      progress_(std::in_place, window,
                WorkTexts{QStringLiteral("Ensamblando el fichero..."), QStringLiteral("Parte ensamblada")}) {
    sinceShown_.start();
}

void PaneFeeder::cleared(Pane pane) {
    feed(pane) = {.pane = feed(pane).pane, .waiting = {}, .clearFirst = true, .lines = {}};
}

void PaneFeeder::appended(Pane pane, std::string_view text) {
    if (cancelled_) return;
    QByteArray lines;
    feed(pane).lines.append(lines, text);
    feed(pane).waiting.push_back(std::move(lines));
    if (sinceShown_.elapsed() < showPeriod) return;
    showPieces();
    sinceShown_.restart();
}

/// The passes are about half of the work, and bringing their texts into the panes is the other half.
bool PaneFeeder::goesOn(double done) {
    if (!progress_) QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    return tellProgress(done / 2);
}

bool PaneFeeder::passesOver() {
    const auto all = static_cast<double>(waitingSize());
    while (isWaiting()) {
        showPieces();
        if (!tellProgress(1 - static_cast<double>(waitingSize()) / all / 2)) return false;
    }
    return true;
}

qsizetype PaneFeeder::waitingSize() const {
    qsizetype size = 0;
    for (const auto* waiting : {&listing_.waiting, &report_.waiting}) {
        for (const QByteArray& lines : *waiting) size += lines.size();
    }
    return size;
}

bool PaneFeeder::tellProgress(double done) {
    if (progress_ && !progress_->goesOn(done)) {
        cancelled_ = true;
        listing_.waiting.clear();
        report_.waiting.clear();
    }
    return !cancelled_;
}

void PaneFeeder::message(std::string_view text) {
    finish();
    showMessage(window_, QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
}

void PaneFeeder::finish() {
    while (isWaiting()) showPieces();
    progress_.reset();
}

void PaneFeeder::showPieces() {
    QElapsedTimer timer;
    timer.start();
    showPiece(listing_);
    showPiece(report_);
    QCoreApplication::processEvents();
    if (timer.elapsed() < shortPiece) pieceSize_ *= 2;
    if (timer.elapsed() > longPiece) pieceSize_ /= 2;
    pieceSize_ = std::clamp(pieceSize_, leastOfAPiece, mostOfAPiece);
}

/// Shows the next lines at the end of a pane, which is scrolled there.
void PaneFeeder::showPiece(Feed& feed) {
    if (feed.clearFirst) feed.pane->clear();
    feed.clearFirst = false;
    if (feed.waiting.empty()) return;
    QByteArray& waiting = feed.waiting.front();
    const qsizetype length = firstPiece(waiting, pieceSize_);
    QTextCursor end(feed.pane->document());
    end.movePosition(QTextCursor::End);
    end.insertText(QString::fromUtf8(QByteArrayView(waiting).first(length)));
    waiting.remove(0, length);
    if (waiting.isEmpty()) feed.waiting.pop_front();
    feed.pane->verticalScrollBar()->setValue(feed.pane->verticalScrollBar()->maximum());
}

}  // namespace tavinor
