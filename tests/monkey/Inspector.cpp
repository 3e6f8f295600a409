#include "tests/monkey/Inspector.h"

#include <QAbstractButton>
#include <QApplication>
#include <QTableView>
#include <array>

#include "ui/common/HexBox.h"
#include "ui/main/Halt.h"
#include "ui/main/InterruptPanel.h"
#include "ui/main/ShownState.h"

namespace tavinor::monkey {

namespace {

/// Menus and dialogs that are on their way out, and what Qt keeps.
constexpr qsizetype windowsAboutToGo = 24;

QString firstOf(const QStringList& complaints) {
    for (const QString& complaint : complaints) {
        if (!complaint.isEmpty()) return complaint;
    }
    return {};
}

template <typename Control>
Control* control(const QWidget* window, const QString& name) {
    for (Control* found : window->findChildren<Control*>(name)) {
        if (found->window() == window) return found;
    }
    qFatal("no control %s", qPrintable(name));
}

QString differs(const QString& what, const QString& shown, const QString& expected) {
    return shown == expected ? QString()
                             : QStringLiteral("%1 shows \"%2\", expected \"%3\"").arg(what, shown, expected);
}

QString differs(const QString& what, bool is, bool expected) {
    return is == expected ? QString() : QStringLiteral("%1 is %2").arg(what, is ? "true" : "false");
}

}  // namespace

Inspector::Inspector(Principal& principal)
    : principal_(principal), windowsAtFirst_(QApplication::topLevelWidgets().size()) {
    QObject::connect(principal.findChild<InterruptPanel*>(), &InterruptPanel::intrRequested, &principal,
                     [this] { gridMayDiffer_ = true; });
    QObject::connect(principal.findChild<Halt*>(), &Halt::chosen, &principal,
                     [this](Halt::WayOut wayOut) { gridMayDiffer_ |= wayOut == Halt::WayOut::intr; });
}

bool Inspector::running() const {
    return control<QAbstractButton>(&principal_, "Ejecutar")->text() == QStringLiteral("&Parar");
}

QString Inspector::whenIdle() const {
    return firstOf({runState(false), registers(), flags(), interrupts(), leftovers()});
}

QString Inspector::inARun() const {
    return firstOf({runState(true), registers(), flags(), interrupts()});
}

QString Inspector::runState(bool running) const {
    const auto* halt = principal_.findChild<Halt*>();
    const auto* eje = control<QAbstractButton>(halt, "eje");
    return firstOf({
        differs("Ejecutar", control<QAbstractButton>(&principal_, "Ejecutar")->text(),
                running ? QStringLiteral("&Parar") : QStringLiteral("E&jecutar")),
        differs("Eje_paso enabled", control<QAbstractButton>(&principal_, "Eje_paso")->isEnabled(), !running),
        differs("eje ticked", eje->isChecked(), running),
        differs("eje enabled", eje->isEnabled(), running),
        differs("the halt dialog visible", halt->isVisible(), false),
    });
}

/// txtM aside: the entry row changes memory without a refresh.
QString Inspector::registers() const {
    const MachineState& m = principal_.machine();
    const struct {
        const char* box;
        int value;
        int digits;
    } expected[] = {
        {"txtA", m.A, 2},   {"txtF", m.F, 2},   {"txtB", m.B, 2},   {"txtC", m.C, 2},   {"txtD", m.D, 2},
        {"txtE", m.E, 2},   {"txtH", m.H, 2},   {"txtL", m.L, 2},   {"txtBC", m.BC, 4}, {"txtDE", m.DE, 4},
        {"txtHL", m.HL, 4}, {"txtPC", m.PC, 4}, {"txtSP", m.SP, 4},
    };
    for (const auto& [name, value, digits] : expected) {
        const auto* box = control<HexBox>(&principal_, name);
        const QString complaint =
            box->edited() ? QString() : differs(name, box->text(), hexString(value, digits));
        if (!complaint.isEmpty()) return complaint;
    }
    const bool paired = m.PSW == m.A * 256 + m.F && m.BC == m.B * 256 + m.C && m.DE == m.D * 256 + m.E &&
                        m.HL == m.H * 256 + m.L;
    const bool inMemory = m.PC >= 0 && m.PC < memorySize && m.SP >= 0 && m.SP < memorySize;
    return firstOf({differs("pairs in step", paired, true), differs("PC and SP in memory", inMemory, true)});
}

QString Inspector::flags() const {
    for (int bit = 0; bit < 8; ++bit) {
        const QString name = QStringLiteral("chkF%1").arg(bit);
        const bool ticked = control<QAbstractButton>(&principal_, name)->isChecked();
        const QString complaint = differs(name, ticked, (principal_.machine().F >> bit & 1) != 0);
        if (!complaint.isEmpty()) return complaint;
    }
    return {};
}

QString Inspector::interrupts() const {
    const MachineState& m = principal_.machine();
    const RequestsAllowed allowed = requestsAllowed(m.intState);
    const struct {
        const char* name;
        bool ticked;
    } boxes[] = {{"CHKEI", m.intState.IE},  {"CHK55", m.intState.M55}, {"CHK65", m.intState.M65},
                 {"CHK75", m.intState.M75}, {"chkSID", m.SID},         {"ChkSOD", m.SOD}};
    for (const auto& [name, ticked] : boxes) {
        const QString complaint =
            differs(name, control<QAbstractButton>(&principal_, name)->isChecked(), ticked);
        if (!complaint.isEmpty()) return complaint;
    }
    const struct {
        const char* name;
        bool enabled;
    } buttons[] = {{"Rst55", allowed.rst55}, {"Rst65", allowed.rst65}, {"Rst75", allowed.rst75},
                   {"Intr", allowed.intr},   {"Trap", true},           {"Reset", true}};
    for (const auto& [name, enabled] : buttons) {
        const QString complaint =
            differs(name, control<QAbstractButton>(&principal_, name)->isEnabled(), enabled);
        if (!complaint.isEmpty()) return complaint;
    }
    return {};
}

QString Inspector::leftovers() const {
    return firstOf({
        differs("a mouse grabbed", QWidget::mouseGrabber() != nullptr, false),
        differs("a keyboard grabbed", QWidget::keyboardGrabber() != nullptr, false),
        differs("a pointer of its own", QApplication::overrideCursor() != nullptr, false),
        differs("too many windows",
                QApplication::topLevelWidgets().size() > windowsAtFirst_ + windowsAboutToGo, false),
        differs("the main window enabled", principal_.isEnabled(), true),
    });
}

QString Inspector::memory() const {
    if (gridMayDiffer_) return {};
    const QAbstractItemModel* cells = control<QTableView>(&principal_, "grdmem")->model();
    const auto& memory = principal_.machine().mem;
    std::array<QString, 256> texts;
    for (std::size_t byte = 0; byte < texts.size(); ++byte)
        texts[byte] = hexString(static_cast<int>(byte), 2);
    for (int address = 0; address < memorySize; ++address) {
        const QString shown = cells->index(address / 16, address % 16).data().toString();
        const QString& expected = texts[memory[static_cast<std::size_t>(address)]];
        if (shown != expected) return differs("cell " + hexString(address, 4), shown, expected);
    }
    return {};
}

}  // namespace tavinor::monkey
