#include "ui/trace/Listapasos.h"

#include <QAction>
#include <QCloseEvent>
#include <QFileInfo>
#include <QMenuBar>
#include <optional>

#include "simulation/Simulation.h"
#include "trace/TraceFile.h"
#include "ui/common/FileDialogs.h"
#include "ui/common/FocusGate.h"
#include "ui/common/MemoryGuard.h"
#include "ui/common/MessageBoxes.h"
#include "ui/common/Naming.h"
#include "ui/common/Paths.h"
#include "ui/common/RequiredMemory.h"
#include "ui/common/ScrollingContent.h"
#include "ui/trace/TraceView.h"

namespace tavinor {

Listapasos::Listapasos(Simulation& simulation, QWidget* parent)
    : QMainWindow(parent), simulation_(simulation), lista(new TraceView(simulation.trace(), this)) {
    setObjectName(QStringLiteral("Listapasos"));
    setWindowTitle(applicationTitle());
    setCentralWidget(lista);
    setContextMenuPolicy(Qt::NoContextMenu);
    makeMenus();
    resize(sizeHint().boundedTo(roomOnScreen(*this)));  // all columns, where the screen has the room
    connect(lista, &TraceView::copyRefused, this, [this] {
        showMessage(this, QStringLiteral("Demasiadas filas para copiarlas. Puede salvar el listado."));
    });
    connect(
        lista, &TraceView::memoryOut, this, [this] { showMessage(this, memoryOutText()); },
        Qt::QueuedConnection);  // it may be painting
}

Listapasos::~Listapasos() = default;

void Listapasos::makeMenus() {
    const auto add = [this](const QString& name, const QString& text, void (Listapasos::*act)()) {
        QAction* action = menuBar()->addAction(text);
        action->setObjectName(name);
        connect(action, &QAction::triggered, this, [this, act] {
            if (FocusGate::of(this).pass()) guardMemory(this, [this, act] { (this->*act)(); });
        });
        return action;
    };
    salvar = add(QStringLiteral("salvar"), QStringLiteral("&Salvar"), &Listapasos::salvar_Click);
    borrar = add(QStringLiteral("borrar"), QStringLiteral("&Borrar"), &Listapasos::borrar_Click);
    cerrar = add(QStringLiteral("cerrar"), QStringLiteral("&Cerrar"), &Listapasos::cerrar_Click);
}

void Listapasos::open() {
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
}

void Listapasos::bringUpToDate() {
    lista->bringUpToDate();
}

void Listapasos::showEvent(QShowEvent* event) {
    QMainWindow::showEvent(event);
    lista->bringUpToDate();
    lista->setFocus();
}

void Listapasos::salvar_Click() {
    if (simulation_.trace().empty()) return;
    const std::optional<QString> path = askFileToSave(
        this, {.title = QStringLiteral("Salvar fichero .TXT"),
               .filter = QStringLiteral("Fichero de texto (*.txt)|*.txt|Todos los ficheros (*.*)|*.*"),
               .initialName = QStringLiteral("*.txt"),
               .defaultSuffix = QStringLiteral("txt")});
    if (!path) return;
    const QString question = QStringLiteral("El fichero %1 ya existe\n¿Desea sobreescribirlo?").arg(*path);
    if (QFileInfo::exists(*path) && !askYesNo(this, question, DefaultAnswer::no)) return;
    save(*path);
}

void Listapasos::save(const QString& path) {
    requireMemory(TraceFile::memoryNeeded);  // before an old file is emptied
    TraceFile file(simulation_.trace(), toPath(path));
    const bool written = file.open() && writeAll(file);
    const bool closed = file.close();
    if (!written || !closed) showMessage(this, QStringLiteral("Error guardando fichero"));
}

/// False on an error; a save that was cancelled is none.
bool Listapasos::writeAll(TraceFile& file) {
    WorkProgress progress(this, {QStringLiteral("Guardando el listado..."), QStringLiteral("Parte guardada")},
                          patience_);
    while (!file.finished() && progress.goesOn(file.fractionWritten())) {
        if (!file.writeMore()) return false;
    }
    return true;
}

void Listapasos::clear() {
    simulation_.clearTrace();
    lista->bringUpToDate();  // at once: the rows that come next are others, and none of them is selected
    emit cleared();
}

void Listapasos::borrar_Click() {
    clear();
}

void Listapasos::cerrar_Click() {
    close();
}

bool Listapasos::Form_QueryUnload() {
    return simulation_.trace().empty() ||
           askYesNo(this, QStringLiteral("Todo el listado se perderá.\n¿Desea cerrar de todas formas?"),
                    DefaultAnswer::no);
}

void Listapasos::closeEvent(QCloseEvent* event) {
    event->ignore();
    guardMemory(this, [this, event] {
        if (!Form_QueryUnload()) return;
        clear();
        event->accept();
    });
}

}  // namespace tavinor
