#include "ui/common/WorkProgress.h"

#include <QApplication>
#include <QEventLoop>
#include <QProgressBar>
#include <QProgressDialog>
#include <QTimer>

#include "ui/common/Fonts.h"
#include "ui/common/Naming.h"

namespace tavinor {

namespace {

constexpr int steps = 1000;
constexpr std::chrono::milliseconds servePeriod{40};

}  // namespace

WorkProgress::WorkProgress(QWidget* window, const WorkTexts& texts, std::chrono::milliseconds patience)
    : window_(window), texts_(texts), patience_(patience) {
    sinceBegin_.start();
    sinceServed_.start();
}

WorkProgress::~WorkProgress() = default;

bool WorkProgress::goesOn(double done) {
    if (dialog_ != nullptr && dialog_->wasCanceled()) return false;
    const bool impatient = dialog_ == nullptr && sinceBegin_.elapsed() >= patience_.count();
    if (!impatient && sinceServed_.elapsed() < servePeriod.count()) return true;
    if (impatient) makeDialog();
    serveEvents(done);
    sinceServed_.restart();
    return dialog_ == nullptr || !dialog_->wasCanceled();
}

void WorkProgress::makeDialog() {
    dialog_ = std::make_unique<QProgressDialog>(texts_.label, QStringLiteral("Cancelar"), 0, steps, window_);
    dialog_->setObjectName(QStringLiteral("progreso"));
    dialog_->setWindowTitle(applicationTitle());
    dialog_->setWindowModality(Qt::ApplicationModal);
    dialog_->setMinimumDuration(0);
    dialog_->setAutoClose(false);
    dialog_->setAutoReset(false);
    dialog_->findChild<QProgressBar*>()->setAccessibleName(texts_.part);
    // It has no layout that would follow the desktop's font.
    useFont(
        dialog_.get(), [] { return QApplication::font(); },
        [dialog = dialog_.get()] { dialog->resize(dialog->sizeHint()); });
    dialog_->show();
}

/// In an event loop of its own, as any dialog has: a run that the command interrupted holds back the paints
/// of its own loop. The user's input waits until there is a dialog, which keeps it from the windows.
void WorkProgress::serveEvents(double done) {
    QEventLoop turn;
    QTimer::singleShot(0, &turn, [this, done, &turn] {
        // Set while it is cancelled, it would show itself again.
        if (dialog_ != nullptr && !dialog_->wasCanceled()) dialog_->setValue(static_cast<int>(done * steps));
        turn.quit();
    });
    turn.exec(dialog_ == nullptr ? QEventLoop::ExcludeUserInputEvents : QEventLoop::AllEvents);
}

}  // namespace tavinor
