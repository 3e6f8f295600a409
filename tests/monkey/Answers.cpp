#include "tests/monkey/Answers.h"

#include <QAbstractButton>
#include <QLineEdit>
#include <QProgressDialog>
#include <QPushButton>
#include <algorithm>

#include "ui/main/Halt.h"

namespace tavinor::monkey {

namespace {

QAbstractButton* buttonIn(const QWidget* window, const QString& name) {
    return window->findChild<QAbstractButton*>(name);
}

}  // namespace

bool busy(const QWidget* window) {
    return window->objectName() == QStringLiteral("Ensamblador") && !buttonIn(window, "cerrar")->isEnabled();
}

void Answers::answer(QWidget* window, bool leaveNow) {
    hand_.letGoOfTheMouse(window);
    if (!window->isVisible()) return;
    const int turn = leaveNow ? std::max(turns_[window] + 1, turnsToPlay) : turns_[window] + 1;
    turns_[window] = turn;
    if (turn < turnsToPlay) {
        play(window);
    } else if (turn < turnsToPlay + turnsToLeave) {
        leave(window);
    } else {
        diary_.fail(QStringLiteral("cannot be left: ") + nameOf(window));
    }
}

void Answers::play(QWidget* window) {
    if (auto* dialog = qobject_cast<QFileDialog*>(window)) {
        playWithFiles(dialog);
    } else if (chance_.oneIn(8)) {
        hand_.closeWindow(window);
    } else if (auto* box = qobject_cast<QMessageBox*>(window)) {
        playWithMessage(box);
    } else if (qobject_cast<Halt*>(window) != nullptr) {
        playWithHalt(window);
    } else if (qobject_cast<QProgressDialog*>(window) != nullptr && !chance_.oneIn(4)) {
        diary_.note(QStringLiteral("waits"));
    } else {
        hand_.useWindow(window);
    }
}

void Answers::leave(QWidget* window) {
    if (auto* dialog = qobject_cast<QFileDialog*>(window)) {
        endFileDialog(dialog, QDialogButtonBox::RejectRole);
    } else if (auto* box = qobject_cast<QMessageBox*>(window)) {
        // Yes to the question whether to save would bring the next dialog.
        QAbstractButton* no = box->button(QMessageBox::No);
        hand_.clickOn(no != nullptr ? no : box->buttons().first());
    } else if (qobject_cast<Halt*>(window) != nullptr) {
        leaveHalt(window);
    } else if (qobject_cast<QProgressDialog*>(window) != nullptr) {
        hand_.clickOn(window->findChild<QPushButton*>());
    } else if (window->objectName() == QStringLiteral("Ensamblador")) {
        hand_.press(window, Qt::Key_Escape);
    } else if (window->objectName() == QStringLiteral("Cabecera")) {
        hand_.clickOn(window, QStringLiteral("OK"));
    } else {
        diary_.fail(QStringLiteral("no answer is known for this window: ") + nameOf(window));
    }
}

void Answers::playWithMessage(QMessageBox* box) {
    if (chance_.oneIn(3)) {
        hand_.useWindow(box);
    } else {
        hand_.clickOn(chance_.oneOf(box->buttons()));
    }
}

/// Names are given whole, in the playground: nothing is opened or saved elsewhere.
void Answers::playWithFiles(QFileDialog* dialog) {
    const int what = chance_.below(10);
    if (what == 0) {
        hand_.press(dialog, Qt::Key_Escape);
        return;
    }
    if (what == 1) {
        endFileDialog(dialog, QDialogButtonBox::RejectRole);
        return;
    }
    const bool saving = dialog->acceptMode() == QFileDialog::AcceptSave;
    const bool program = dialog->nameFilters().join(' ').contains(QStringLiteral("hex"));
    const QStringList& right = saving    ? playground_.targets()
                               : program ? playground_.programs()
                                         : playground_.sources();
    const QStringList& wrong = program ? playground_.sources() : playground_.programs();
    const QString path = chance_.oneOf(!saving && chance_.oneIn(6) ? wrong : right);
    diary_.note(QStringLiteral("file ") + path);
    // Typed letter by letter, the completer's list would come between; what is accepted is the same.
    dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(path);
    endFileDialog(dialog, QDialogButtonBox::AcceptRole);
}

void Answers::endFileDialog(QFileDialog* dialog, QDialogButtonBox::ButtonRole role) {
    auto* buttons = dialog->findChild<QDialogButtonBox*>();
    for (QAbstractButton* button : buttons->buttons()) {
        if (buttons->buttonRole(button) == role) {
            hand_.clickOn(button);
            return;
        }
    }
    diary_.fail(QStringLiteral("a file dialog without its buttons"));
}

void Answers::playWithHalt(QWidget* halt) {
    switch (chance_.below(6)) {
        case 0: hand_.useWindow(halt); break;
        case 1: hand_.fill(halt->findChild<QLineEdit*>(QStringLiteral("txtVec")), hand_.someText()); break;
        case 2: hand_.clickOn(halt, QStringLiteral("eje")); break;
        case 3: hand_.clickOn(halt, QStringLiteral("aceptar")); break;
        default:
            hand_.clickOn(halt,
                          QStringLiteral("opt%1").arg(chance_.below(static_cast<int>(Halt::waysOut.size()))));
            break;
    }
}

/// With RESET, and without going on: what comes next could be a HLT again.
void Answers::leaveHalt(QWidget* halt) {
    hand_.fill(halt->findChild<QLineEdit*>(QStringLiteral("txtVec")), QStringLiteral("00"));
    hand_.clickOn(halt, QStringLiteral("opt0"));
    if (buttonIn(halt, "eje")->isChecked()) hand_.clickOn(halt, QStringLiteral("eje"));
    hand_.clickOn(halt, QStringLiteral("aceptar"));
}

}  // namespace tavinor::monkey
