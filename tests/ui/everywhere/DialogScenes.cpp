// Message boxes and file dialogs.

#include <QAbstractItemView>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeView>

#include "tests/support/RealInput.h"
#include "tests/ui/everywhere/Scenes.h"
#include "ui/common/FileDialogs.h"
#include "ui/common/MessageBoxes.h"

namespace tavinor {

namespace {

constexpr char path[] = "/home/estudiante/prácticas/programa.asm";

enum class Box { message, rightAligned, yesNo, yesNoCancel };

struct BoxText {
    const char* name;
    const char* text;  ///< %1 is a path.
    Box box = Box::message;
};

const BoxText boxTexts[] = {
    {"message: loaded", "Carga correcta"},
    {"message: loader's error", "Error en fichero %1.\rFormato incorrecto.", Box::rightAligned},
    {"message: unreadable image", "Error en lectura"},
    {"message: wrong file", "Fichero incorrecto"},
    {"message: no such file", "El fichero: %1 no existe"},
    {"message: overflow", "Error 6: desbordamiento"},
    {"message: no memory", "Memoria insuficiente"},
    {"message: subscript", "Error 9: subíndice fuera del intervalo"},
    {"message: assembled with errors", "Ensamblado incorrecto"},
    {"message: output not written", "Error creando fichero"},
    {"message: source not read", "Error abriendo fichero"},
    {"message: not saved", "Error guardando fichero"},
    {"message: too many rows", "Demasiadas filas para copiarlas. Puede salvar el listado."},
    {"message: not found", "HLT no encontrada"},
    {"question: find again", "HLT no encontrada\r\n¿Desea buscar desde el principio del documento?",
     Box::yesNo},
    {"question: create", "El fichero %1 no existe\r\n¿Desea crearlo?", Box::yesNo},
    {"question: overwrite", "El fichero %1 ya existe\r\n¿Desea sobreescribirlo?", Box::yesNo},
    {"question: changed by another program",
     "El fichero %1 ha cambiado en el disco\r\n¿Desea sobreescribirlo?", Box::yesNo},
    {"question: rescue copy", "Hay una copia de rescate más reciente.\r\n¿Desea abrirla?", Box::yesNo},
    {"question: encoding",
     "El texto contiene caracteres que no existen en la codificación del fichero (Windows-1252)\r\n"
     "¿Desea guardarlo en UTF-8?",
     Box::yesNo},
    {"question: lose the trace", "Todo el listado se perderá.\n¿Desea cerrar de todas formas?", Box::yesNo},
    {"question: update",
     "Hay actualizaciones disponibles\r\n(Versión actual: 1.5.7 - Versión nueva: 1.6.0)\r\n"
     "¿Desea descargarla ahora?",
     Box::yesNo},
    {"question: save", " programa.asm ha cambiado\r\n¿Desea guardarlo?", Box::yesNoCancel},
};

void open(const BoxText& box, QWidget* parent) {
    const QString text = QString::fromUtf8(box.text).replace("%1", QString::fromUtf8(path));
    switch (box.box) {
        case Box::message: showMessage(parent, text); break;
        case Box::rightAligned: showMessage(parent, text, true); break;
        case Box::yesNo: askYesNo(parent, text); break;
        case Box::yesNoCancel: askYesNoCancel(parent, text); break;
    }
}

void showBox(const BoxText& box, const Look& look) {
    QWidget parent;
    QVERIFY(showActive(&parent));
    lookAtModal(
        "messageBox", [&] { open(box, &parent); }, look,
        [](QWidget& window) { pressKey(&window, Qt::Key_Escape); });
}

enum class FileView { list, details };

/// A folder with files of several sizes, and a folder in it.
class FileDialogScene {
  public:
    FileDialogScene() {
        QDir(folder_.path()).mkdir("carpeta");
        for (const auto& [name, size] :
             {std::pair("corto.hex", 20), {"largo.hex", 70'000}, {"vacio.hex", 0}}) {
            QFile file(folder_.filePath(name));
            if (!file.open(QIODevice::WriteOnly)) qFatal("cannot write %s", name);
            file.write(QByteArray(size, 'x'));
        }
        if (!showActive(&parent_)) qFatal("the window does not become active");
    }

    void show(bool saving, FileView view, const Look& look) {
        const FileDialogTexts texts{
            .title = QStringLiteral("Cargar fichero .HEX"),
            .filter = QStringLiteral("Fichero hexadecimales (*.hex)|*.hex|Todos los ficheros (*.*)|*.*"),
            .initialName = QStringLiteral("*.hex")};
        const auto open = [&] { saving ? askFileToSave(&parent_, texts) : askFileToOpen(&parent_, texts); };
        const auto lookInside = [&](QWidget& window) {
            auto& dialog = dynamic_cast<QFileDialog&>(window);
            dialog.setDirectory(folder_.path());
            dialog.setViewMode(view == FileView::list ? QFileDialog::List : QFileDialog::Detail);
            const auto* files = window.findChild<QTreeView*>("treeView");
            QVERIFY(QTest::qWaitFor([files] { return files->model()->rowCount(files->rootIndex()) == 4; }));
            look(window);
        };
        lookAtModal("fileDialog", open, lookInside,
                    [](QWidget& window) { pressKey(&window, Qt::Key_Escape); });
    }

  private:
    QTemporaryDir folder_;
    QWidget parent_;
};

/// Looks at the context menu of a control of the file dialog.
Look atContextMenuOf(const char* control, const Look& look) {
    return [control, look](QWidget& window) {
        auto* widget = window.findChild<QWidget*>(control);
        QVERIFY(widget != nullptr);
        auto* view = qobject_cast<QAbstractItemView*>(widget);
        if (view == nullptr) {
            lookAtContextMenu(widget, look);
            return;
        }
        const QModelIndex first = view->model()->index(0, 0, view->rootIndex());
        view->setCurrentIndex(first);
        lookAtContextMenu(view->viewport(), look, view->visualRect(first).center());
    };
}

}  // namespace

std::vector<Scene> dialogScenes() {
    std::vector<Scene> list;
    for (const BoxText& box : boxTexts) {
        list.push_back({box.name, [&box](const Look& look) { showBox(box, look); }});
    }
    const auto add = [&list](const char* name, bool saving, FileView view) {
        list.push_back({name, [=](const Look& look) { FileDialogScene().show(saving, view, look); }});
    };
    add("file dialog, open, list", false, FileView::list);
    add("file dialog, open, details", false, FileView::details);
    add("file dialog, save, list", true, FileView::list);
    add("file dialog, save, details", true, FileView::details);
    const auto addMenu = [&list](const char* name, const char* control, FileView view) {
        list.push_back({name, [=](const Look& look) {
                            FileDialogScene().show(false, view, atContextMenuOf(control, look));
                        }});
    };
    addMenu("file dialog, menu of its list", "listView", FileView::list);
    addMenu("file dialog, menu of its details", "treeView", FileView::details);
    addMenu("file dialog, menu of its places", "sidebar", FileView::list);
    addMenu("file dialog, menu of its name box", "fileNameEdit", FileView::list);
    return list;
}

}  // namespace tavinor
