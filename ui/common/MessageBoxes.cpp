#include "ui/common/MessageBoxes.h"

#include <QGridLayout>
#include <QLabel>
#include <QMessageBox>

#include "ui/common/Naming.h"

namespace tavinor {

namespace {

QString withLineBreaks(QString text) {
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    return text.replace('\r', '\n');
}

/// Room for the title beside what a window manager puts into the bar: its menu and three buttons, each as
/// wide as the bar is high.
int titleBarWidth(const QMessageBox& box) {
    constexpr int aroundTheLetters = 12;
    const QFontMetrics metrics = box.fontMetrics();
    return metrics.horizontalAdvance(box.windowTitle() + QStringLiteral("MM")) +
           4 * (metrics.height() + aroundTheLetters);
}

/// Qt leaves a hole where an icon would be, and makes a box with a short text narrower than its title.
void fit(const QMessageBox& box) {
    auto* grid = qobject_cast<QGridLayout*>(box.layout());
    if (grid == nullptr) return;
    for (int i = grid->count() - 1; i >= 0; --i) {
        if (grid->itemAt(i)->spacerItem() != nullptr) delete grid->takeAt(i);
    }
    grid->setHorizontalSpacing(0);
    grid->setColumnStretch(grid->columnCount() - 1, 1);
    grid->addItem(new QSpacerItem(titleBarWidth(box), 0), grid->rowCount(), 0, 1, grid->columnCount());
}

QMessageBox::StandardButton ask(QWidget* parent, const QString& text, QMessageBox::StandardButtons buttons,
                                Qt::Alignment alignment = Qt::AlignLeft,
                                QMessageBox::StandardButton byDefault = QMessageBox::NoButton) {
    QMessageBox box(QMessageBox::NoIcon, applicationTitle(), withLineBreaks(text), buttons, parent);
    box.setObjectName(QStringLiteral("messageBox"));
    box.setTextFormat(Qt::PlainText);
    box.setTextInteractionFlags(Qt::NoTextInteraction);
    if (auto* label = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"))) {
        label->setAlignment(alignment | Qt::AlignVCenter);
    }
    box.setDefaultButton(byDefault);
    fit(box);
    return static_cast<QMessageBox::StandardButton>(box.exec());
}

}  // namespace

void showMessage(QWidget* parent, const QString& text, bool rightAligned) {
    ask(parent, text, QMessageBox::Ok, rightAligned ? Qt::AlignRight : Qt::AlignLeft);
}

bool askYesNo(QWidget* parent, const QString& question, DefaultAnswer byDefault) {
    return ask(parent, question, QMessageBox::Yes | QMessageBox::No, Qt::AlignLeft,
               byDefault == DefaultAnswer::yes ? QMessageBox::Yes : QMessageBox::No) == QMessageBox::Yes;
}

SaveAnswer askYesNoCancel(QWidget* parent, const QString& question) {
    switch (ask(parent, question, QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel)) {
        case QMessageBox::Yes: return SaveAnswer::yes;
        case QMessageBox::No: return SaveAnswer::no;
        default: return SaveAnswer::cancel;
    }
}

}  // namespace tavinor
