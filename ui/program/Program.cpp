#include "ui/program/Program.h"

#include <QApplication>
#include <QEvent>
#include <QScopedValueRollback>
#include <QSessionManager>
#include <utility>

namespace tavinor {

Program::Program(const Version& own, const UpdateSource& updates, std::unique_ptr<RunPace> pace)
    : cabecera_(own, updates), principal_(std::move(pace)) {
    connect(&cabecera_, &Cabecera::splashOver, &principal_, &QWidget::show);
    connect(&principal_, &Principal::aboutRequested, &cabecera_, &Cabecera::showAbout);
    connect(&principal_, &Principal::closed, &cabecera_, &Cabecera::showFarewell);
    connect(&cabecera_, &Cabecera::ended, this, &Program::ended);
    connect(qApp, &QGuiApplication::commitDataRequest, this, &Program::commitData, Qt::DirectConnection);
    qApp->installEventFilter(this);
}

bool Program::eventFilter(QObject* watched, QEvent* event) {
    if (watched != qApp || event->type() != QEvent::Quit) return QObject::eventFilter(watched, event);
    if (sessionAsked_) {
        endWithoutQuestion();
    } else {
        requestEnd();
    }
    return true;
}

/// The session may only be saved, and go on: the program ends when Qt's Quit follows. By then it is too late
/// for a question.
void Program::commitData(QSessionManager& session) {
    sessionAsked_ = true;
    if (canAsk() && session.allowsInteraction() && !agreesToEnd()) session.cancel();
}

void Program::requestEnd() {
    if (!canAsk()) {
        endWithoutQuestion();
    } else if (agreesToEnd()) {
        emit ended();
    }
}

bool Program::canAsk() const {
    return !asking_ && QApplication::activeModalWidget() == nullptr;
}

bool Program::agreesToEnd() {
    const QScopedValueRollback asking(asking_, true);
    // An open menu would keep the mouse from the question.
    while (QWidget* menu = QApplication::activePopupWidget()) menu->hide();
    return principal_.agreesToEnd();
}

void Program::endWithoutQuestion() {
    rescue();
    principal_.stopRun();
    emit ended();
}

}  // namespace tavinor
