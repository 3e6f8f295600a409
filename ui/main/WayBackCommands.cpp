#include "ui/main/WayBackCommands.h"

#include "simulation/WayBack.h"
#include "ui/common/HexBox.h"
#include "ui/common/WorkProgress.h"

namespace tavinor {

namespace {

WorkTexts searchTexts() {
    return {QStringLiteral("Buscando hacia atrás..."), QStringLiteral("Parte recorrida")};
}

QString atBeginning() {
    return QStringLiteral("Al principio del historial");
}

}  // namespace

QString WayBackCommands::oneStep() {
    WayBack back(simulation_);
    const Position target = back.oneStep();
    const QString instruction = QString::fromStdString(back.undoneInstruction(target));
    simulation_.goBack(target);
    return QStringLiteral("Deshecho: ") +
           (instruction.isEmpty() ? QStringLiteral("cambios hechos a mano") : instruction);
}

std::optional<QString> WayBackCommands::toBreakpoint() {
    WorkProgress progress(window_, searchTexts());
    try {
        simulation_.goBack(WayBack(simulation_).toBreakpoint(progress));
    } catch (const Cancelled&) {
        return std::nullopt;
    }
    if (!simulation_.atBreakpoint()) return atBeginning();
    return QStringLiteral("Atrás, en el punto de ruptura de ") + hexString(simulation_.machine().PC, 4);
}

std::optional<QString> WayBackCommands::toLastWrite(std::int32_t address) {
    WorkProgress progress(window_, searchTexts());
    try {
        const std::optional<Position> target = WayBack(simulation_).toLastWrite(address, progress);
        if (!target) return QStringLiteral("Nada ha escrito en ") + hexString(address, 4);
        simulation_.goBack(*target);
    } catch (const Cancelled&) {
        return std::nullopt;
    }
    return QStringLiteral("Atrás, antes de la última escritura en ") + hexString(address, 4);
}

QString WayBackCommands::toBeginning() {
    simulation_.goBack({});
    return atBeginning();
}

}  // namespace tavinor
