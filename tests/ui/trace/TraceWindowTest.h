#pragma once

#include <QAction>
#include <QMenuBar>
#include <QString>
#include <QTest>
#include <memory>

#include "tests/simulation/TracedMachine.h"
#include "tests/support/RealInput.h"
#include "ui/trace/Listapasos.h"
#include "ui/trace/TraceView.h"

namespace tavinor {

/// What the tests of the trace's window share: the window, a machine in a delay loop that feeds it, and the
/// naive trace beside it. `setUp` makes them anew.
class TraceWindowTest {
  protected:
    void setUp(std::size_t historyBytes = History::usualBytes) {
        window_.reset();
        traced_ = std::make_unique<test::TracedMachine>(historyBytes);
        window_ = std::make_unique<Listapasos>(traced_->simulation());
        traced_->load({0x01, 0xFF, 0xFF, 0x0B, 0x78, 0xB1, 0xC2, 0x03, 0x00, 0xC3, 0x00, 0x00});
        lista_ = window_->findChild<TraceView*>(QStringLiteral("lista"));
        QVERIFY(lista_ != nullptr);
    }
    void tearDown() { window_.reset(); }

    [[nodiscard]] const NaiveTrace& naive() const { return traced_->naive(); }
    void record(int steps) {
        traced_->steps(steps);
        window_->bringUpToDate();
    }
    void clickMenu(const QString& name) {
        auto* action = window_->findChild<QAction*>(name);
        QVERIFY(action != nullptr);
        clickAt(window_->menuBar(), window_->menuBar()->actionGeometry(action).center());
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        pressKey(lista_, key, modifiers);
    }
    void clickCell(std::uint64_t row, int column, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        clickAt(lista_->viewport(), lista_->cellRect({row, column}).center(), Qt::LeftButton, modifiers);
    }

    std::unique_ptr<test::TracedMachine> traced_;
    std::unique_ptr<Listapasos> window_;
    TraceView* lista_ = nullptr;
};

}  // namespace tavinor
