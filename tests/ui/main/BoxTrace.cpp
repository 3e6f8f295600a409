#include "tests/ui/main/BoxTrace.h"

#include <QAction>
#include <QApplication>
#include <QMessageBox>
#include <algorithm>

#include "machine/Flags.h"
#include "trace/TraceText.h"
#include "ui/common/Commands.h"
#include "ui/common/HexBox.h"
#include "ui/main/Halt.h"

namespace tavinor {

namespace {

constexpr std::uint8_t hltCode = 0x76;

/// In the order of `BoxTexts`.
constexpr std::array<const char*, boxColumns.size()> boxNames{"txtA", "txtB", "txtC", "txtD",  "txtE", "txtF",
                                                              "txtH", "txtL", "txtM", "txtPC", "txtSP"};

bool hasInstruction(const NaiveTrace::Row& row) {
    return !row[1].empty();
}

template <typename Control>
const Control* control(const QWidget& window, const QString& name) {
    for (const Control* found : window.findChildren<Control*>(name)) {
        if (found->window() == &window) return found;
    }
    qFatal("no control %s", qPrintable(name));
}

}  // namespace

BoxTrace::BoxTrace(Principal& principal, Listapasos& window)
    : principal_(principal), reader_(principal.trace()), revision_(principal.trace().history().revision()) {
    for (std::size_t i = 0; i < boxes_.size(); ++i) {
        boxes_[i] = control<HexBox>(principal, QString::fromLatin1(boxNames[i]));
    }
    for (std::size_t bit = 0; bit < flags_.size(); ++bit) {
        flags_[bit] = control<QAbstractButton>(principal, QStringLiteral("chkF%1").arg(bit));
    }
    // `released` comes just before the command, which a box may have refused by then.
    const auto* step = control<CommandButton>(principal, QStringLiteral("Eje_paso"));
    QObject::connect(step, &CommandButton::released, &principal, [this] { note(); });
    QObject::connect(step, &CommandButton::command, &principal, [this] { instructionDone(); });
    QObject::connect(&window, &Listapasos::cleared, &principal, [this] { forgetAll(); });
    for (const char* way : {"pasoAtras", "atrasPunto", "atrasCasilla", "alPrincipio"}) {
        const auto* action = principal.findChild<QAction*>(QString::fromLatin1(way));
        QObject::connect(action, &QAction::triggered, &principal, [this] { wentBack(); });
    }
}

void BoxTrace::instructionComes() {
    endWhatHasEnded();
    bringBoxesUpToDate();
    note();
    begin();
}

void BoxTrace::instructionDone() {
    begin();
    bringBoxesUpToDate();
    endWhatHasEnded();
}

void BoxTrace::windowShown(const QWidget* window) {
    const auto* box = qobject_cast<const QMessageBox*>(window);
    const bool error = box != nullptr && box->text().startsWith(QStringLiteral("Error "));
    if (!error && qobject_cast<const Halt*>(window) == nullptr) return;
    begin();
    const bool halts = machine_->at(machine_->PC) == hltCode;  // then it was its way out that failed
    if (error && !halts) instruction_ = Instruction::none;
}

void BoxTrace::somethingElseComes() {
    if (instruction_ == Instruction::comes) instruction_ = Instruction::none;  // a box refused
    endWhatHasEnded();
}

void BoxTrace::note() {
    instruction_ = Instruction::comes;
    *machine_ = principal_.machine();
    texts_ = boxes();
    typed_ = std::any_of(boxes_.begin(), boxes_.end(), [](const HexBox* box) { return box->edited(); });
    instructions_ = history().end().instructions;
    revision_ = history().revision();
}

void BoxTrace::begin() {
    if (instruction_ != Instruction::comes) return;
    instruction_ = Instruction::open;
    const std::size_t before = rows_.rows().size();
    rows_.listainstru(*machine_, texts_);
    if (typed_) typedRows_.insert(before);
}

/// A HLT's dialog, or what its way out shows, may still be open. Where the trace was cleared meanwhile, it
/// has a row again once the HLT has ended.
void BoxTrace::endWhatHasEnded() {
    const bool cleared = history().revision() != revision_;
    const bool ended = cleared ? !principal_.trace().empty() : history().end().instructions > instructions_;
    if (instruction_ != Instruction::open || !ended) return;
    instruction_ = Instruction::none;
    revision_ = history().revision();
    rows_.listareg(boxes());
}

void BoxTrace::forgetAll() {
    rows_.clear();
    typedRows_.clear();
    if (instruction_ == Instruction::none) revision_ = history().revision();
}

/// What is undone leaves the trace, and the boxes show again what they showed after the last row that is
/// left.
void BoxTrace::wentBack() {
    if (history().revision() == revision_) return;  // nothing was undone
    revision_ = history().revision();
    const Position end = history().end();
    leaveRows(end);
    const std::vector<NaiveTrace::Row>& rows = rows_.rows();
    if (rows.empty() || typedRows_.count(rows.size() - 1) > 0) return;
    const bool group = history().endsGroup(end);
    if (rows.back()[firstRegisterColumn].empty() || group == hasInstruction(rows.back())) return;
    NaiveTrace shown;
    shown.listareg(boxes());
    const bool same = std::equal(shown.rows()[0].begin() + firstRegisterColumn, shown.rows()[0].end(),
                                 rows.back().begin() + firstRegisterColumn);
    if (!same) {
        complaint_ = QStringLiteral("after a way back the boxes show \"%1\", the last row is \"%2\"")
                         .arg(QString::fromStdString(shown.line(0)),
                              QString::fromStdString(rows_.line(rows.size() - 1)));
    }
}

/// One row for each instruction, and the state row behind the last one where what the user changed there has
/// not been undone. The first state row leaves with the first instruction.
void BoxTrace::leaveRows(const Position& end) {
    const std::vector<NaiveTrace::Row>& rows = rows_.rows();
    std::size_t left = 0;
    for (std::uint64_t instructions = 0; instructions < end.instructions && left < rows.size(); ++left) {
        instructions += hasInstruction(rows[left]) ? 1 : 0;
    }
    const bool stateRow = left > 0 && left < rows.size() && !hasInstruction(rows[left]);
    rows_.cut(stateRow && history().endsGroup(end) ? left + 1 : left);
    typedRows_.erase(typedRows_.lower_bound(rows.size()), typedRows_.end());
}

/// In a run the boxes wait until an event is handed to a handler.
void BoxTrace::bringBoxesUpToDate() {
    QObject handler;
    QEvent event(QEvent::User);
    QCoreApplication::sendEvent(&handler, &event);
}

BoxTexts BoxTrace::boxes() const {
    RegisterTexts t;
    for (std::size_t i = 0; i < t.size(); ++i) t[i] = boxes_[i]->text().toStdString();
    int f = 0;
    for (std::size_t bit = 0; bit < flags_.size(); ++bit) f |= flags_[bit]->isChecked() ? 1 << bit : 0;
    return {t[0], t[1], t[2], t[3], t[4], t[5], t[6], t[7], t[8], t[9], t[10], txtflags(f)};
}

QString BoxTrace::difference(std::uint64_t count) {
    if (!complaint_.isEmpty()) return complaint_;
    const std::uint64_t size = principal_.trace().size();
    if (size != rows_.rows().size()) {
        return QStringLiteral("the trace has %1 rows, the boxes have shown %2")
            .arg(size)
            .arg(rows_.rows().size());
    }
    QString text;
    std::uint64_t row = size - std::min(count, size);
    reader_.read(row, count, [&](const TraceRow& values, const RowTexts* texts) {
        std::string line;
        appendLine(line, values, texts);
        if (text.isEmpty() && line != rows_.line(row)) {
            text = QStringLiteral("row %1 is \"%2\", the boxes have shown \"%3\"")
                       .arg(QString::number(row), QString::fromStdString(line),
                            QString::fromStdString(rows_.line(row)));
        }
        ++row;
    });
    return text;
}

}  // namespace tavinor
