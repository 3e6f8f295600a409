#include "ui/editor/Editor.h"

#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QFileInfo>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QScopedValueRollback>
#include <new>
#include <optional>

#include "ui/common/FileDialogs.h"
#include "ui/common/FileDrops.h"
#include "ui/common/MemoryGuard.h"
#include "ui/common/MessageBoxes.h"
#include "ui/common/Naming.h"
#include "ui/common/RequiredMemory.h"
#include "ui/common/ScrollingContent.h"
#include "ui/editor/Busqueda.h"
#include "ui/editor/RescueCopy.h"
#include "ui/editor/SourceEdit.h"
#include "ui/editor/SourceLimits.h"

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

WorkTexts saveTexts() {
    return {QStringLiteral("Guardando el fichero..."), QStringLiteral("Parte guardada")};
}

QString whyNotRead(const SourceFile& file) {
    return file.state == SourceFile::State::tooLarge ? file.text : QStringLiteral("Error abriendo fichero");
}

/// As if the file had been read line by line. A save adds one more: see behaviour.md, Editor: files.
QString withLastLineEnd(const QString& text) {
    return text.endsWith('\n') ? text : text + '\n';
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

    const auto connectCommand = [this](QAction* action, void (Editor::*procedure)()) {
        connect(action, &QAction::triggered, this,
                [this, procedure] { guardMemory(this, [this, procedure] { (this->*procedure)(); }); });
    };
    connectCommand(Nuevo, &Editor::Nuevo_Click);
    connectCommand(Abrir, &Editor::Abrir_Click);
    connectCommand(guardar, &Editor::guardar_Click);
    connectCommand(guardarcomo, &Editor::guardarcomo_Click);
    connect(Salir, &QAction::triggered, this, &QWidget::close);
    connect(Cortar, &QAction::triggered, texto, &SourceEdit::cut);
    connect(Copiar, &QAction::triggered, texto, &SourceEdit::copy);
    connect(Pegar, &QAction::triggered, texto, &SourceEdit::paste);
    connectCommand(Buscar, &Editor::Buscar_Click);
    connect(Buscarsiguiente, &QAction::triggered, this, [this] { busqueda_->Buscar_Click(); });
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

/// The file is read before anything changes: where there is too little memory for it, the old text stays.
void Editor::open(const QString& path) {
    const QScopedValueRollback<bool> busy(busyWithFile_, true);
    KnownContents known;
    known.note(path);
    const SourceFile file = readSource(path);
    setFilename(path);
    known_ = known;
    try {
        changed_ = filename_Change(file);
    } catch (const std::bad_alloc&) {
        clearText();
        setFilename({});
        throw;
    }
}

/// A file that exists but cannot be read leaves the text without a name, so that no save puts an empty text
/// in its place. An empty file has nothing to lose and keeps its name.
bool Editor::filename_Change(const SourceFile& file) {
    clearText();
    const QString path = filename->text();
    const RescueCopy copy(path);
    if (copy.isNewer() && askYesNo(front(), QStringLiteral("Hay una copia de rescate más reciente.\r\n"
                                                           "¿Desea abrirla?"))) {
        return loadRescueCopy(copy, file.state == SourceFile::State::read ? &file.encoding : nullptr);
    }
    if (!QFileInfo::exists(path)) {
        const QString question =
            QStringLiteral("El fichero ") + path + QStringLiteral(" no existe\r\n¿Desea crearlo?");
        if (!askYesNo(front(), question)) setFilename({});
        return false;
    }
    if (file.state != SourceFile::State::read) {
        if (file.state != SourceFile::State::empty) setFilename({});
        showMessage(front(), whyNotRead(file));
        return false;
    }
    encoding_ = file.encoding;
    texto->setSource(withLastLineEnd(file.text));
    return false;
}

/// The text is shown to the letter. It goes on in the source's encoding, of which the copy tells only where
/// it has no character that the other one lacks.
bool Editor::loadRescueCopy(const RescueCopy& copy, const TextEncoding* encoding) {
    const SourceFile rescued = readSource(copy.path());
    if (rescued.state == SourceFile::State::failed || rescued.state == SourceFile::State::tooLarge) {
        setFilename({});
        showMessage(front(), whyNotRead(rescued));
        return false;
    }
    encoding_ = encoding != nullptr ? *encoding : rescued.encoding;
    texto->setSource(rescued.text);
    copyIsOurs_ = true;
    return true;
}

/// What has gone, or cannot be read, is left to the next save.
void Editor::readAgain() {
    if (changed_ || busyWithFile_ || !isVisible() || !known_.differFrom(filename->text())) return;
    const QScopedValueRollback<bool> busy(busyWithFile_, true);
    KnownContents now;
    now.note(filename->text());
    const SourceFile file = readSource(filename->text());
    if (file.state != SourceFile::State::read) return;
    texto->setSourceInPlace(withLastLineEnd(file.text));
    encoding_ = file.encoding;
    known_ = now;
}

bool Editor::mayOverwrite() {
    const QScopedValueRollback<bool> busy(busyWithFile_, true);
    const QString& path = filename->text();
    if (!known_.differFrom(path)) return true;
    const QString question = QStringLiteral("El fichero ") + path +
                             QStringLiteral(" ha cambiado en el disco\r\n¿Desea sobreescribirlo?");
    changed_ = true;  // not what is on disk, also while the question is open
    return askYesNo(this, question, DefaultAnswer::no);
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

bool Editor::write(const QString& path) {
    const QScopedValueRollback<bool> busy(busyWithFile_, true);
    try {
        return writeText(path);
    } catch (const Cancelled&) {
        return false;
    }
}

bool Editor::writeText(const QString& path) {
    if (texto->size() > smallSource) requireMemory(memoryOfSaving(texto->size()));
    const QString text = texto->source().append('\n');
    const int revision = texto->document()->revision();
    const std::optional<TextEncoding> encoding = encodingFor(text);
    if (!encoding) return false;
    std::optional<std::string> written;
    {
        WorkProgress progress(this, saveTexts(), patience_);
        written = writeSource(path, text, *encoding, progress);
    }
    if (!written) {
        showMessage(this, QStringLiteral("Error guardando fichero"));
        return false;
    }
    changed_ = texto->document()->revision() != revision;  // a tool may have written meanwhile
    encoding_ = *encoding;
    copyIsOurs_ = false;
    known_.noteWritten(*written);
    RescueCopy(path).remove();
    return true;
}

std::optional<TextEncoding> Editor::encodingFor(const QString& text) {
    const bool possible = [&] {
        WorkProgress progress(this, saveTexts(), patience_);
        return canEncodeSource(text, encoding_, progress);
    }();
    if (possible) return encoding_;
    const bool unicode = askYesNo(this, QStringLiteral("El texto contiene caracteres que no existen en la "
                                                       "codificación del fichero (Windows-1252)\r\n"
                                                       "¿Desea guardarlo en UTF-8?"));
    return unicode ? std::optional(TextEncoding::utf8) : std::nullopt;
}

/// Where it fails there is nothing left to try.
void Editor::rescue() {
    if (!changed_ || filename->text().isEmpty()) return;
    const auto text = [this](const auto& take) { texto->handOut(take); };
    using Earlier = RescueCopy::Earlier;
    const RescueCopy copy(filename->text());
    if (copy.write(text, encoding_, copyIsOurs_ ? Earlier::replaced : Earlier::kept)) copyIsOurs_ = true;
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
