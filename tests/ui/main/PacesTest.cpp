// The same script of keys, edits, interrupts, answers to HLTs and errors at three paces of a run: nothing
// that can be seen depends on how many instructions lie between two looks at the event queue.

#include <QAction>
#include <QLabel>
#include <QListWidget>
#include <QTemporaryDir>
#include <QTest>
#include <utility>

#include "tests/support/RealInput.h"
#include "tests/ui/main/Simulator.h"
#include "tests/ui/main/ViewsCheck.h"
#include "trace/TraceFile.h"
#include "ui/common/Paths.h"

using namespace tavinor;

namespace {

/// Looks at the event queue after every `slice` instructions, but always after each multiple of `distance`:
/// there it does the next of the acts.
class MeetingPace final : public RunPace {
  public:
    static constexpr std::int64_t distance = 4096;

    explicit MeetingPace(std::int64_t slice) : slice_(slice) {}

    /// Another run begins.
    void begin(QList<std::function<void()>> acts) {
        done_ = 0;
        acts_ = std::move(acts);
    }

    [[nodiscard]] std::int64_t slice() override {
        const std::int64_t next = std::min(slice_, distance - done_ % distance);
        done_ += next;
        return next;
    }
    [[nodiscard]] Due due() override {
        if (done_ % distance != 0 || acts_.isEmpty()) return Due::events;
        QMetaObject::invokeMethod(qApp, acts_.takeFirst(), Qt::QueuedConnection);
        return Due::frame;
    }

  private:
    std::int64_t slice_;
    std::int64_t done_ = 0;
    QList<std::function<void()>> acts_;
};

/// The texts of a grid, a line for each of its rows.
QStringList linesOf(const QTableView& grid) {
    const QAbstractItemModel& model = *grid.model();
    QStringList lines;
    for (int row = 0; row < model.rowCount(); ++row) {
        QString line = model.headerData(row, Qt::Vertical).toString() + ':';
        for (int column = 0; column < model.columnCount(); ++column) {
            line += ' ' + model.index(row, column).data().toString();
        }
        lines += line;
    }
    return lines;
}

/// What a widget shows.
QStringList shownBy(const QWidget& widget) {
    if (const auto* box = qobject_cast<const QLineEdit*>(&widget)) return {box->text()};
    if (const auto* label = qobject_cast<const QLabel*>(&widget)) return {label->text()};
    if (const auto* button = qobject_cast<const QAbstractButton*>(&widget)) {
        return {button->text() + (button->isChecked() ? " checked" : "")};
    }
    if (const auto* grid = qobject_cast<const QTableView*>(&widget)) return linesOf(*grid);
    QStringList lines;
    if (const auto* list = qobject_cast<const QListWidget*>(&widget)) {
        for (int row = 0; row < list->count(); ++row) lines += list->item(row)->text();
        lines += QString::number(list->currentRow());
    }
    return lines;
}

QString number(std::int64_t value) {
    return QString::number(value);
}

}  // namespace

class PacesTest : public QObject {
    Q_OBJECT

  private:
    std::unique_ptr<Simulator> s_;
    MeetingPace* pace_ = nullptr;
    QStringList shown_;
    QTemporaryDir folder_;

    void start(std::int64_t slice) {
        s_.reset();  // there is one of them at a time
        shown_.clear();
        auto pace = std::make_unique<MeetingPace>(slice);
        pace_ = pace.get();
        s_ = std::make_unique<Simulator>(std::move(pace));
    }
    /// Notes what every widget shows, the machine and the saved rows.
    void look() {
        const QString difference = ViewsCheck(*s_).difference();
        QVERIFY2(difference.isEmpty(), qPrintable(difference));
        for (const QWidget* widget : s_->window.findChildren<QWidget*>()) {
            const QString name = widget->objectName() + (widget->isEnabled() ? ": " : " (disabled): ");
            for (const QString& text : shownBy(*widget)) shown_ += name + text;
        }
        const MachineState& m = s_->machine();
        shown_ += "machine: " + QByteArray(reinterpret_cast<const char*>(m.mem.data()), m.mem.size()).toHex();
        shown_ += "ports: " + QByteArray(reinterpret_cast<const char*>(m.port.data()), m.port.size()).toHex();
        for (const std::int32_t value : {int{m.A}, int{m.F}, m.PSW, m.BC, m.DE, m.HL, m.PC, m.SP}) {
            shown_ += "register: " + number(value);
        }
        const Position end = s_->window.trace().history().end();
        shown_ += "history: " + number(static_cast<std::int64_t>(end.instructions)) + ", " +
                  number(static_cast<std::int64_t>(end.changes));
        shown_ += savedRows();
    }
    QStringList savedRows() {
        const QString path = folder_.filePath("rows.txt");
        TraceFile file(s_->window.trace(), toPath(path));
        bool written = file.open();
        while (written && !file.finished()) written = file.writeMore();
        if (!file.close() || !written) qFatal("the rows cannot be saved");
        QFile saved(path);
        if (!saved.open(QIODevice::ReadOnly)) qFatal("the rows cannot be read");
        return QString::fromUtf8(saved.readAll()).split('\n');
    }
    void run(QList<std::function<void()>> acts = {}) {
        pace_->begin(std::move(acts));
        s_->press("Ejecutar");
        QVERIFY(!s_->running());
    }
    void expectHalt(const char* wayOut, bool stops) {
        s_->dialogs.expectWindow("Halt", [wayOut, stops](QWidget* dialog) {
            clickIn(dialog->findChild<QAbstractButton*>(wayOut));
            if (stops) clickIn(dialog->findChild<QAbstractButton*>("eje"));
            clickIn(dialog->findChild<QWidget*>("aceptar"));
        });
    }

