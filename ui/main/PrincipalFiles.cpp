// The files that the main window opens: images, sources to assemble, and those for the editor.

#include <QFileInfo>
#include <exception>
#include <new>
#include <optional>

#include "assembler/OutputPaths.h"
#include "assembler/window/Ensamblador.h"
#include "ui/common/FileDialogs.h"
#include "ui/common/FocusGate.h"
#include "ui/common/MessageBoxes.h"
#include "ui/common/Paths.h"
#include "ui/common/WorkProgress.h"
#include "ui/editor/Editor.h"
#include "ui/main/Principal.h"

namespace tavinor {

void Principal::CargarHEX_Click() {
    const std::optional<QString> path = askFileToOpen(
        this, {.title = QStringLiteral("Cargar fichero .HEX"),
               .filter = QStringLiteral("Fichero hexadecimales (*.hex)|*.hex|Todos los ficheros (*.*)|*.*"),
               .initialName = {},
               .defaultSuffix = QStringLiteral("hex")});
    if (path) loadHexFile(*path);
}

LoadResult Principal::load(const QString& path) {
    WorkProgress progress(this, {QStringLiteral("Cargando el fichero..."), QStringLiteral("Parte cargada")});
    return simulation_.load(toPath(path), progress);
}

void Principal::loadHexFile(const QString& path) {
    guarded([this, &path] {
        try {
            showLoaded(load(path));
        } catch (const std::bad_alloc&) {
            throw;
        } catch (const std::exception&) {
            showMessage(this, QStringLiteral("Fichero incorrecto"));
        }
    });
}

void Principal::showLoaded(const LoadResult& result) {
    if (!result.message.empty()) {
        showWritten();  // what was stored is seen behind the message
        showMessage(this, QString::fromStdString(result.message), result.rightAlignedBox);
    }
    regen();
    if (result.loaded) showMessage(this, QStringLiteral("Carga correcta"));
}

void Principal::Ensamblar_Click() {
    const std::optional<QString> source = askFileToOpen(
        this, {.title = QStringLiteral("Ensamblar fichero .ASM"),
               .filter = QStringLiteral("Fichero ensamblador (*.asm)|*.asm|Todos los ficheros (*.*)|*.*"),
               .initialName = QStringLiteral("*.asm"),
               .defaultSuffix = QStringLiteral("asm")});
    if (!source) return;
    if (!QFileInfo::exists(*source)) {
        showMessage(this, QStringLiteral("El fichero: ") + *source + QStringLiteral(" no existe"));
        return;
    }
    const OutputPaths outputs = outputPaths(toPath(*source));
    Ensamblador window(this);
    window.assemble(*source, fromPath(outputs.hex), fromPath(outputs.listing));
    regen();
}

void Principal::Editar_Click() {
    editor_->openFromPrincipal(this);
}

void Principal::openDropped(const QString& path, const QString& kind) {
    if (!FocusGate::of(this).pass()) return;
    if (kind == QStringLiteral("hex")) {
        loadHexFile(path);
    } else {
        editor_->openDropped(path, this);
    }
}

}  // namespace tavinor
