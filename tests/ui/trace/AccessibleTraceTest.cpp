// The grid of the trace as assistive tools see it.

#include <QAccessible>
#include <QTest>
#include <utility>

#include "tests/support/RealInput.h"
#include "tests/ui/trace/TraceWindowTest.h"

using namespace tavinor;

class AccessibleTraceTest : public QObject, private TraceWindowTest {
    Q_OBJECT

  private:
    [[nodiscard]] QAccessibleTableInterface* table() const {
        return QAccessible::queryAccessibleInterface(lista_)->tableInterface();
    }

  private slots:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void assistiveToolsReadTheRowsAround() {
        QVERIFY(showActive(window_.get()));
        record(99);
        QAccessibleInterface* view = QAccessible::queryAccessibleInterface(lista_);
        QCOMPARE(view->role(), QAccessible::Table);
        QVERIFY(table() != nullptr);
        QCOMPARE(table()->columnCount(), 15);
        QCOMPARE(table()->columnDescription(9), QString("szapc"));
        QCOMPARE(table()->rowCount(), 20);  // one screen before, the visible one, and there it ends
        QCOMPARE(table()->rowDescription(0), QString("81"));
        for (const int row : {0, 10, 19}) {
            for (int column = 0; column < 15; ++column) {
                QAccessibleInterface* cell = table()->cellAt(row, column);
                QVERIFY(cell != nullptr && cell->isValid());
                const auto& expected = naive().rows()[static_cast<std::size_t>(80 + row)];
                QCOMPARE(cell->text(QAccessible::Name),
                         QString::fromStdString(expected[static_cast<std::size_t>(column)]).trimmed());
                QCOMPARE(cell->tableCellInterface()->rowIndex(), row);
                QCOMPARE(cell->tableCellInterface()->columnIndex(), column);
                QCOMPARE(cell->tableCellInterface()->columnHeaderCells().first()->text(QAccessible::Name),
                         table()->columnDescription(column));
                QCOMPARE(view->indexOfChild(cell), 15 * (row + 1) + column);
                QCOMPARE(static_cast<bool>(cell->state().offscreen), row < 10);
            }
        }
        QCOMPARE(view->childCount(), 15 * 21);
        QVERIFY(view->child(15 * 21) == nullptr);
    }

    void assistiveToolsReadTheHeader() {
        QVERIFY(showActive(window_.get()));
        record(20);
        QAccessibleInterface* view = QAccessible::queryAccessibleInterface(lista_);
        for (int column = 0; column < 15; ++column) {
            QAccessibleInterface* header = view->child(column);
            QCOMPARE(header->role(), QAccessible::ColumnHeader);
            QCOMPARE(header->parent(), view);
            QCOMPARE(header->window(), window_->windowHandle());
            const QRect first = table()->cellAt(table()->rowCount() - 10, column)->rect();
            QCOMPARE(header->rect().left(), first.left());
            QCOMPARE(header->rect().right(), first.right());
            QCOMPARE(header->rect().bottom() + 1, first.top());
        }
    }

    void assistiveToolsSelectRows() {
        QVERIFY(showActive(window_.get()));
        record(99);
        QCOMPARE(table()->selectedRowCount(), 0);
        clickCell(95, 2);
        clickCell(96, 2, Qt::ShiftModifier);
        QCOMPARE(table()->selectedRows(), (QList<int>{15, 16}));
        QCOMPARE(table()->selectedCellCount(), 30);
        const QList<QAccessibleInterface*> cells = table()->selectedCells();
        QCOMPARE(cells.size(), 30);
        QCOMPARE(cells.first(), table()->cellAt(15, 0));
        QCOMPARE(cells.last(), table()->cellAt(16, 14));
        QCOMPARE(cells.first()->role(), QAccessible::Cell);
        QCOMPARE(cells.first()->tableCellInterface()->table(), QAccessible::queryAccessibleInterface(lista_));
        QVERIFY(table()->isRowSelected(16) && !table()->isRowSelected(14));
        for (const int outside : {-1, 20}) QVERIFY(!table()->selectRow(outside));
        QCOMPARE(table()->selectedRows(), (QList<int>{15, 16}));
    }

    void assistiveToolsFollowTheKeyboard() {
        QVERIFY(showActive(window_.get()));
        record(99);
        clickCell(95, 2);
        QAccessibleInterface* view = QAccessible::queryAccessibleInterface(lista_);
        QAccessibleInterface* focused = view->focusChild();
        QVERIFY(focused != nullptr);
        QCOMPARE(focused->text(QAccessible::Name), QString::fromStdString(naive().rows()[95][2]));
        QVERIFY(focused->state().focused && focused->state().selected);
        QCOMPARE(table()->selectedRows(), QList<int>{15});
        const QPoint middle = focused->rect().center();
        QCOMPARE(view->childAt(middle.x(), middle.y()), focused);
        QVERIFY(table()->selectRow(3));
        QCOMPARE(lista_->current()->row, std::uint64_t{83});
    }

    void assistiveToolsSeeTheRowsOfNow() {
        QVERIFY(showActive(window_.get()));
        record(99);
        const auto name = [this](int row, int column) {
            return table()->cellAt(row, column)->text(QAccessible::Name);
        };
        const QString before = name(19, 13);
        record(1);
        QVERIFY(name(19, 13) != before);
        QCOMPARE(name(19, 13), QString::fromStdString(naive().rows()[100][13]));
        clickMenu("borrar");
        QCOMPARE(table()->rowCount(), 0);
    }

    /// Only where the platform has assistive tools to tell.
    void assistiveToolsAreToldOfChanges() {
        if (!QTest::qWaitFor([] { return QAccessible::isActive(); }, 1000)) {
            QSKIP("no assistive tool could listen on this platform");
        }
        static QList<QPair<QAccessible::Event, int>> told;
        told.clear();
        const auto before = QAccessible::installUpdateHandler([](QAccessibleEvent* event) {
            told.append({event->type(), event->child()});
        });
        QVERIFY(showActive(window_.get()));
        record(99);
        QVERIFY(told.contains(std::pair(QAccessible::TableModelChanged, -1)));
        clickCell(95, 2);
        QVERIFY(told.contains(std::pair(QAccessible::Focus, 15 * (95 - 80 + 1) + 2)));
        QAccessible::installUpdateHandler(before);
    }
};

QTEST_MAIN(AccessibleTraceTest)
#include "AccessibleTraceTest.moc"
