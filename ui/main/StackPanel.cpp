#include "ui/main/StackPanel.h"

#include <QVBoxLayout>

#include "ui/common/Fonts.h"
#include "ui/common/HexBox.h"
#include "ui/common/Naming.h"

namespace tavinor {

namespace {
constexpr int wordsShown = 8;
}

StackPanel::StackPanel(const MachineState& machine, const ShownValues& shown, QWidget* parent)
    : QGroupBox(QStringLiteral("PILA"), parent),
      machine_(machine),
      shown_(shown),
      pila(named(new QListWidget(this), QStringLiteral("pila"), QStringLiteral("Pila"))) {
    pila->setUniformItemSizes(true);
    pila->setSelectionMode(QAbstractItemView::NoSelection);
    pila->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    pila->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    for (int i = 0; i < wordsShown; ++i) pila->addItem(QStringLiteral("0000"));
    useFont(pila, fixedFont, [this] { fitWords(); });
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(pila);
    layout->addStretch();
}

void StackPanel::fitWords() {
    const int frame = 2 * pila->frameWidth();
    pila->setFixedSize(pila->sizeHintForColumn(0) + frame + 8, wordsShown * pila->sizeHintForRow(0) + frame);
}

void StackPanel::regenpila() {
    std::int32_t p = shown_.registers.SP;
    for (int i = 0; i < wordsShown; ++i) {
        const std::int32_t word = machine_.wrapped(p + 1) * 256 + machine_.at(p);
        pila->item(i)->setText(hexString(word, 4));
        p = (p + 2) & 0xFFFF;
    }
}

}  // namespace tavinor