    /// Writes memory, the stack, a port and its own code for some 12,290 instructions, up to a breakpoint at
    /// a HLT.
    void loadProgram() {
        // LXI SP,8000; LXI H,2000; 0006: MOV M,A; INR A; INX H; PUSH H; POP D; OUT 10; STA 0011; MVI B,00;
        // MOV A,H; CPI 24; MOV A,B; JNZ 0006; 0019: HLT; HLT; and the interrupts' RET
        QByteArray program = QByteArray::fromHex("310080210020773C23E5D1D31032110006007CFE2478C206007676");
        program = program.leftJustified(0x24, '\0') + QByteArray::fromHex("C9");    // TRAP
        program = program.leftJustified(0x2C, '\0') + QByteArray::fromHex("14C9");  // RST 5.5: INR D
        program = program.leftJustified(0x38, '\0') + QByteArray::fromHex("1CC9");  // RST 7: INR E
        s_->load(0, program);
        s_->enter("txtDIR", "0019");
        s_->clickRow(s_->rowOf(0x19));
        pressKey(&s_->window, Qt::Key_F9);
    }
    void edits() const {
        s_->enter("txtA", "77");
        s_->enter("txtDirMem", "3000");
        s_->enter("txtDatMem", "AB");
        s_->press("chkF7");
        s_->enter("txtDIR", "0100");
        s_->enter("INSCO", "3E");
        s_->enter("txtM", "5C");
        s_->type("txtD", "7");  // the next instruction sees it
    }
    void interrupts() const {
        s_->press("CHK55");
        s_->press("CHKEI");
        s_->press("Rst55");
        s_->press("CHKEI");
        s_->enter("txtVec", "FF");
        s_->press("Intr");
        s_->press("Trap");
        s_->press("chkSID");
    }
    void failAtTheTop() {
        s_->enter("txtPC", "FFFF");
        s_->enter("txtDirMem", "FFFF");
        s_->enter("txtDatMem", "FF");  // RST 7 cannot push its return address
        s_->dialogs.expectMessage("Error 6: desbordamiento");
        run();
    }

    /// In a run, an operand that is entered past the top.
    void failInARun() {
        s_->load(0x200, QByteArray::fromHex("34C30002"));  // INR M; JMP 0200
        s_->enter("txtHL", "3456");
        s_->enter("txtPC", "0200");
        s_->dialogs.expectMessage(QStringLiteral("Error 9: subíndice fuera del intervalo"));
        run({[this] {
            s_->enter("txtDIR", "FFFF");
            s_->enter("INSOP1", "12");
        }});
    }
    void goBack() const {
        for (int times = 0; times < 5; ++times) pressKey(&s_->window, Qt::Key_F7);
        s_->clickCell("grdmem", 0x3456);
        pressKey(&s_->window, Qt::Key_F7, Qt::ShiftModifier);
    }

    QStringList shownByScript(std::int64_t slice) {
        start(slice);
        loadProgram();
        run({[this] { edits(); }, [this] { interrupts(); }, [this] { s_->type("txtPC", "12345"); }});
        look();
        expectHalt("opt1", false);  // TRAP, and on to the next HLT
        expectHalt("opt1", true);
        run();
        look();
        s_->press("Trap");
        s_->press("Eje_paso");
        s_->press("Reset");
        look();
        failAtTheTop();
        look();
        failInARun();
        look();
        goBack();
        look();
        return std::exchange(shown_, {});
    }

  private slots:
    void cleanup() { s_.reset(); }

    void showTheSame() {
        const QStringList oneByOne = shownByScript(1);
        QVERIFY(!oneByOne.filter("0019\t76").isEmpty());
        for (const std::int64_t slice : {7, 4096}) {
            const QStringList shown = shownByScript(slice);
            QCOMPARE(shown.size(), oneByOne.size());
            for (qsizetype i = 0; i < shown.size(); ++i) QCOMPARE(shown[i], oneByOne[i]);
        }
    }
};

QTEST_MAIN(PacesTest)
#include "PacesTest.moc"
