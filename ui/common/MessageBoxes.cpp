#include "ui/common/MessageBoxes.h"

#include <QLabel>
#include <QMessageBox>

#include "ui/common/Naming.h"

namespace tavinor {

namespace {

QString withLineBreaks(QString text) {
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    return text.replace('\r', '\n');
}

QMessageBox::StandardButton ask(QWidget* parent, const QString& text, QMessageBox::StandardButtons buttons,
                                Qt::Alignment alignment = Qt::AlignLeft) {
    QMessageBox box(QMessageBox::NoIcon, applicationTitle(), withLineBreaks(text), buttons, parent);
    box.setObjectName(QStringLiteral("messageBox"));
    box.setTextFormat(Qt::PlainText);
    box.setTextInteractionFlags(Qt::NoTextInteraction);
    if (auto* label = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"))) {
        label->setAlignment(alignment | Qt::AlignVCenter);
    }
    return static_cast<QMessageBox::StandardButton>(box.exec());
}

}  // namespace

void showMessage(QWidget* parent, const QString& text, bool rightAligned) {
    ask(parent, text, QMessageBox::Ok, rightAligned ? Qt::AlignRight : Qt::AlignLeft);
}

bool askYesNo(QWidget* parent, const QString& question) {
    return ask(parent, question, QMessageBox::Yes | QMessageBox::No) == QMessageBox::Yes;
}

SaveAnswer askYesNoCancel(QWidget* parent, const QString& question) {
    switch (ask(parent, question, QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel)) {
        case QMessageBox::Yes: return SaveAnswer::yes;
        case QMessageBox::No: return SaveAnswer::no;
        default: return SaveAnswer::cancel;
    }
}

}  // namespace tavinor
