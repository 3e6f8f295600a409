#pragma once

#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QObject>
#include <QPushButton>
#include <QStringList>
#include <QTimerEvent>

#include "tests/memory/RefusedAllocations.h"

namespace tavinor::test {

/// A user who answers whatever comes: types `path` into a file dialog, says yes to a question, closes a box
/// and the assembler's window. The allocation that is refused is counted from `start` on, or from the moment
/// at which a file dialog or a question has been answered; what a box at the end needs always succeeds.
class User : public QObject {
  public:
    explicit User(int refused) : refused_(refused) { startTimer(1); }
    ~User() override { FailingAllocation::disarm(); }
    User(const User&) = delete;
    User& operator=(const User&) = delete;

    void start() const { FailingAllocation::arm(refused_); }
    /// The event is over. True when the user was told that there is no memory, and has seen nothing else.
    bool wasToldOfMemory() const {
        FailingAllocation::disarm();
        return boxes == QStringList(QStringLiteral("Memoria insuficiente"));
    }

    QString path;
    QStringList boxes;  ///< The texts of those that asked nothing.

  protected:
    void timerEvent(QTimerEvent* /*event*/) override {
        QWidget* window = QApplication::activeModalWidget();
        if (auto* box = qobject_cast<QMessageBox*>(window)) {
            answer(*box);
        } else if (auto* dialog = qobject_cast<QFileDialog*>(window)) {
            connect(dialog, &QObject::destroyed, this, &User::start, Qt::UniqueConnection);
            dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(path);
            static_cast<QDialog*>(dialog)->accept();
        } else if (window != nullptr && window->objectName() == QStringLiteral("Ensamblador")) {
            auto* close = window->findChild<QPushButton*>(QStringLiteral("cerrar"));
            if (!close->isEnabled()) return;
            FailingAllocation::disarm();
            close->click();
        }
    }

  private:
    void answer(QMessageBox& box) {
        if (QAbstractButton* yes = box.button(QMessageBox::Yes)) {
            connect(&box, &QObject::destroyed, this, &User::start);
            yes->click();
            return;
        }
        FailingAllocation::disarm();
        boxes.append(box.text());
        box.accept();
    }

    int refused_;
};

}  // namespace tavinor::test
