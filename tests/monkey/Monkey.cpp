#include "tests/monkey/Monkey.h"

#include <QAbstractButton>
#include <QApplication>
#include <QEvent>
#include <QScopedValueRollback>
#include <QThread>
#include <QTimer>
#include <limits>

#include "ui/common/HexBox.h"
#include "ui/trace/Listapasos.h"

namespace tavinor::monkey {

namespace {

constexpr int mostStepsInRun = 12;
constexpr int mostStepsInMenu = 6;
constexpr int stepsBetweenLongChecks = 50;

const QEvent::Type pulseType = static_cast<QEvent::Type>(QEvent::registerEventType());

QWidget* principalControl(Principal& principal, const QString& name) {
    for (QWidget* control : principal.findChildren<QWidget*>(name)) {
        if (control->window() == &principal) return control;
    }
    return nullptr;
}

}  // namespace

Monkey::Monkey(std::uint64_t seed, int steps) : diary_(seed, steps), chance_(seed) {
    qApp->installEventFilter(this);
    open();
}

Monkey::~Monkey() = default;

void Monkey::open() {
    program_ = std::make_unique<Program>(Version{1, 0, 0}, UpdateSource{},
                                         std::make_unique<EachInstruction>(boxTrace_));
    program_->cabecera().findChild<QTimer*>(QStringLiteral("Timer1"))->setInterval(0);
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (auto* trace = qobject_cast<Listapasos*>(window)) trace_ = trace;
    }
    // With the dialog that shows how far the saving is, or without it, whatever the clock says.
    trace_->setPatience(chance_.oneIn(2) ? std::chrono::hours(1) : std::chrono::hours(-1));
    inspector_ = std::make_unique<Inspector>(program_->principal());
    boxTrace_ = std::make_unique<BoxTrace>(program_->principal(), *trace_);
    closed_ = ended_ = false;
    connect(&program_->principal(), &Principal::closed, this, [this] { closed_ = true; });
    connect(program_.get(), &Program::ended, this, [this] { ended_ = true; });
    ++starts_;
    program_->start();
}

void Monkey::close() {
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && window != &program_->cabecera()) {
            diary_.fail(QStringLiteral("left behind: ") + nameOf(window));
        }
    }
    inspector_.reset();
    boxTrace_.reset();
    program_.reset();
}

void Monkey::play() {
    postPulse();
    QApplication::exec();
}

QString Monkey::figures() const {
    return QStringLiteral("%1 steps, %2 starts, %3 runs, %4 instructions in them, %5 dialogs, digest %6")
        .arg(diary_.step())
        .arg(starts_)
        .arg(runs_)
        .arg(instructions_)
        .arg(dialogs_)
        .arg(digest_, 16, 16, QLatin1Char('0'));
}

void Monkey::postPulse() {
    if (!pulseIsPosted_) QCoreApplication::postEvent(this, new QEvent(pulseType));
    pulseIsPosted_ = true;
}

bool Monkey::event(QEvent* event) {
    if (event->type() != pulseType) return QObject::event(event);
    pulseIsPosted_ = false;
    pulse();
    return true;
}

/// A modal window, a menu or a run that begins has an event loop of its own, where the monkey goes on.
bool Monkey::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Show && !event->spontaneous() && watched->isWidgetType()) {
        const auto* window = static_cast<QWidget*>(watched);
        const bool modal = window->isWindow() && window->isModal();
        if (modal) {
            ++dialogs_;
            answers_.noteShown(window);
            boxTrace_->windowShown(window);
        }
        if (modal || window->windowType() == Qt::Popup) postPulse();
    }
    if (event->type() == QEvent::EnabledChange && watched->objectName() == QStringLiteral("Eje_paso") &&
        !static_cast<QWidget*>(watched)->isEnabled()) {
        ++runs_;
        stepsInRun_ = 0;
        instructionsToGo_ = 1 + chance_.below(40) * chance_.below(4);
        postPulse();
    }
    return QObject::eventFilter(watched, event);
}

Monkey::Place Monkey::here() const {
    return {QThread::currentThread()->loopLevel(), inspector_->running()};
}

