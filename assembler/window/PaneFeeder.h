#pragma once

#include <QByteArray>
#include <QElapsedTimer>
#include <QString>
#include <deque>
#include <optional>

#include "assembler/AssemblyObserver.h"
#include "assembler/window/LongLines.h"
#include "ui/common/WorkProgress.h"

class QPlainTextEdit;
class QWidget;

namespace tavinor {

/// Passes the texts of an assembly on to the panes of its window, a few times a second, and lets the window
/// paint meanwhile. Boxes are shown at their moment. Once it has taken a second, the user can cancel: what
/// was not shown by then never is.
class PaneFeeder : public AssemblyObserver {
  public:
    /// Lines that come into a pane between two paints at most.
    static constexpr int mostLinesOfAPiece = 8'000;

    PaneFeeder(QPlainTextEdit* listing, QPlainTextEdit* report, QWidget* window);

    void cleared(Pane pane) override;
    void appended(Pane pane, std::string_view text) override;
    void message(std::string_view text) override;
    bool goesOn(double done) override;
    bool passesOver() override;

    /// Shows what has come and was not shown yet. There is nothing to cancel any more, but
    /// the window goes on to be painted when it is told how far the work is.
    void finish();

  private:
    /// A pane and the text that waits to be shown at its end.
    struct Feed {
        QPlainTextEdit* pane;
        std::deque<QByteArray> waiting;  ///< As it came, so that memory goes with what has been shown.
        bool clearFirst = false;
        LongLines lines;
    };

    Feed& feed(Pane pane) { return pane == Pane::listing ? listing_ : report_; }
    [[nodiscard]] bool isWaiting() const { return !listing_.waiting.empty() || !report_.waiting.empty(); }
    [[nodiscard]] qsizetype waitingSize() const;
    bool tellProgress(double done);
    void showPieces();
    void showPiece(Feed& feed);

    Feed listing_;
    Feed report_;
    QWidget* window_ = nullptr;
    QElapsedTimer sinceShown_;
    qsizetype pieceSize_ = qsizetype{32} * 1024;  ///< Bytes; follows how long the pieces before have taken.
    std::optional<WorkProgress> progress_;
    bool cancelled_ = false;
};

}  // namespace tavinor
