// The main window, the assembler and the trace where there is no memory: each allocation of the program's own
// is refused once, in each kind of work.

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QAction>
#include <QApplication>
#include <QFile>
#include <QMainWindow>
#include <QScrollBar>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <memory>

#include "tests/memory/User.h"
#include "tests/support/RealInput.h"
#include "ui/common/FileDrops.h"
#include "ui/main/BytePanel.h"
#include "ui/main/ListingPanel.h"
#include "ui/main/Principal.h"

using namespace tavinor;
using test::FailingAllocation;
using test::refuseEach;
using test::User;

namespace {

/// A loop of two turns that calls a subroutine, which writes memory and a port; then a HLT.
const char* const program =
    ":1000000031008021001006023E10CD200005C208FC\r\n"
    ":02001000007678\r\n"
    ":05002000D3017723C9A4\r\n"
    ":00000001FF\r\n";
constexpr int programEnd = 0x11;

/// What is there before `program` comes.
const char* const nothing =
    ":1000000000000000000000000000000000000000F0\r\n"
    ":020010000000EE\r\n"
    ":050020000000000000DB\r\n"
    ":00000001FF\r\n";

const char* const source = "DOS: EQU 2\r\nUNO: MVI B,DOS\r\n DFB 1,2,3\r\n JMP UNO ; otra vez\r\n HLT\r\n";

}  // namespace

class MachineOutOfMemoryTest : public QObject {
    Q_OBJECT

  private:
    std::unique_ptr<QTemporaryDir> folder_;
    std::unique_ptr<Principal> principal_;

