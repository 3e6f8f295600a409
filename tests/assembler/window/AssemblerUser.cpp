#include "tests/assembler/window/AssemblerUser.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QTest>
#include <QThread>
#include <QTimer>
#include <QWindow>
#include <stdexcept>
#include <utility>

#include "assembler/window/Ensamblador.h"
#include "tests/support/RealInput.h"

namespace tavinor {

Shown Shown::by(const QDialog& window) {
    const QWidget* focus = window.focusWidget();
    return {window.findChild<QLabel*>("file1")->text(), listingPane(window)->toPlainText(),
            reportPane(window)->toPlainText(), window.findChild<QLabel*>("Label1")->text(),
            focus == nullptr ? QString() : focus->objectName()};
}

AssemblerUser::AssemblerUser() {
    if (!showActive(&principal_)) throw std::runtime_error("the main window does not become active");
}

QString AssemblerUser::path(const QString& name) const {
    return QString::fromStdString(folder_.path().string()) + '/' + name;
}

void AssemblerUser::write(const QString& name, const QByteArray& bytes) {
    folder_.write(name.toStdString(), bytes.toStdString());
}

QByteArray AssemblerUser::read(const QString& name) const {
    QFile file(path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no such file)");
}

QStringList AssemblerUser::files() const {
    QStringList names = QDir(path({})).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::System);
    names.sort();
    return names;
}

void AssemblerUser::allowAllUsers() const {
    std::filesystem::permissions(folder_.path(), std::filesystem::perms::all);
}

Shown AssemblerUser::assemble(const QString& name, const QStringList& boxes) {
    expectFileDialog(path(name));
    expectAssembly(boxes);
    clickIn(principal_.findChild<QPushButton*>("Ensamblar"));
    return std::exchange(shown_, {});
}

Shown AssemblerUser::assemblePaths(const QString& source, const QString& hex, const QString& listing,
                                   const QStringList& boxes) {
    expectAssembly(boxes);
    Ensamblador(&principal_).assemble(source, hex, listing);
    return std::exchange(shown_, {});
}

void AssemblerUser::choose(const QString& path, const QStringList& boxes) {
    expectFileDialog(path);
    expectBoxes(boxes);
    clickIn(principal_.findChild<QPushButton*>("Ensamblar"));
}

void AssemblerUser::expectFileDialog(const QString& path) {
    dialogs_.expectFileDialog(
        {"Ensamblar fichero .ASM", {"Fichero ensamblador (*.asm)", "Todos los ficheros (*.*)"}, "*.asm"},
        path);
}

void AssemblerUser::expectAssembly(const QStringList& boxes) {
    const int loopLevel = QThread::currentThread()->loopLevel() + 1;
    dialogs_.expectWindow("Ensamblador", [this, loopLevel](QWidget* window) {
        auto& dialog = *qobject_cast<QDialog*>(window);
        if (during) during(dialog);
        whenEnded(dialog, loopLevel);
    });
    expectBoxes(boxes);
}

void AssemblerUser::expectBoxes(const QStringList& boxes) {
    for (const QString& box : boxes) dialogs_.expectMessage(box);
}

/// The window itself waits for events again, and its button can be pressed: nothing is left to come.
void AssemblerUser::whenEnded(QDialog& window, int loopLevel) {
    auto* poll = new QTimer(&window);
    QObject::connect(poll, &QTimer::timeout, &window, [this, poll, loopLevel, &window] {
        const bool inFront = QApplication::activeModalWidget() == &window;
        if (QThread::currentThread()->loopLevel() > loopLevel || !inFront) return;
        if (!closeButton(window)->isEnabled()) return;
        poll->stop();
        end(window);
    });
    poll->start(1);
}

void AssemblerUser::end(QDialog& window) {
    window.activateWindow();  // without a screen there is no window manager to do it once a box has closed
    if (!QTest::qWaitForWindowActive(&window)) QTest::qFail("the window is not active", __FILE__, __LINE__);
    shown_ = Shown::by(window);
    if (afterwards) afterwards(window);
    if (closing) {
        closing(window);
    } else {
        clickIn(closeButton(window));
    }
    // An access key shows its button pressed for a moment before it acts.
    if (!QTest::qWaitFor([&window] { return !window.isVisible(); })) {
        QTest::qFail("the window did not close", __FILE__, __LINE__);
        window.done(0);
    }
}

QPlainTextEdit* listingPane(const QDialog& window) {
    return window.findChild<QPlainTextEdit*>("filelst");
}

QPlainTextEdit* reportPane(const QDialog& window) {
    return window.findChild<QPlainTextEdit*>("filehex");
}

QPushButton* closeButton(const QDialog& window) {
    return window.findChild<QPushButton*>("cerrar");
}

void pressCloseBox(QDialog& window) {
    window.windowHandle()->close();
}

QString lines(const QStringList& texts, const QString& lineEnd) {
    return texts.join(lineEnd) + lineEnd;
}

}  // namespace tavinor
