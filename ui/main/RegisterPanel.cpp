#include "ui/main/RegisterPanel.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include "ui/common/Naming.h"

namespace tavinor {

namespace {

/// Caption and spoken name of each flag box, by bit. The unused bits have a box too, without a caption: see
/// behaviour.md, Main window: registers.
struct FlagName {
    const char* caption;
    const char* accessible;
};
constexpr std::array<FlagName, 8> flagNames{{
    {"C", "Indicador de acarreo"},
    {"", "Bit 1 de F, sin uso"},
    {"P", "Indicador de paridad"},
    {"", "Bit 3 de F, sin uso"},
    {"A", "Indicador de acarreo auxiliar"},
    {"", "Bit 5 de F, sin uso"},
    {"Z", "Indicador de cero"},
    {"S", "Indicador de signo"},
}};

}  // namespace

RegisterPanel::RegisterPanel(const MachineState& machine, const ShownValues& shown, QWidget* parent)
    : QGroupBox(QStringLiteral("Registros"), parent), machine_(machine), shown_(shown) {
    txtA = makeBox(QStringLiteral("txtA"), QStringLiteral("Acumulador A"), 2);
    txtF = makeBox(QStringLiteral("txtF"), QStringLiteral("Registro de indicadores F"), 2);
    txtB = makeBox(QStringLiteral("txtB"), QStringLiteral("Registro B"), 2);
    txtC = makeBox(QStringLiteral("txtC"), QStringLiteral("Registro C"), 2);
    txtBC = makeBox(QStringLiteral("txtBC"), QStringLiteral("Par BC"), 4);
    txtPC = makeBox(QStringLiteral("txtPC"), QStringLiteral("Contador de programa PC"), 4);
    txtD = makeBox(QStringLiteral("txtD"), QStringLiteral("Registro D"), 2);
    txtE = makeBox(QStringLiteral("txtE"), QStringLiteral("Registro E"), 2);
    txtDE = makeBox(QStringLiteral("txtDE"), QStringLiteral("Par DE"), 4);
    txtSP = makeBox(QStringLiteral("txtSP"), QStringLiteral("Puntero de pila SP"), 4);
    txtH = makeBox(QStringLiteral("txtH"), QStringLiteral("Registro H"), 2);
    txtL = makeBox(QStringLiteral("txtL"), QStringLiteral("Registro L"), 2);
    txtHL = makeBox(QStringLiteral("txtHL"), QStringLiteral("Par HL"), 4);
    txtM = makeBox(QStringLiteral("txtM"), QStringLiteral("Memoria apuntada por HL"), 2);
    layOut();
    connectBoxes();
}

RegisterTexts RegisterPanel::texts() const {
    RegisterTexts texts;
    const ColumnBoxes boxes = columnBoxes();
    for (std::size_t i = 0; i < boxes.size(); ++i) texts[i] = boxes[i]->text().toStdString();
    return texts;
}

RegisterPanel::ColumnBoxes RegisterPanel::columnBoxes() const {
    return {txtA, txtB, txtC, txtD, txtE, txtF, txtH, txtL, txtM, txtPC, txtSP};
}

HexBox* RegisterPanel::makeBox(const QString& name, const QString& accessibleName, int digits) {
    auto* box = new HexBox(name, accessibleName, digits, this);
    connect(box, &HexBox::editedChanged, this, [this](bool edited) { editedBoxes_ += edited ? 1 : -1; });
    return box;
}

void RegisterPanel::placeBox(QGridLayout* grid, int row, int column, const QString& caption, HexBox* box) {
    grid->addWidget(tavinor::caption(caption, box, this), row, 2 * column, Qt::AlignRight | Qt::AlignVCenter);
    grid->addWidget(box, row, 2 * column + 1, Qt::AlignLeft);
}

void RegisterPanel::layOut() {
    auto* top = new QGridLayout;
    placeBox(top, 0, 0, QStringLiteral("A"), txtA);
    placeBox(top, 1, 0, QStringLiteral("F"), txtF);
    top->addWidget(makeFlagBoxes(), 0, 2, 2, 1, Qt::AlignBottom);
    top->setColumnStretch(3, 1);

    struct Column {
        std::array<const char*, 4> captions;
        std::array<HexBox*, 4> boxes;
    };
    const std::array<Column, 3> columns{{
        {{"B", "C", "BC", "PC"}, {txtB, txtC, txtBC, txtPC}},
        {{"D", "E", "DE", "SP"}, {txtD, txtE, txtDE, txtSP}},
        {{"H", "L", "HL", "M"}, {txtH, txtL, txtHL, txtM}},
    }};
    auto* registers = new QGridLayout;
    registers->setHorizontalSpacing(8);
    for (int column = 0; column < 3; ++column) {
        for (int row = 0; row < 4; ++row) {
            const auto& [captions, boxes] = columns[static_cast<std::size_t>(column)];
            const auto place = static_cast<std::size_t>(row);
            placeBox(registers, row, column, QString::fromLatin1(captions[place]), boxes[place]);
        }
        registers->setColumnStretch(2 * column + 1, 1);
    }
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addLayout(registers);
    setTabOrder(txtF, flagBox(7));  // each call moves its second widget behind its first
    for (int bit = 7; bit > 0; --bit) setTabOrder(flagBox(bit), flagBox(bit - 1));
}

/// Eight boxes from bit 7 to bit 0 with their captions above.
QWidget* RegisterPanel::makeFlagBoxes() {
    auto* holder = new QWidget(this);
    auto* grid = new QGridLayout(holder);
    grid->setContentsMargins(8, 0, 0, 0);
    grid->setHorizontalSpacing(4);
    grid->setVerticalSpacing(2);
    for (int bit = 7; bit >= 0; --bit) {
        const FlagName& name = flagNames[static_cast<std::size_t>(bit)];
        auto* box = new CommandCheckBox(QStringLiteral("chkF%1").arg(bit), QString::fromUtf8(name.accessible),
                                        {}, holder);
        chkF[static_cast<std::size_t>(bit)] = box;
        connect(box, &CommandCheckBox::changedByUser, this, &RegisterPanel::chkF_Click);
        grid->addWidget(caption(QString::fromLatin1(name.caption), box, holder), 0, 7 - bit,
                        Qt::AlignHCenter);
        grid->addWidget(box, 1, 7 - bit, Qt::AlignHCenter);
    }
    return holder;
}

void RegisterPanel::connectBoxes() {
    connect(txtA, &HexBox::left, this, [this] { enter(&Registers::A, txtA->value()); });
    connect(txtF, &HexBox::left, this, [this] {
        enter(&Registers::F, txtF->value());
        showFlags();
    });
    connectPair({txtB, txtC, txtBC, &Registers::B, &Registers::C});
    connectPair({txtD, txtE, txtDE, &Registers::D, &Registers::E});
    connectPair({txtH, txtL, txtHL, &Registers::H, &Registers::L});
    for (HexBox* box : {txtH, txtL, txtHL}) connect(box, &HexBox::left, this, &RegisterPanel::pointerLeft);
    // E alone brings its pair into step as soon as its text is accepted, before it is left: see behaviour.md,
    // Main window: registers.
    connect(txtE, &HexBox::validated, this, [this] { txtDE->showText(txtD->text() + txtE->text()); });
    connect(txtM, &HexBox::left, this, [this] { emit memoryByteEntered(txtHL->value(), txtM->value()); });
    connect(txtPC, &HexBox::left, this, [this] {
        enter(&Registers::PC, txtPC->value());
        emit programCounterEntered();
    });
    connect(txtSP, &HexBox::left, this, [this] {
        enter(&Registers::SP, txtSP->value());
        emit stackPointerEntered();
    });
}

void RegisterPanel::connectPair(const PairBoxes& pair) {
    connect(pair.high, &HexBox::left, this, [this, pair] { halfLeft(pair, pair.high, pair.highRegister); });
    connect(pair.low, &HexBox::left, this, [this, pair] { halfLeft(pair, pair.low, pair.lowRegister); });
    connect(pair.pair, &HexBox::left, this, [this, pair] { pairLeft(pair); });
}

void RegisterPanel::halfLeft(const PairBoxes& pair, const HexBox* half, std::uint8_t Registers::*own) {
    pair.pair->showText(pair.high->text() + pair.low->text());
    enter(own, half->value());
}

void RegisterPanel::pairLeft(const PairBoxes& pair) {
    pair.high->showText(pair.pair->text().left(2));
    pair.low->showText(pair.pair->text().right(2));
    Registers registers = machine_.registers();
    registers.*pair.highRegister = static_cast<std::uint8_t>(pair.high->value());
    registers.*pair.lowRegister = static_cast<std::uint8_t>(pair.low->value());
    emit registersEntered(registers);
}

void RegisterPanel::pointerLeft() {
    emit pointerEntered();
    txtM->showValue(shown_.M);
}

void RegisterPanel::showFlags() {
    for (int bit = 0; bit < 8; ++bit) flagBox(bit)->showChecked((machine_.F >> bit & 1) != 0);
}

int RegisterPanel::shownFlags() const {
    int f = 0;
    for (int bit = 0; bit < 8; ++bit) f |= flagBox(bit)->isChecked() ? 1 << bit : 0;
    return f;
}

void RegisterPanel::chkF_Click() {
    txtF->showValue(shownFlags());
    enter(&Registers::F, txtF->value());
}

void RegisterPanel::bringUpToDate() {
    const Registers& r = shown_.registers;
    const RegisterImage image(r, shown_.M);
    const ColumnBoxes boxes = columnBoxes();
    for (std::size_t i = 0; i < boxes.size(); ++i) {
        boxes[i]->showValue(registerColumns[boxColumns[i]].value(image));
    }
    txtBC->showValue(r.BC);
    txtDE->showValue(r.DE);
    txtHL->showValue(r.HL);
    showFlags();
}

}  // namespace tavinor
