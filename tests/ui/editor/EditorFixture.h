#pragma once

#include <QAction>
#include <QFile>
#include <QLabel>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QWidget>

#include "tests/support/DialogAnswerer.h"
#include "tests/support/RealInput.h"
#include "ui/editor/Editor.h"

namespace tavinor {

/// An editor that the main window has opened, with a folder of its own for its files.
class EditorFixture {
  public:
    EditorFixture() { principal.resize(200, 100); }

    QWidget principal;
    Editor editor;
    QTemporaryDir folder;

    [[nodiscard]] QString path(const QString& name) const { return folder.filePath(name); }

    QString put(const QString& name, const QByteArray& bytes) {
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) qFatal("cannot write");
        return path(name);
    }

    [[nodiscard]] QByteArray get(const QString& name) const {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(not there)");
    }

    static ExpectedFileDialog dialog(const QString& title, bool saving = false) {
        return {title, {"Fichero ensamblador (*.asm)", "Todos los ficheros (*.*)"}, "*.asm", saving};
    }

    /// Opens a file as the main window does. False when the editor does not become the active window.
    bool open(const QString& file) {
        DialogAnswerer dialogs;
        dialogs.expectFileDialog(dialog("Editar fichero .ASM"), file);
        editor.openFromPrincipal(&principal);
        return dialogs.allCame() && showActive(&editor);
    }

    /// An editor with an unnamed text.
    bool openUnnamed(const QString& text = {}) {
        DialogAnswerer dialogs;
        dialogs.expectFileDialog(dialog("Editar fichero .ASM"), path("none.asm"));
        dialogs.expectQuestion("El fichero " + path("none.asm") + " no existe\r\n¿Desea crearlo?",
                               QMessageBox::Yes | QMessageBox::No, QMessageBox::No);
        editor.openFromPrincipal(&principal);
        if (!dialogs.allCame() || !showActive(&editor)) return false;
        if (!text.isEmpty()) texto()->insertPlainText(text);
        return true;
    }

    QAction* action(const char* name) {
        auto* found = editor.findChild<QAction*>(name);
        if (found == nullptr) qFatal("no command %s", name);
        return found;
    }

    QPlainTextEdit* texto() { return editor.findChild<QPlainTextEdit*>("texto"); }
    [[nodiscard]] QString text() { return texto()->toPlainText(); }
    [[nodiscard]] QString filename() { return editor.findChild<QLabel*>("filename")->text(); }

    void selectText(int start, int length) {
        QTextCursor cursor = texto()->textCursor();
        cursor.setPosition(start);
        cursor.setPosition(start + length, QTextCursor::KeepAnchor);
        texto()->setTextCursor(cursor);
    }

    /// Ends the test without the question whether to save.
    void discard() {
        DialogAnswerer dialogs;
        if (editor.isVisible()) dialogs.expectQuestion(saveQuestion(), saveButtons(), QMessageBox::No);
        editor.close();
    }

    QString saveQuestion() {
        return editor.windowTitle().mid(QString("Tavinor -").size()) + " ha cambiado\r\n¿Desea guardarlo?";
    }
    static QMessageBox::StandardButtons saveButtons() {
        return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
    }
};

}  // namespace tavinor