/// Not inside a step at the same place, and not in the loop of a dialog that has gone already.
bool Monkey::mayStep(const Place& place) const {
    if (busyAt_ == place) return false;
    constexpr int programsLoop = 1;
    return QApplication::activeModalWidget() != nullptr || QApplication::activePopupWidget() != nullptr ||
           place.running || place.loopLevel == programsLoop;
}

void Monkey::pulse() {
    if (ended_ && !busyAt_) {
        close();
        if (diary_.over()) {
            QApplication::exit();
            return;
        }
        open();
    }
    const Place place = here();
    if (!mayStep(place)) return;  // the step that is being taken posts the next pulse
    const QWidget* modal = QApplication::activeModalWidget();
    const bool inDialog = modal != nullptr || QApplication::activePopupWidget() != nullptr;
    const bool waits = inDialog ? modal != nullptr && busy(modal) : place.running && !instructionHasPassed();
    if (!waits) {
        const QScopedValueRollback<std::optional<Place>> busyHere(busyAt_, place);
        step();
    }
    postPulse();
}

/// True when as many instructions have been executed as were to pass before the next step.
bool Monkey::instructionHasPassed() {
    const std::uint64_t revision = program_->principal().trace().revision();
    if (revision == seenRevision_) return false;
    seenRevision_ = revision;
    ++instructions_;
    if (--instructionsToGo_ > 0) return false;
    instructionsToGo_ = 1 + chance_.below(20) * chance_.below(4);
    return true;
}

void Monkey::step() {
    diary_.beginStep();
    if (!ended_) inspectRows();
    const MachineState& machine = program_->principal().machine();
    digest_ = (digest_ * 31 + static_cast<unsigned>(machine.PC)) * 31 + static_cast<unsigned>(machine.PSW);
    QWidget* modal = QApplication::activeModalWidget();
    QWidget* popup = QApplication::activePopupWidget();
    stepsInMenu_ = popup != nullptr ? stepsInMenu_ + 1 : 0;
    if (popup != nullptr) {
        leaveMenu();
    } else if (modal != nullptr) {
        answers_.answer(modal, diary_.over());
    } else if (inspector_->running()) {
        stepInARun();
    } else {
        stepAtRest();
    }
}

void Monkey::stepInARun() {
    complain(inspector_->inARun());
    if (++stepsInRun_ > mostStepsInRun || diary_.over()) {
        stopRun();
    } else if (chance_.oneIn(4)) {
        hand_.clickOn(&program_->principal(), QStringLiteral("Ejecutar"));
    } else {
        useSomeWindow();
    }
}

/// What was being typed may be refused, so that the button does nothing; then the box is filled first.
void Monkey::stopRun() {
    Principal& principal = program_->principal();
    principal.resize(1180, 730);
    for (HexBox* box : principal.findChildren<HexBox*>()) {
        if (box->window() == &principal && box->entered()) hand_.fill(box, QStringLiteral("00"));
    }
    hand_.clickOn(&principal, QStringLiteral("Ejecutar"));
    if (inspector_->running() && stepsInRun_ > mostStepsInRun + 5) {
        diary_.fail(QStringLiteral("the run cannot be stopped"));
    }
}

void Monkey::stepAtRest() {
    if (!closed_) inspect();
    if (diary_.over() && !closed_) {
        program_->principal().close();
    } else if (!ended_) {
        useSomeWindow();
    }
}

void Monkey::inspect() {
    complain(inspector_->whenIdle());
    if (diary_.step() % stepsBetweenLongChecks == 0) complain(inspector_->memory());
}

/// Also while a dialog is open, that of a HLT too.
void Monkey::inspectRows() {
    constexpr std::uint64_t newest = 12;
    constexpr std::uint64_t all = std::numeric_limits<std::uint64_t>::max();
    boxTrace_->somethingElseComes();
    complain(boxTrace_->difference(diary_.step() % stepsBetweenLongChecks == 0 ? all : newest));
}

void Monkey::complain(const QString& complaint) const {
    if (!complaint.isEmpty()) diary_.fail(complaint);
}

