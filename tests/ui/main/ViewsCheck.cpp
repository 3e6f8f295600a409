#include "tests/ui/main/ViewsCheck.h"

#include <QCheckBox>
#include <QRadioButton>
#include <algorithm>
#include <numeric>
#include <tuple>

#include "machine/MnemonicTable.h"

namespace tavinor {

namespace {

constexpr int maximumRows = 29;
constexpr int bytesBefore = 12;

QString differs(const QString& what, const QString& shown, const QString& expected) {
    return shown == expected ? QString()
                             : QStringLiteral("%1 shows \"%2\", expected \"%3\"").arg(what, shown, expected);
}

QString differs(const QString& what, bool shown, bool expected) {
    return shown == expected ? QString() : QStringLiteral("%1 is %2").arg(what).arg(shown);
}

QString firstOf(const QStringList& complaints) {
    for (const QString& complaint : complaints) {
        if (!complaint.isEmpty()) return complaint;
    }
    return {};
}

int byteAt(const MachineState& m, int address) {
    return m.mem[static_cast<std::size_t>(address & 0xFFFF)];
}

QString mnemonic(const MachineState& m, int address) {
    const std::string_view text = tabla[static_cast<std::size_t>(byteAt(m, address))];
    return QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
}

int lengthAt(const MachineState& m, int address) {
    const QString text = mnemonic(m, address);
    return text.contains("palabra") ? 3 : text.contains("byte") ? 2 : 1;
}

/// A listing row, put together here on its own from the layout of its columns.
QString rowText(const Simulator& s, int address) {
    const MachineState& m = s.machine();
    const int low = byteAt(m, address + 1);
    const int high = byteAt(m, address + 2);
    QString text = mnemonic(m, address);
    text.replace("byte", hexDigits(low, 2)).replace("palabra", hexDigits(high * 256 + low, 4));
    QStringList bytes;
    for (int i = 0; i < lengthAt(m, address); ++i) bytes.append(hexDigits(byteAt(m, address + i), 2));
    const bool marked = s.window.breakpoints()[static_cast<std::size_t>(address)] != 0;
    return hexDigits(address, 4) + (marked ? '*' : ' ') + bytes.join(' ').leftJustified(8) + "  " + text;
}

/// The earliest address at most twelve bytes before `target` whose instructions lead exactly to it.
int topFor(const MachineState& m, int target) {
    for (int top = std::max(0, target - bytesBefore); top < target; ++top) {
        int address = top;
        while (address < target) address += lengthAt(m, address);
        if (address == target) return top;
    }
    return target;
}

QStringList expectedRows(const Simulator& s) {
    QStringList rows;
    for (int address = topFor(s.machine(), s.machine().PC); address < memorySize && rows.size() < maximumRows;
         address += lengthAt(s.machine(), address)) {
        rows.append(rowText(s, address));
    }
    return rows;
}

}  // namespace

QString ViewsCheck::difference() const {
    std::vector<int> all(memorySize);
    std::iota(all.begin(), all.end(), 0);
    return firstOf({allButMemory(), grids(all)});
}

QString ViewsCheck::quickDifference() {
    const auto& memory = simulator_.machine().mem;
    if (seen_.empty()) seen_.assign(memory.begin(), memory.end());
    std::vector<int> changed;
    const auto end = memory.begin() + memorySize;
    auto [now, seen] = std::mismatch(memory.begin(), end, seen_.begin());
    while (now != end) {
        changed.push_back(static_cast<int>(now - memory.begin()));
        *seen = *now;
        std::tie(now, seen) = std::mismatch(now, end, seen);
    }
    return firstOf({allButMemory(), grids(changed)});
}

QString ViewsCheck::allButMemory() const {
    return firstOf({registers(), flags(), listing(), stack(), interrupts(), runState()});
}

QString ViewsCheck::registers() const {
    const MachineState& m = simulator_.machine();
    const struct {
        const char* box;
        int value, digits;
    } expected[] = {
        {"txtA", m.A, 2},   {"txtF", m.F, 2},   {"txtB", m.B, 2},   {"txtC", m.C, 2},
        {"txtD", m.D, 2},   {"txtE", m.E, 2},   {"txtH", m.H, 2},   {"txtL", m.L, 2},
        {"txtBC", m.BC, 4}, {"txtDE", m.DE, 4}, {"txtHL", m.HL, 4}, {"txtM", byteAt(m, m.HL), 2},
        {"txtPC", m.PC, 4}, {"txtSP", m.SP, 4},
    };
    for (const auto& [box, value, digits] : expected) {
        const QString complaint = differs(box, simulator_.text(box), hexDigits(value, digits));
        if (!complaint.isEmpty()) return complaint;
    }
    const bool paired = m.PSW == m.A * 256 + m.F && m.BC == m.B * 256 + m.C && m.DE == m.D * 256 + m.E &&
                        m.HL == m.H * 256 + m.L;
    return differs("pairs in step", paired, true);
}

QString ViewsCheck::flags() const {
    for (int bit = 0; bit < 8; ++bit) {
        const QString name = QStringLiteral("chkF%1").arg(bit);
        const QString complaint =
            differs(name, simulator_.checked(name), (simulator_.machine().F >> bit & 1) != 0);
        if (!complaint.isEmpty()) return complaint;
    }
    return {};
}

QString ViewsCheck::grids(const std::vector<int>& addresses) const {
    const MachineState& m = simulator_.machine();
    const QAbstractItemModel* memory = simulator_.grid("grdmem")->model();
    for (const int address : addresses) {
        const QString shown = memory->index(address / 16, address % 16).data().toString();
        if (shown != hexDigits(byteAt(m, address), 2)) {
            return differs("cell " + hexDigits(address, 4), shown, hexDigits(byteAt(m, address), 2));
        }
    }
    for (int port = 0; port < portCount; ++port) {
        const QString complaint = differs("port " + hexDigits(port, 2), simulator_.cell("grdport", port),
                                          hexDigits(m.port[static_cast<std::size_t>(port)], 2));
        if (!complaint.isEmpty()) return complaint;
    }
    return {};
}

QString ViewsCheck::listing() const {
    const QListWidget* prg = simulator_.listing();
    for (int row = 0; row < prg->count(); ++row) {
        const bool marked = prg->item(row)->data(ListingView::programCounterRole).toBool();
        if (marked != (row == prg->currentRow())) return QStringLiteral("row %1 is marked").arg(row);
    }
    return firstOf({differs("prg", simulator_.rows().join('\n'), expectedRows(simulator_).join('\n')),
                    differs("selected row", hexDigits(simulator_.selectedAddress(), 4),
                            hexDigits(simulator_.machine().PC, 4))});
}

QString ViewsCheck::stack() const {
    const MachineState& m = simulator_.machine();
    QStringList words;
    for (int i = 0; i < 8; ++i) {
        const int address = m.SP + 2 * i;
        words.append(hexDigits(byteAt(m, address + 1) * 256 + byteAt(m, address), 4));
    }
    return differs("pila", simulator_.stackLines().join(' '), words.join(' '));
}

QString ViewsCheck::interrupts() const {
    const MachineState& m = simulator_.machine();
    const InterruptState& i = m.intState;
    const auto option = [this](int index) {
        return simulator_.halt()->findChild<QRadioButton*>(QStringLiteral("opt%1").arg(index))->isEnabled();
    };
    return firstOf({
        differs("CHKEI", simulator_.checked("CHKEI"), i.IE),
        differs("CHK55", simulator_.checked("CHK55"), i.M55),
        differs("CHK65", simulator_.checked("CHK65"), i.M65),
        differs("CHK75", simulator_.checked("CHK75"), i.M75),
        differs("chkSID", simulator_.checked("chkSID"), m.SID),
        differs("ChkSOD", simulator_.checked("ChkSOD"), m.SOD),
        differs("Rst55 enabled", simulator_.enabled("Rst55"), i.IE && !i.M55),
        differs("Rst65 enabled", simulator_.enabled("Rst65"), i.IE && !i.M65),
        differs("Rst75 enabled", simulator_.enabled("Rst75"), i.IE && !i.M75),
        differs("Intr enabled", simulator_.enabled("Intr"), i.IE),
        differs("Trap enabled", simulator_.enabled("Trap"), true),
        differs("Reset enabled", simulator_.enabled("Reset"), true),
        differs("option RESET enabled", option(0), true),
        differs("option TRAP enabled", option(1), true),
        differs("option RST5.5 enabled", option(2), i.IE && !i.M55),
        differs("option RST6.5 enabled", option(3), i.IE && !i.M65),
        differs("option RST7.5 enabled", option(4), i.IE && !i.M75),
        differs("option INTR enabled", option(5), i.IE),
    });
}

QString ViewsCheck::runState() const {
    const bool running = simulator_.running();
    const auto* eje = simulator_.halt()->findChild<QCheckBox*>("eje");
    return firstOf({
        differs("Ejecutar", simulator_.button("Ejecutar")->text(), running ? "&Parar" : "E&jecutar"),
        differs("Eje_paso enabled", simulator_.enabled("Eje_paso"), !running),
        differs("eje enabled", eje->isEnabled(), running),
        differs("eje ticked", eje->isChecked(), running),
    });
}

}  // namespace tavinor
