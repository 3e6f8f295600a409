#include <QRadioButton>
#include <QTest>
#include <QTimer>
#include <array>
#include <random>

#include "machine/Host.h"
#include "machine/Stepper.h"
#include "tests/support/RealInput.h"
#include "tests/ui/main/Simulator.h"
#include "tests/ui/main/ViewsCheck.h"

using namespace tavinor;

namespace {

/// Tells what the next step of a machine would do: a copy of it takes the step.
class Foretold final : private Host {
  public:
    explicit Foretold(const MachineState& machine) : machine_(machine) {
        try {
            EjecutaPASO(machine_, *this);
        } catch (const RuntimeError& error) {
            error_ = static_cast<int>(error.number());
        }
    }
    [[nodiscard]] bool halts() const { return halts_; }
    [[nodiscard]] bool fails() const { return error_ != 0; }
    [[nodiscard]] QString message() const {
        return error_ == 6 ? QStringLiteral("Error 6: desbordamiento")
                           : QStringLiteral("Error 9: subíndice fuera del intervalo");
    }

  private:
    void savmem(std::int32_t dir, std::int32_t dat) override { machine_.storeMemory(dir, dat); }
    void savport(std::int32_t dir, std::int32_t dat) override { machine_.storePort(dir, dat); }
    void halt() override { halts_ = true; }

    MachineState machine_;
    bool halts_ = false;
    int error_ = 0;
};

}  // namespace

/// Whatever the program and the user do: everything that is shown equals the machine.
class ViewsTest : public QObject {
    Q_OBJECT

  private:
    std::unique_ptr<Simulator> s_;
    std::mt19937 random_;

    int below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }

    QByteArray randomBytes(int count) {
        QByteArray bytes(count, '\0');
        for (char& byte : bytes) byte = static_cast<char>(below(256));
        return bytes;
    }

    /// A loop of harmless instructions: no halt, no stray writes, the stack kept level.
    QByteArray randomLoop() {
        static const std::array<QByteArray, 6> pieces{
            QByteArray::fromHex("C5E1"), QByteArray::fromHex("F5D1"),      // PUSH B, POP H; PUSH PSW, POP D
            QByteArray::fromHex("E3"),   QByteArray::fromHex("320090"),    // XTHL; STA 9000
            QByteArray::fromHex("D342"), QByteArray::fromHex("3EC830FB"),  // OUT 42; MVI A,C8, SIM, EI
        };
        QByteArray code = QByteArray::fromHex("310080");  // LXI SP,8000
        for (int i = 0; i < 200; ++i) {
            const int choice = below(12);
            if (choice < static_cast<int>(pieces.size())) {
                code += pieces[static_cast<std::size_t>(choice)];
            } else if (choice < 9) {
                code += static_cast<char>(0x80 + below(64));  // arithmetic
            } else {
                static const char simple[] = {0x03, 0x04, 0x13, 0x1C, 0x2F, 0x37, 0x07, 0x27, 0x09, 0x3C};
                code += simple[below(static_cast<int>(sizeof simple))];
            }
        }
        return code + QByteArray::fromHex("C30000");
    }

    void leaveHalt(QWidget* dialog) {
        for (;;) {
            auto* option = dialog->findChild<QRadioButton*>(QStringLiteral("opt%1").arg(below(5)));
            if (!option->isEnabled()) continue;
            clickIn(option);
            break;
        }
        clickIn(dialog->findChild<QAbstractButton*>("aceptar"));
    }

    void step() {
        const Foretold next(s_->machine());
        if (next.halts()) s_->dialogs.expectWindow("Halt", [this](QWidget* dialog) { leaveHalt(dialog); });
        if (next.fails()) s_->dialogs.expectMessage(next.message());
        s_->press("Eje_paso");
    }

    /// Something of the user's own, which ends in a refresh or changes nothing that a refresh would.
    void intervene() {
        static const QStringList boxes{"txtA",  "txtF",  "txtB", "txtC", "txtBC", "txtPC", "txtD",     "txtE",
                                       "txtDE", "txtSP", "txtH", "txtL", "txtHL", "txtM",  "txtDatMem"};
        static const QStringList marks{"CHKEI",  "CHK55", "CHK65", "CHK75",
                                       "chkSID", "chkF0", "chkF5", "chkF7"};
        static const QStringList requests{"Rst55", "Rst65", "Rst75", "Trap"};
        switch (below(4)) {
            case 0: {
                const QString name = boxes[below(static_cast<int>(boxes.size()))];
                s_->enter(name,
                          hexDigits(below(65536), s_->box(name)->digits()).right(s_->box(name)->digits()));
                break;
            }
            case 1: s_->press(marks[below(static_cast<int>(marks.size()))]); break;
            case 2: s_->press(requests[below(static_cast<int>(requests.size()))]); break;
            default: s_->clickCell("grdmem", below(65536)); break;
        }
    }

  private slots:
    void init() { s_ = std::make_unique<Simulator>(); }
    void cleanup() { s_.reset(); }

    void everyStep_data() {
        QTest::addColumn<unsigned>("seed");
        for (const unsigned seed : {1U, 8085U, 271828U, 314159U}) {
            QTest::newRow(qPrintable(QString::number(seed))) << seed;
        }
    }

    void everyStep() {
        QFETCH(unsigned, seed);
        random_.seed(seed);
        s_->load(0, randomBytes(memorySize));
        ViewsCheck check(*s_);
        QCOMPARE(check.difference(), QString());
        for (int i = 0; i < 500; ++i) {
            if (below(8) == 0) {
                intervene();
                QCOMPARE(check.quickDifference(), QString());
            }
            step();
            QCOMPARE(check.quickDifference(), QString());
        }
        QCOMPARE(check.difference(), QString());
    }

    void everyStop() {
        random_.seed(6502);
        s_->load(0, randomLoop());
        ViewsCheck check(*s_);
        for (int i = 0; i < 30; ++i) {
            QTimer::singleShot(below(4), &s_->window, [&] {
                QCOMPARE(check.quickDifference(), QString());
                s_->press("Ejecutar");
            });
            s_->press("Ejecutar");
            QVERIFY(!s_->running());
            QCOMPARE(check.quickDifference(), QString());
        }
        QCOMPARE(check.difference(), QString());
    }
};

QTEST_MAIN(ViewsTest)
#include "ViewsTest.moc"
