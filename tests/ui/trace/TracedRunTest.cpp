// The trace as the main window feeds it: by real clicks, keys and runs.

#include <QApplication>
#include <QLineEdit>
#include <QListWidget>
#include <QMenuBar>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <functional>
#include <memory>

#include "tests/support/DialogAnswerer.h"
#include "tests/support/RealInput.h"
#include "tests/ui/main/ListedPace.h"
#include "trace/TraceReader.h"
#include "trace/TraceText.h"
#include "ui/main/Principal.h"
#include "ui/trace/Listapasos.h"
#include "ui/trace/TraceView.h"

using namespace tavinor;

namespace {

constexpr std::size_t columnINS = 2, columnA = 3, columnPC = 13;

/// LXI SP,8000; INX B; JMP 0003
const QByteArray endlessLoop = ":0700000031008003C303007F\n:00000001FF\n";
/// LXI B,3FFE; 0003: DCX B; MOV A,B; ORA C; JNZ 0003: 65,529 instructions; then 0009: INX B; JMP 0009
const QByteArray delayThenLoop = ":0D00000001FE3F0B78B1C2030003C30900ED\n:00000001FF\n";
/// JMP FFFF; FFFF: RST 7, which cannot push its return address
const QByteArray failing = ":03000000C3FFFF3C\n:01FFFF00FF02\n:00000001FF\n";

}  // namespace

class TracedRunTest : public QObject {
    Q_OBJECT

  private:
    std::unique_ptr<Principal> principal_;
    Listapasos* trace_ = nullptr;
    TraceView* lista_ = nullptr;
    QPushButton* Ejecutar_ = nullptr;
    QPushButton* Eje_paso_ = nullptr;
    QTemporaryDir folder_;

    [[nodiscard]] std::vector<RowCells> rows() const {
        std::vector<RowCells> result;
        const Trace& trace = principal_->trace();
        TraceReader(trace).read(0, trace.size(), [&result](const TraceRow& row, const RowTexts* texts) {
            result.push_back(rowCells(row, texts));
        });
        return result;
    }
    void load(const QByteArray& hex) {
        const QString path = folder_.filePath("prueba.hex");
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(hex);
        file.close();
        DialogAnswerer dialogs;
        dialogs.expectMessage("Carga correcta");
        principal_->loadHexFile(path);
    }
    void typeInto(const QString& box, const QString& text) {
        auto* edit = principal_->findChild<QLineEdit*>(box);
        clickIn(edit);
        typeText(edit, text);
    }
    /// Runs; after a while, once it is `ready`, `meanwhile` happens in the middle of the run; then it is
    /// stopped.
    void runAnd(
        const std::function<void()>& meanwhile, const std::function<bool()>& ready = [] { return true; }) {
        int turn = 0;
        int waited = 0;
        bool busy = false;
        QTimer timer;
        connect(&timer, &QTimer::timeout, Ejecutar_, [&] {
            if (busy) return;  // dialogs that `meanwhile` has opened serve the timer too
            if (turn == 2 && !ready() && ++waited < 500) return;
            const QScopedValueRollback<bool> now(busy, true);
            ++turn;
            if (turn == 3) meanwhile();
            if (turn < 6) return;
            timer.stop();
            clickIn(Ejecutar_);
        });
        timer.start(20);
        clickIn(Ejecutar_);  // returns when the run has ended
        QCOMPARE(turn, 6);
    }
    void clickLista() {
        auto* action = principal_->findChild<QAction*>("listains");
        clickAt(principal_->menuBar(), principal_->menuBar()->actionGeometry(action).center());
    }

