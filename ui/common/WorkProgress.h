#pragma once

#include <QElapsedTimer>
#include <QString>
#include <chrono>
#include <memory>

#include "files/WorkObserver.h"

class QProgressDialog;
class QWidget;

namespace tavinor {

/// What the user reads, and a screen reader says, while some work goes on.
struct WorkTexts {
    QString label;
    QString part;  ///< What the bar shows, such as "Parte guardada".
};

/// Lets the user see how far some long work is, and cancel it: once it has taken longer than `patience`, a
/// modal dialog with "Cancelar" is there as long as this object. Until then windows are painted and answer
/// the system, but what the user types or clicks waits.
class WorkProgress : public WorkObserver {
  public:
    static constexpr std::chrono::milliseconds usualPatience{1000};

    WorkProgress(QWidget* window, const WorkTexts& texts, std::chrono::milliseconds patience = usualPatience);
    ~WorkProgress() override;

    /// False from the moment on that the user has cancelled.
    bool goesOn(double done) override;

  private:
    void makeDialog();
    void serveEvents(double done);

    QWidget* window_ = nullptr;
    WorkTexts texts_;
    std::chrono::milliseconds patience_;
    QElapsedTimer sinceBegin_;
    QElapsedTimer sinceServed_;
    std::unique_ptr<QProgressDialog> dialog_;
};

}  // namespace tavinor