void Monkey::leaveMenu() {
    QWidget* popup = QApplication::activePopupWidget();
    constexpr Qt::Key keys[] = {Qt::Key_Down, Qt::Key_Up, Qt::Key_Return, Qt::Key_Escape, Qt::Key_Right};
    if (stepsInMenu_ > 3 * mostStepsInMenu) diary_.fail(QStringLiteral("a menu cannot be left"));
    if (stepsInMenu_ > mostStepsInMenu || diary_.over()) {
        hand_.press(popup, Qt::Key_Escape);
    } else if (chance_.oneIn(3)) {
        hand_.clickSomewhere(popup);
    } else {
        hand_.press(popup, chance_.oneOf(keys));
    }
}

QWidget* Monkey::someWindow() {
    QList<QWidget*> shown;
    for (const char* name : {"Principal", "Listapasos", "Editor", "Busqueda", "Cabecera"}) {
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (window->isVisible() && window->objectName() == QLatin1String(name)) shown.append(window);
        }
    }
    return shown.isEmpty() ? nullptr : chance_.oneOf(shown);
}

void Monkey::useSomeWindow() {
    QWidget* window = someWindow();
    if (window == nullptr) return;
    // The splash and the farewell screen never have the focus.
    if (chance_.oneIn(40) || window == &program_->cabecera()) {
        hand_.closeWindow(window);
    } else if (window == &program_->principal() && chance_.oneIn(2)) {
        usePrincipal();
    } else {
        hand_.useWindow(window);
    }
}

/// By the keys, the menu is found by chance; often right after an edit that has its state row.
void Monkey::goBack() {
    Principal& principal = program_->principal();
    if (chance_.oneIn(2)) {
        constexpr const char* boxes[] = {"txtA", "txtB", "txtHL", "txtM", "txtPC", "txtSP"};
        if (auto* box = principal.findChild<HexBox*>(QString::fromLatin1(chance_.oneOf(boxes)))) {
            hand_.fill(box, hand_.someText());
        }
        for (int steps = 1 + chance_.below(2); steps > 0; --steps)
            hand_.clickOn(&principal, QStringLiteral("Eje_paso"));
    }
    struct Way {
        int weight;
        Qt::Key key;
        Qt::KeyboardModifiers modifiers = Qt::NoModifier;
    };
    const Way ways[] = {
        {8, Qt::Key_F7}, {1, Qt::Key_F5, Qt::ShiftModifier}, {2, Qt::Key_F7, Qt::ShiftModifier}};
    const Way& way = chance_.byWeight(ways);
    for (int times = 1 + chance_.below(4); times > 0; --times) {
        hand_.press(&principal, way.key, way.modifiers);
    }
}

/// What a user does most, and what random clicks find too seldom.
void Monkey::usePrincipal() {
    struct Command {
        int weight;
        const char* name;
    };
    constexpr Command commands[] = {
        {24, "Ejecutar"}, {12, "Eje_paso"}, {8, "CargarHEX"}, {3, "Ensamblar"}, {3, "Editar"}, {1, "about"},
        {2, "Reset"},     {1, "Trap"},      {2, "Rst55"},     {1, "Rst65"},     {2, "Rst75"},  {3, "Intr"},
        {4, "CHKEI"},     {2, "CHK55"},     {2, "CHK75"},     {4, "prg"},       {3, "grdmem"}, {1, "grdport"},
    };
    const QString name = QString::fromLatin1(chance_.byWeight(commands).name);
    Principal& principal = program_->principal();
    if (chance_.oneIn(12)) {
        principal.resize(1180, 730);
    } else if (chance_.oneIn(10)) {
        goBack();
    } else if (chance_.oneIn(12)) {
        hand_.chooseFromMenus(&principal);
    } else if (QWidget* control = principalControl(principal, name)) {
        hand_.clickOn(control);
        if (name == QStringLiteral("prg") && chance_.oneIn(2)) hand_.press(&principal, Qt::Key_F9);
    }
}

}  // namespace tavinor::monkey
