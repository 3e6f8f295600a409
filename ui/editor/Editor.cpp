#include "ui/editor/Editor.h"

#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QFileInfo>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <new>
#include <optional>

#include "ui/common/FileDialogs.h"
#include "ui/common/FileDrops.h"
#include "ui/common/FocusGate.h"
#include "ui/common/MemoryGuard.h"
#include "ui/common/MessageBoxes.h"
#include "ui/common/Naming.h"
#include "ui/common/ScrollingContent.h"
#include "ui/editor/Busqueda.h"
#include "ui/editor/SourceEdit.h"

namespace tavinor {

namespace {

FileDialogTexts dialogTexts(const QString& title) {
    return {.title = title,
            .filter = QStringLiteral("Fichero ensamblador (*.asm)|*.asm|Todos los ficheros (*.*)|*.*"),
            .initialName = QStringLiteral("*.asm"),
            .defaultSuffix = QStringLiteral("asm")};
}

/// What follows the last separator of the platform.
QString nameWithoutFolder(const QString& path) {
#ifdef Q_OS_WIN
    return QString(path).replace('/', '\\').section('\\', -1);
#else
    return path.section('/', -1);
#endif
}

}  // namespace

Editor::Editor(QWidget* parent)
    : QMainWindow(parent, Qt::Window),
      texto(new SourceEdit(QStringLiteral("texto"), QStringLiteral("Texto del programa"), this)),
      filename(new QLabel(this)),
      filepath(new QLabel(this)) {
    setObjectName(QStringLiteral("Editor"));
    filename->setObjectName(QStringLiteral("filename"));
    filepath->setObjectName(QStringLiteral("filepath"));
    filename->hide();
    filepath->hide();
    setCentralWidget(texto);
    makeMenus();
    busqueda_ = new Busqueda(texto, Buscarsiguiente, this);
    connect(texto, &SourceEdit::edited, this, [this] { changed_ = true; });
    connect(texto, &SourceEdit::touched, this, &Editor::refreshEdicion);
    connect(
        texto, &SourceEdit::refused, this, [this](const QString& reason) { showMessage(this, reason); },
        Qt::QueuedConnection);  // not inside a drag of another program
    connect(QApplication::clipboard(), &QClipboard::dataChanged, this, &Editor::refreshEdicion);
    connect(new FileDrops(this, {QStringLiteral("asm")}), &FileDrops::dropped, this,
            [this](const QString& path) { guardMemory(front(), [&] { openDropped(path, principal_); }); });
    constexpr int columns = 90;
    constexpr int rows = 34;
    resize(QSize(texto->fontMetrics().averageCharWidth() * columns, texto->fontMetrics().lineSpacing() * rows)
               .boundedTo(roomOnScreen(*this)));
    showCaption();
}

Editor::~Editor() = default;

void Editor::makeMenus() {
    QList<QKeySequence> keys;
    const auto addMenu = [](auto* parent, const QString& name, const QString& caption) {
        QMenu* menu = parent->addMenu(caption);
        menu->setObjectName(name);
        return menu;
    };
    const auto add = [&keys](QMenu* menu, const char* name, const char* caption, const char* key) {
        QAction* action = menu->addAction(QString::fromUtf8(caption));
        action->setObjectName(QString::fromLatin1(name));
        action->setShortcut(QKeySequence(QString::fromLatin1(key)));
        keys.append(action->shortcut());
        return action;
    };
    Archivo = addMenu(menuBar(), QStringLiteral("Archivo"), QStringLiteral("&Archivo"));
    Nuevo = add(Archivo, "Nuevo", "&Nuevo", "Ctrl+N");
    Abrir = add(Archivo, "Abrir", "&Abrir ...", "Ctrl+A");
    guardar = add(Archivo, "guardar", "&Guardar", "Ctrl+G");
    guardarcomo = add(Archivo, "guardarcomo", "Guardar co&mo", "Ctrl+M");
    Salir = add(Archivo, "Salir", "&Salir", "Ctrl+S");
    Edicion = addMenu(menuBar(), QStringLiteral("Edicion"), QStringLiteral("&Edición"));
    Cortar = add(Edicion, "Cortar", "Cor&tar", "Ctrl+X");
    Copiar = add(Edicion, "Copiar", "&Copiar", "Ctrl+C");
    Pegar = add(Edicion, "Pegar", "&Pegar", "Ctrl+V");
    Buscarvacio = addMenu(Edicion, QStringLiteral("Buscarvacio"), QStringLiteral("&Buscar"));
    Buscar = add(Buscarvacio, "Buscar", "&Buscar", "Ctrl+B");
    Buscarsiguiente = add(Buscarvacio, "Buscarsiguiente", "&Buscar siguiente", "F3");
    for (QAction* action : {Cortar, Copiar, Pegar, Buscarsiguiente}) action->setEnabled(false);
    texto->leaveToMenus(keys);

    const auto connectCommand = [this](QAction* action, auto* object, auto procedure) {
        connect(action, &QAction::triggered, this, [this, object, procedure] {
            if (FocusGate::isInReach(this)) guardMemory(this, [=] { (object->*procedure)(); });
        });
    };
    connectCommand(Nuevo, this, &Editor::Nuevo_Click);
    connectCommand(Abrir, this, &Editor::Abrir_Click);
    connectCommand(guardar, this, &Editor::guardar_Click);
    connectCommand(guardarcomo, this, &Editor::guardarcomo_Click);
    connectCommand(Salir, this, &QWidget::close);
    connectCommand(Cortar, texto, &SourceEdit::cut);
    connectCommand(Copiar, texto, &SourceEdit::copy);
    connectCommand(Pegar, texto, &SourceEdit::paste);
    connectCommand(Buscar, this, &Editor::Buscar_Click);
    connectCommand(Buscarsiguiente, this, &Editor::Buscarsiguiente_Click);
}

void Editor::refreshEdicion() {
    Cortar->setEnabled(texto->hasSelection());
    Copiar->setEnabled(texto->hasSelection());
    const QMimeData* clipboard = QApplication::clipboard()->mimeData();
    Pegar->setEnabled(clipboard != nullptr && clipboard->hasText());
}

void Editor::openFromPrincipal(QWidget* principal) {
    if (!isVisible()) {
        principal_ = principal;
        const std::optional<QString> path =
            askFileToOpen(principal, dialogTexts(QStringLiteral("Editar fichero .ASM")));
        if (!path) return;
        open(*path);
    }
    bringForward();
}

void Editor::openDropped(const QString& path, QWidget* principal) {
    principal_ = principal;
    if (!askToSave()) return;
    open(path);
    bringForward();
}

void Editor::bringForward() {
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
    texto->setFocus();
}

QWidget* Editor::front() {
    return isVisible() ? this : principal_.data();
}

void Editor::Nuevo_Click() {
    if (!askToSave()) return;
    setFilename({});
    clearText();
}

void Editor::Abrir_Click() {
    if (!askToSave()) return;
    const std::optional<QString> path =
        askFileToOpen(this, dialogTexts(QStringLiteral("Cargar fichero .ASM")));
    if (path) open(*path);
}

void Editor::guardar_Click() {
    if (filename->text().isEmpty()) {
        guardarcomo_Click();
    } else if (mayOverwrite()) {
        write(filename->text());
    }
}

void Editor::guardarcomo_Click() {
    const std::optional<QString> path =
        askFileToSave(this, dialogTexts(QStringLiteral("Salvar fichero .ASM")));
    if (!path) return;
    const QString question =
        QStringLiteral("El fichero ") + *path + QStringLiteral(" ya existe\r\n¿Desea sobreescribirlo?");
    if (QFileInfo::exists(*path) && !askYesNo(this, question, DefaultAnswer::no)) return;
    if (write(*path)) setFilename(*path);
}

void Editor::Buscar_Click() {
    busqueda_->showForTyping();
}

void Editor::Buscarsiguiente_Click() {
    busqueda_->Buscar_Click();
}

bool Editor::askToSave() {
    if (!changed_) return true;
    if (isMinimized()) bringForward();
    // From the blank that precedes the name in the caption: see behaviour.md, Editor: files.
    const QString question =
        caption_.mid(applicationTitle().size() + 2) + QStringLiteral(" ha cambiado\r\n¿Desea guardarlo?");
    switch (askYesNoCancel(this, question)) {
        case SaveAnswer::yes: guardar_Click(); return !changed_;
        case SaveAnswer::no: return true;
        case SaveAnswer::cancel: break;
    }
    return false;
}

void Editor::setFilename(const QString& path) {
    filename->setText(path);
    showCaption();
}

void Editor::showCaption() {
    const QString name =
        filename->text().isEmpty() ? QStringLiteral("[Sin nombre]") : nameWithoutFolder(filename->text());
    caption_ = applicationTitle() + QStringLiteral(" - ") + name;
    // In a window's title Qt keeps this mark for itself, unless it is doubled.
    setWindowTitle(QString(caption_).replace(QStringLiteral("[*]"), QStringLiteral("[*][*]")));
}

void Editor::clearText() {
    texto->setSource({});
    encoding_ = TextEncoding::utf8;
    changed_ = false;
    copyIsOurs_ = false;
}

bool Editor::event(QEvent* event) {
    try {
        if (event->type() == QEvent::WindowActivate) readAgain();
    } catch (const std::bad_alloc&) {
        // The old text is still there, and the next save asks. A message would activate this window again.
    }
    return QMainWindow::event(event);
}

void Editor::closeEvent(QCloseEvent* event) {
    bool mayGo = false;
    guardMemory(front(), [this, &mayGo] { mayGo = askToSave(); });
    if (!mayGo) {
        event->ignore();
        return;
    }
    busqueda_->hide();
    Buscarsiguiente->setEnabled(false);
    setFilename({});
    clearText();
    event->accept();
}

}  // namespace tavinor
