#include "ui/main/EntryPanel.h"

#include <QHBoxLayout>
#include <QLabel>

#include "ui/common/Fonts.h"

namespace tavinor {

namespace {

bool isBlank(const HexBox* box) {
    return box->text().trimmed().isEmpty();
}

constexpr int longestInstruction = 15;  // a blank and "LXI SP,palabra"

}  // namespace

EntryPanel::EntryPanel(const MachineState& machine, QWidget* parent)
    : QGroupBox(QStringLiteral("Instrucción"), parent),
      machine_(machine),
      txtDIR(new HexBox(QStringLiteral("txtDIR"), QStringLiteral("Dirección de la instrucción"), 4, this)),
      INSCO(new CellBox(QStringLiteral("INSCO"), QStringLiteral("Código de la instrucción"), this,
                        HexBox::Blank::kept)),
      INSOP1(new CellBox(QStringLiteral("INSOP1"), QStringLiteral("Primer byte del operando"), this,
                         HexBox::Blank::kept)),
      INSOP2(new CellBox(QStringLiteral("INSOP2"), QStringLiteral("Segundo byte del operando"), this,
                         HexBox::Blank::kept)),
      INS(new QLabel(this)) {
    INS->setObjectName(QStringLiteral("INS"));
    INS->setAccessibleDescription(QStringLiteral("Texto de la instrucción"));  // its name is what it shows
    // The row has no captions; the pointer tells what its boxes are for.
    txtDIR->setToolTip(txtDIR->accessibleName());
    INS->setTextFormat(Qt::PlainText);
    useFont(INS, fixedFont, [this] {
        INS->setMinimumWidth(INS->fontMetrics().horizontalAdvance(QString(longestInstruction, '0')));
    });
    auto* layout = new QHBoxLayout(this);
    layout->addWidget(txtDIR);
    layout->addSpacing(6);
    for (CellBox* box : {INSCO, INSOP1, INSOP2}) layout->addWidget(box);
    layout->addWidget(INS, 1);

    connect(txtDIR, &QLineEdit::textChanged, this, &EntryPanel::bringUpToDate);
    connect(txtDIR, &HexBox::left, this, [this] { emit addressEntered(txtDIR->value()); });
    connect(INSCO, &HexBox::left, this, [this] {
        if (!isBlank(INSCO)) emit codeEntered(txtDIR->value(), INSCO->value());
    });
    const auto connectOperand = [this](HexBox* box, int place) {
        connect(box, &HexBox::left, this, [this, box, place] {
            if (!isBlank(box)) emit operandEntered(txtDIR->value() + place, box->value());
        });
    };
    connectOperand(INSOP1, 1);
    connectOperand(INSOP2, 2);
}

void EntryPanel::bringUpToDate() {
    std::optional<int> address = txtDIR->normalValue();
    for (CellBox* box : {INSCO, INSOP1, INSOP2}) {
        const bool exists = address && *address < memorySize;
        box->showCell(exists ? std::optional(machine_.mem[static_cast<std::size_t>((*address)++)])
                             : std::nullopt);
    }
}

void EntryPanel::showRow(const QString& row) {
    txtDIR->showText(row.left(4));
    INSCO->showText(row.mid(5, 2).trimmed());
    INSOP1->showText(row.mid(8, 2).trimmed());
    INSOP2->showText(row.mid(11, 2).trimmed());
    INS->setText(row.mid(14));
}

}  // namespace tavinor