    [[nodiscard]] QString write(const QString& name, const QByteArray& bytes) const {
        QFile file(folder_->filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) qFatal("cannot write");
        return file.fileName();
    }
    [[nodiscard]] QByteArray read(const QString& name) const {
        QFile file(folder_->filePath(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(not there)");
    }
    [[nodiscard]] QStringList files() const {
        return QDir(folder_->path()).entryList(QDir::Files | QDir::Hidden);
    }
    [[nodiscard]] const MachineState& machine() const { return principal_->machine(); }
    [[nodiscard]] int at(int address) const { return machine().mem[static_cast<std::size_t>(address)]; }
    [[nodiscard]] QAbstractButton* button(const char* name) const {
        return principal_->findChild<QAbstractButton*>(QString::fromLatin1(name));
    }
    /// As if the file had been dropped on the window; `user` is there from then on.
    void load(const QString& path, const User& user) const {
        auto* drops = principal_->findChild<FileDrops*>();
        const QString kind = QStringLiteral("hex");
        user.start();
        emit drops->dropped(path, kind);
    }
    /// As the list does it.
    void toggleBreakpoint(std::int32_t address) const {
        emit principal_->findChild<ListingPanel*>()->breakpointToggled(address);
    }
    /// The program is there, PC at its beginning, and a breakpoint at its end.
    void prepare() const {
        User user(-1);
        load(write("prog.hex", program), user);
        button("Reset")->click();
        toggleBreakpoint(programEnd);
    }
    static QMainWindow* traceWindow() {
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (window->objectName() == QStringLiteral("Listapasos")) {
                return qobject_cast<QMainWindow*>(window);
            }
        }
        qFatal("there is no window of the trace");
    }
    static QAction* clear() { return traceWindow()->findChild<QAction*>(QStringLiteral("borrar")); }
    [[nodiscard]] QAction* wayBack(const char* name) const {
        return principal_->findChild<QAction*>(QString::fromLatin1(name));
    }
    [[nodiscard]] const Trace& trace() const { return principal_->trace(); }
    /// The machine and how many rows there are.
    [[nodiscard]] QString state() const {
        const MachineState& m = machine();
        QString text;
        for (const int value : {m.PSW, m.BC, m.DE, m.HL, m.PC, m.SP})
            text += QString::number(value, 16) + ' ';
        const QByteArray bytes(reinterpret_cast<const char*>(m.mem.data()), memorySize);
        return text + QString::number(qHash(bytes), 16) + ", rows: " + QString::number(trace().size());
    }
    /// A trace of one run, from the beginning to the end.
    void recordRun() const {
        button("Reset")->click();
        clear()->trigger();
        do button("Ejecutar")->click();
        while (machine().PC != programEnd);
    }
    /// The trace of two runs, in its window.
    QMainWindow* recordedTrace() const {
        prepare();
        for (int i = 0; i < 2; ++i) {
            button("Reset")->click();
            button("Ejecutar")->click();
        }
        principal_->findChild<QAction*>(QStringLiteral("listains"))->trigger();
        return waitActive(traceWindow()) ? traceWindow() : nullptr;
    }
    [[nodiscard]] bool programIsDone() const {
        return machine().PC == programEnd && machine().SP == 0x8000 && machine().B == 0 &&
               machine().HL == 0x1002 && at(0x1001) == 0x10;
    }

  private slots:
    void init() {
        folder_ = std::make_unique<QTemporaryDir>();
        principal_ = std::make_unique<Principal>();
        QVERIFY(showActive(principal_.get()));
    }
    void cleanup() { principal_.reset(); }

    void loading() {
        const QString before = write("nothing.hex", nothing);
        const QString path = write("prog.hex", program);
        const int refused = refuseEach([&](int number) {
            {
                User user(-1);
                load(before, user);
            }
            toggleBreakpoint(7);
            User user(number);
            load(path, user);
            const bool told = user.wasToldOfMemory();
            // Records are stored whole and one after the other.
            const bool first = at(0) == 0x31 && at(0xF) == 0x08;
            const bool second = at(0x11) == 0x76;
            const bool third = at(0x20) == 0xD3 && at(0x24) == 0xC9;
            const bool whole = (first || at(0) == 0) && (second || at(0x11) == 0) &&
                               (third || at(0x20) == 0) && first >= second && second >= third;
            const bool good = told ? whole : third && user.boxes == QStringList("Carga correcta");
            if (!good) qWarning() << number << user.boxes << first << second << third;
            return good && whole;
        });
        QVERIFY2(refused >= 3, qPrintable(QString::number(refused)));
        QCOMPARE(at(0x20), 0xD3);
        QCOMPARE(principal_->breakpoints()[7], 0);
    }

    void assembling() {
        const QString path = write("prog.asm", source);
        const int refused = refuseEach(
            [&](int number) {
                (void)write("prog.HEX", "old");
                (void)write("prog.LST", "old");
                User user(number);
                user.path = path;
                button("Ensamblar")->click();
                const bool told = user.wasToldOfMemory();
                const QByteArray hex = read("prog.HEX");
                const QByteArray listing = read("prog.LST");
                const bool wholeHex = hex.endsWith(":00000001FF\r\n") || (told && hex == "old");
                const bool wholeListing = listing.endsWith("\r\n\r\n") || (told && listing == "old");
                const bool good = (told || user.boxes.isEmpty()) && wholeHex && wholeListing &&
                                  files() == QStringList({"prog.asm", "prog.HEX", "prog.LST"});
                if (!good) qWarning() << number << user.boxes << hex << listing << files();
                return good;
            },
            20);
        QVERIFY2(refused >= 20, qPrintable(QString::number(refused)));
    }

    /// A step is done whole, or not at all.
    void stepping() {
        prepare();
        const int refused = refuseEach([&](int number) {
            button("Reset")->click();
            const User user(number);
            user.start();
            button("Eje_paso")->click();
            const bool told = user.wasToldOfMemory();
            const bool done = machine().PC == 3 && machine().SP == 0x8000;
            const bool undone = machine().PC == 0 && machine().SP == 0;
            const bool good = told ? done || undone : done && user.boxes.isEmpty();
            if (!good) qWarning() << number << user.boxes << machine().PC;
            return good;
        });
        QVERIFY2(refused >= 1, qPrintable(QString::number(refused)));
    }

    /// A run that was ended can go on.
    void running() {
        prepare();
        const int refused = refuseEach([&](int number) {
            button("Reset")->click();
            const User user(number);
            user.start();
            button("Ejecutar")->click();
            const bool told = user.wasToldOfMemory();
            const bool stopped = button("Ejecutar")->text() == QStringLiteral("E&jecutar");
            const bool done = programIsDone();
            if (!done && told) button("Ejecutar")->click();
            const bool good = stopped && (told || user.boxes.isEmpty()) && (told || done) && programIsDone();
            if (!good) qWarning() << number << user.boxes << stopped << machine().PC;
            return good;
        });
        QVERIFY2(refused >= 1, qPrintable(QString::number(refused)));
    }

    /// What was entered is there. The way back is there too, or there is none: then nothing is recorded.
    void editing() {
        prepare();
        BytePanel* memory = nullptr;
        for (auto* panel : principal_->findChildren<BytePanel*>()) {
            if (panel->findChild<QWidget*>(QStringLiteral("grdmem")) != nullptr) memory = panel;
        }
        constexpr int edits = 12;  // the last one is more than a history has room for without asking
        int ended = 0;
        const int refused = refuseEach([&](int number) {
            button("Reset")->click();
            clear()->trigger();
            const QString before = state();
            const int byte = 1 + number % 255;
            const User user(number);
            for (int i = 0; i < edits; ++i) {
                if (i == edits - 1) user.start();
                emit memory->byteEntered(0x4000 + i, byte);
                button("Eje_paso")->click();
            }
            const bool told = user.wasToldOfMemory();
            bool good = told || user.boxes.isEmpty();
            for (int i = 0; i < edits; ++i) good = good && at(0x4000 + i) == byte;
            const QString after = state();
            const bool recorded = trace().history().recording();
            if (!recorded) ++ended;
            for (int step = 0; step < 2 * edits; ++step) wayBack("pasoAtras")->trigger();
            good = good && state() == (recorded ? before : after);
            if (!good) qWarning() << number << user.boxes << recorded << before << after << state();
            return good;
        });
        QVERIFY2(refused >= 1, qPrintable(QString::number(refused)));
        QVERIFY(ended >= 1);
    }

    /// The rows are gone, and the next ones are recorded, at once or after clearing again.
    void clearing() {
        prepare();
        const int refused = refuseEach([&](int number) {
            recordRun();
            const User user(number);
            user.start();
            clear()->trigger();
            const bool told = user.wasToldOfMemory();
            bool good = trace().empty() && (told || user.boxes.isEmpty());
            wayBack("pasoAtras")->trigger();  // there is nothing to undo
            good = good && programIsDone();
            if (told) clear()->trigger();
            button("Reset")->click();  // from the HLT at the end
            button("Eje_paso")->click();
            good = good && trace().history().recording() && trace().size() == 2;
            if (!good) qWarning() << number << user.boxes << state();
            return good;
        });
        QVERIFY2(refused >= 1, qPrintable(QString::number(refused)));
    }

    void goingBack_data() {
        QTest::addColumn<QByteArray>("way");
        for (const char* way : {"pasoAtras", "atrasPunto", "atrasCasilla", "alPrincipio"}) {
            QTest::newRow(way) << QByteArray(way);
        }
    }
    /// A step back or a search is done whole, or not at all; then it can be done again.
    void goingBack() {
        QFETCH(QByteArray, way);
        prepare();
        toggleBreakpoint(0x23);
        auto* grid = principal_->findChild<QTableView*>(QStringLiteral("grdmem"));
        grid->setCurrentIndex(grid->model()->index(0x100, 0));
        recordRun();
        recordRun();  // from what the one before has left in memory, as all that follow
        const QString before = state();
        wayBack(way)->trigger();
        const QString after = state();
        QVERIFY(after != before);
        const int refused = refuseEach([&](int number) {
            recordRun();
            const User user(number);
            user.start();
            wayBack(way)->trigger();
            const bool told = user.wasToldOfMemory();
            const QString now = state();
            if (told && now == before) wayBack(way)->trigger();
            bool good = state() == after && (told || user.boxes.isEmpty());
            while (machine().PC != programEnd) button("Ejecutar")->click();
            good = good && programIsDone();
            if (!good) qWarning() << number << user.boxes << before << after << now << state();
            return good;
        });
        QVERIFY2(refused >= 1, qPrintable(QString::number(refused)));
    }

    void readingTheTrace() {
        QMainWindow* window = recordedTrace();
        QVERIFY(window != nullptr);
        auto* area = window->findChild<QAbstractScrollArea*>(QStringLiteral("lista"));
        QScrollBar* bar = area->verticalScrollBar();
        QVERIFY(bar->maximum() > 0);
        bar->triggerAction(QAbstractSlider::SliderToMinimum);
        const QImage first = area->viewport()->grab().toImage();
        const int refused = refuseEach([&](int number) {
            bar->triggerAction(QAbstractSlider::SliderToMaximum);
            area->viewport()->repaint();
            const User user(number);
            bar->triggerAction(QAbstractSlider::SliderToMinimum);
            user.start();
            area->viewport()->repaint();
            FailingAllocation::disarm();
            if (FailingAllocation::happened() && !QTest::qWaitFor([&] { return user.wasToldOfMemory(); })) {
                qWarning() << number << user.boxes;
                return false;
            }
            return showActive(window) && area->viewport()->grab().toImage() == first;
        });
        QVERIFY2(refused >= 1, qPrintable(QString::number(refused)));
    }

    /// What was written so far stays.
    void savingTheTrace() {
        QMainWindow* window = recordedTrace();
        QVERIFY(window != nullptr);
        auto* save = window->findChild<QAction*>(QStringLiteral("salvar"));
        QByteArray whole;
        {
            User user(-1);
            user.path = folder_->filePath("whole.txt");
            save->trigger();
            whole = read("whole.txt");
        }
        QVERIFY(whole.count('\n') > 20);
        const int refused = refuseEach([&](int number) {
            QFile::remove(folder_->filePath("list.txt"));
            User user(number);
            user.path = folder_->filePath("list.txt");
            save->trigger();
            const bool told = user.wasToldOfMemory();
            const QByteArray saved = read("list.txt");
            const bool part = saved == "(not there)" || whole.startsWith(saved);
            const bool good = told ? part : saved == whole && user.boxes.isEmpty();
            if (!good) qWarning() << number << user.boxes << saved;
            return good;
        });
        QVERIFY2(refused >= 3, qPrintable(QString::number(refused)));
    }

    /// The list stays where the window does.
    void closingTheTrace() {
        QMainWindow* window = recordedTrace();
        QVERIFY(window != nullptr);
        const int refused = refuseEach([&](int number) {
            if (!window->isVisible()) window = recordedTrace();
            const User user(number);
            const bool closed = window->close();
            const bool told = user.wasToldOfMemory();
            const bool good = closed ? user.boxes.isEmpty() : told && window->isVisible();
            if (!good) qWarning() << number << user.boxes << closed;
            return good;
        });
        QVERIFY2(refused >= 1, qPrintable(QString::number(refused)));
    }
};

QTEST_MAIN(MachineOutOfMemoryTest)
#include "MachineOutOfMemoryTest.moc"