  private slots:
    void init() {
        // Few instructions to a look, so that all rows of a short run can be read.
        principal_ =
            std::make_unique<Principal>(std::make_unique<ListedPace>(QList<std::int64_t>{1, 7, 4096}));
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (auto* trace = qobject_cast<Listapasos*>(window)) trace_ = trace;
        }
        QVERIFY(trace_ != nullptr);
        lista_ = trace_->findChild<TraceView*>("lista");
        Ejecutar_ = principal_->findChild<QPushButton*>("Ejecutar");
        Eje_paso_ = principal_->findChild<QPushButton*>("Eje_paso");
        QVERIFY(showActive(principal_.get()));
    }
    void cleanup() { principal_.reset(); }

    void stepsAreRecordedBeforeTheWindowIsOpened() {
        load(endlessLoop);
        clickIn(Eje_paso_);
        clickIn(Eje_paso_);
        QVERIFY(!trace_->isVisible());
        clickLista();
        QVERIFY(trace_->isVisible());
        QCOMPARE(lista_->rowCount(), std::uint64_t{3});
        QCOMPARE(lista_->cells(1)[columnINS], std::string("LXI SP,8000"));
        QCOMPARE(lista_->cells(2)[columnPC], std::string("0004"));
    }

    /// Every row is there, in its order, where the history keeps a machine and goes on from it.
    void stepsAreRecordedAcrossAKeptMachine() {
        constexpr std::size_t before = 65'529;
        load(delayThenLoop);
        auto* prg = principal_->findChild<QListWidget*>("prg");
        const QList<QListWidgetItem*> loop = prg->findItems("0009", Qt::MatchStartsWith);
        QCOMPARE(loop.size(), 1);
        clickAt(prg->viewport(), prg->visualItemRect(loop.first()).center());
        pressKey(prg, Qt::Key_F9);
        clickIn(Ejecutar_);  // to the breakpoint
        QCOMPARE(principal_->trace().size(), std::uint64_t{1 + before});
        constexpr int clicks = 12;
        for (int i = 0; i < clicks; ++i) clickIn(Eje_paso_);
        const std::vector<RowCells> all = rows();
        QCOMPARE(all.size(), std::size_t{1 + before + clicks});
        for (int i = 0; i < clicks; ++i) {
            const RowCells& row = all[static_cast<std::size_t>(1 + before) + static_cast<std::size_t>(i)];
            QCOMPARE(row[0], std::string(i % 2 == 0 ? "0009" : "000A"));
            QCOMPARE(row[columnPC], std::string(i % 2 == 0 ? "000A" : "0009"));
        }
    }

    void anEditBetweenStepsIsAStateRow() {
        load(endlessLoop);
        clickIn(Eje_paso_);
        typeInto("txtA", "5");
        clickIn(Eje_paso_);
        const std::vector<RowCells> all = rows();
        QCOMPARE(all.size(), std::size_t{4});
        QCOMPARE(all[2][0], std::string());
        QCOMPARE(all[2][columnA], std::string("05"));
    }

    void anInstructionThatFailsKeepsNoRegisters() {
        load(failing);
        clickIn(Eje_paso_);
        DialogAnswerer dialogs;
        dialogs.expectMessage("Error 6: desbordamiento");
        clickIn(Eje_paso_);
        const std::vector<RowCells> all = rows();
        QCOMPARE(all.size(), std::size_t{3});
        QCOMPARE(all[2][columnINS], std::string("RST 7"));
        QCOMPARE(all[2][columnA], std::string());
    }

    void aRunShowsWhatWasBeingTyped() {
        load(endlessLoop);
        runAnd([this] { typeInto("txtA", "x"); });
        const std::vector<RowCells> all = rows();
        const auto typed =
            std::find_if(all.begin(), all.end(), [](const RowCells& row) { return row[columnA] == "x"; });
        QVERIFY(typed != all.end());
        QCOMPARE((*typed)[0], std::string());                  // a state row
        QCOMPARE((*(typed + 1))[columnA], std::string("00"));  // refreshed by the step
        QCOMPARE(std::count_if(all.begin(), all.end(), [](const RowCells& row) { return row[0].empty(); }),
                 std::ptrdiff_t{2});
    }

    void anAddressBeingTypedLeavesTheMachineAlone() {
        load(endlessLoop);
        runAnd([this] { typeInto("txtPC", "1"); });
        const std::vector<RowCells> all = rows();
        const auto typed =
            std::find_if(all.begin(), all.end(), [](const RowCells& row) { return row[0] == "1"; });
        QVERIFY(typed != all.end());
        QCOMPARE((*typed)[columnINS], std::string("NOP"));
        QCOMPARE((*(typed - 1))[columnPC], std::string("1"));
        QVERIFY(std::all_of(typed + 1, all.end(), [](const RowCells& row) {
            return row[columnINS] == "INX B" || row[columnINS] == "JMP 0003";
        }));
    }

    void theOpenWindowFollowsARun() {
        load(endlessLoop);
        clickLista();
        principal_->activateWindow();
        std::uint64_t seen = 0;
        runAnd([&] { seen = lista_->firstRow(); }, [this] { return lista_->firstRow() > 100; });
        QVERIFY(seen > 100);
        QVERIFY(lista_->firstRow() > seen);
        QCOMPARE(lista_->firstRow(), lista_->rowCount() - static_cast<std::uint64_t>(lista_->visibleRows()));
    }

    void clearedInARunTheListStartsWithAStateRow() {
        load(endlessLoop);
        runAnd([this] { trace_->findChild<QAction*>("borrar")->trigger(); });
        const std::vector<RowCells> all = rows();
        QCOMPARE(all[0][0], std::string());
        QVERIFY(std::none_of(all.begin() + 1, all.end(), [](const RowCells& row) { return row[0].empty(); }));
    }

    void savesInTheMiddleOfARun() {
        load(endlessLoop);
        const QString path = folder_.filePath("marcha.txt");
        trace_->setPatience(std::chrono::milliseconds(0));
        std::uint64_t saved = 0;
        DialogAnswerer dialogs;
        dialogs.expectFileDialog(
            {"Salvar fichero .TXT", {"Fichero de texto (*.txt)", "Todos los ficheros (*.*)"}, "*.txt", true},
            path);
        dialogs.expectWindow("progreso", [](QWidget*) {});
        runAnd([&] {
            saved = principal_->trace().size();
            trace_->findChild<QAction*>("salvar")->trigger();
        });
        std::string expected;
        appendHeaderLine(expected);
        expected += "\r\n";
        TraceReader(principal_->trace()).read(0, saved, [&](const TraceRow& row, const RowTexts* texts) {
            appendLine(expected, row, texts);
            expected += "\r\n";
        });
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QVERIFY(file.readAll() == QByteArray::fromStdString(expected));
        QVERIFY(principal_->trace().size() > saved);  // and the run went on
    }

    /// While the halt dialog waits, its HLT is the newest row already.
    void aHaltShowsItsOwnRow() {
        load(":010000007689\n:00000001FF\n");
        clickLista();
        principal_->activateWindow();
        QVERIFY(waitActive(principal_.get()));
        for (std::uint64_t rows = 2; rows < 14; ++rows) {
            DialogAnswerer dialogs;
            dialogs.expectWindow("Halt", [&](QWidget* dialog) {
                QCOMPARE(lista_->rowCount(), rows);
                QCOMPARE(lista_->firstRow(), rows > 10 ? rows - 10 : 0);
                clickIn(dialog->findChild<QWidget*>("aceptar"));  // RESET: PC is 0000 again
            });
            clickIn(Eje_paso_);
        }
    }

    void aRefusedBoxKeepsItClosed() {
        trace_->close();
        typeInto("txtA", "xyz");
        DialogAnswerer dialogs;
        dialogs.expectMessage("Valor incorrecto");
        clickLista();
        QVERIFY(dialogs.allCame());
        QVERIFY(!trace_->isVisible());
        typeText(principal_.get(), "12");  // in place of what was refused
        clickLista();
        QVERIFY(trace_->isVisible());
    }

    void closingTheMainWindowHidesIt() {
        load(endlessLoop);
        clickIn(Eje_paso_);
        clickLista();
        const DialogAnswerer dialogs;
        principal_->close();
        QVERIFY(!trace_->isVisible());
        QCOMPARE(lista_->rowCount(), std::uint64_t{2});
    }
};

QTEST_MAIN(TracedRunTest)
#include "TracedRunTest.moc"
