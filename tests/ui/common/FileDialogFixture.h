#pragma once

#include <QApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeView>
#include <functional>
#include <optional>

#include "tests/support/DialogAnswerer.h"
#include "tests/support/RealInput.h"
#include "ui/common/FileDialogs.h"

namespace tavinor {

inline QLineEdit* nameField(const QFileDialog& dialog) {
    return dialog.findChild<QLineEdit*>("fileNameEdit");
}

/// It shows the names that begin as what was typed.
inline void hideListOfNames() {
    if (QWidget* list = QApplication::activePopupWidget()) list->hide();
}

/// What stands in the name field, the preset, is selected and gives way.
inline void typeWithoutEnter(QFileDialog& dialog, const QString& name) {
    nameField(dialog)->setFocus();
    nameField(dialog)->selectAll();
    typeText(&dialog, name);
}

inline void typeName(QFileDialog& dialog, const QString& name) {
    typeWithoutEnter(dialog, name);
    hideListOfNames();
    pressKey(&dialog, Qt::Key_Return);
}

inline QStringList namesShown(const QFileDialog& dialog) {
    const auto* files = dialog.findChild<QTreeView*>("treeView");
    QStringList names;
    for (int row = 0; row < files->model()->rowCount(files->rootIndex()); ++row) {
        const QString name = files->model()->index(row, 0, files->rootIndex()).data().toString();
        if (!QFileInfo(dialog.directory().filePath(name)).isDir()) names.append(name);
    }
    names.sort();
    return names;
}

/// The file dialog over a folder with one file, or more.
class FileDialogFixture {
  public:
    explicit FileDialogFixture(const QString& name) { put(name); }

    void put(const QString& name) const {
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write("HLT\n") < 0) {
            qFatal("cannot write %s", qPrintable(name));
        }
    }

    void setTime(const QString& name, const QDateTime& time) const {
        QFile file(path(name));
        const bool set =
            file.open(QIODevice::ReadWrite) && file.setFileTime(time, QFile::FileModificationTime);
        if (!set) qFatal("cannot set the time of %s", qPrintable(name));
    }

    [[nodiscard]] QString path(const QString& name) const {
        return name.isEmpty() ? folder_.path() : folder_.filePath(name);
    }

    /// Opens the dialog and calls `act` with it; cancels it where it is still there. Returns what was chosen.
    std::optional<QString> ask(bool saving, const QString& preset,
                               const std::function<void(QFileDialog&)>& act) {
        dialogs.expectWindow("fileDialog", [&](QWidget* window) {
            auto& dialog = dynamic_cast<QFileDialog&>(*window);
            dialog.setDirectory(folder_.path());
            act(dialog);
            hideListOfNames();
            if (window->isVisible()) pressKey(window, Qt::Key_Escape);
        });
        const FileDialogTexts texts{.title = "Fichero",
                                    .filter = "Todos (*.*)|*.*|HEX (*.hex)|*.hex",
                                    .initialName = preset,
                                    .defaultSuffix = "asm"};
        return saving ? askFileToSave(&parent_, texts) : askFileToOpen(&parent_, texts);
    }

    /// Opens the dialog, calls `act` with its details, and cancels it.
    void inDetails(const std::function<void(QTreeView&)>& act) {
        dialogs.expectWindow("fileDialog", [&](QWidget* window) {
            auto& dialog = dynamic_cast<QFileDialog&>(*window);
            dialog.setDirectory(folder_.path());
            auto* files = window->findChild<QTreeView*>("treeView");
            const auto listed = [&] { return files->model()->rowCount(files->rootIndex()) == 1; };
            if (QTest::qWaitFor(listed)) act(*files);
            pressKey(window, Qt::Key_Escape);
        });
        askFileToOpen(&parent_, {.title = "Abrir", .filter = "Todos (*.*)|*.*", .initialName = {}});
        QVERIFY(dialogs.allCame());
    }

    DialogAnswerer dialogs;

  private:
    QTemporaryDir folder_;
    QWidget parent_;
};

}  // namespace tavinor
