// Every control can be reached by the keyboard and understood without seeing it, and nothing is told by
// colour alone.

#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QTableView>
#include <QTest>
#include <QTextBlock>
#include <QTextLayout>
#include <QToolButton>
#include <QTreeView>

#include "tests/support/RealInput.h"
#include "tests/ui/everywhere/Scenes.h"
#include "tests/ui/main/Simulator.h"
#include "ui/common/Application.h"
#include "ui/trace/TraceView.h"

using namespace tavinor;

namespace {

struct ClassRole {
    const QMetaObject* kind;
    QAccessible::Role role;
};

/// The first that fits counts.
const ClassRole roles[] = {
    {&QLineEdit::staticMetaObject, QAccessible::EditableText},
    {&QPlainTextEdit::staticMetaObject, QAccessible::EditableText},
    {&QCheckBox::staticMetaObject, QAccessible::CheckBox},
    {&QRadioButton::staticMetaObject, QAccessible::RadioButton},
    {&QAbstractButton::staticMetaObject, QAccessible::Button},
    {&QComboBox::staticMetaObject, QAccessible::ComboBox},
    {&TraceView::staticMetaObject, QAccessible::Table},
    {&QTableView::staticMetaObject, QAccessible::Table},
    {&QTreeView::staticMetaObject, QAccessible::Tree},
    {&QListView::staticMetaObject, QAccessible::List},
    {&QProgressBar::staticMetaObject, QAccessible::ProgressBar},
    {&QLabel::staticMetaObject, QAccessible::StaticText},
    {&QGroupBox::staticMetaObject, QAccessible::Grouping},
    {&QMenuBar::staticMetaObject, QAccessible::MenuBar},
    {&QMenu::staticMetaObject, QAccessible::PopupMenu},
};

QString describe(const QWidget& widget) {
    return QStringLiteral("%1 \"%2\"").arg(widget.metaObject()->className(), widget.objectName());
}

QAccessibleInterface* spoken(const QWidget* widget) {
    return QAccessible::queryAccessibleInterface(const_cast<QWidget*>(widget));
}

QString nameOf(const QWidget* widget) {
    return spoken(widget)->text(QAccessible::Name);
}

bool reachedByTab(const QWidget& widget) {
    return (widget.focusPolicy() & Qt::TabFocus) == Qt::TabFocus && widget.isEnabled();
}

/// All that is on the screen of a window, itself first.
QList<QWidget*> partsOf(QWidget& window) {
    QList<QWidget*> parts{&window};
    for (QWidget* widget : window.findChildren<QWidget*>()) {
        if (widget->isVisible() && widget->window() == &window) parts.append(widget);
    }
    return parts;
}

/// The next control after `from` lies to the right of it or below it, as one reads.
bool readsOn(const QWidget& from, const QWidget& to) {
    const QRect before(from.mapToGlobal(QPoint()), from.size());
    const QRect after(to.mapToGlobal(QPoint()), to.size());
    return after.left() > before.right() || after.top() > before.center().y();
}

}  // namespace

class AccessTest : public QObject {
    Q_OBJECT

  private:
    QStringList complaints_;

    void check(bool good, const QWidget& widget, const QString& complaint) {
        if (!good) complaints_.append(describe(widget) + ": " + complaint);
    }

    void checkControl(const QWidget& widget) {
        QAccessibleInterface* face = spoken(&widget);
        const auto* kind = std::find_if(std::begin(roles), std::end(roles), [&](const ClassRole& known) {
            return widget.metaObject()->inherits(known.kind);
        });
        const bool focusable = reachedByTab(widget);
        if (widget.inherits("QTableCornerButton")) return;  // shows nothing and does nothing
        if (kind == std::end(roles)) {
            check(!focusable || widget.isWindow(), widget, "can have the focus, but is nothing");
            return;
        }
        const auto* label = qobject_cast<const QLabel*>(&widget);
        const bool picture = label != nullptr && !label->pixmap().isNull();
        check(face->role() == (picture ? QAccessible::Graphic : kind->role), widget,
              QStringLiteral("has role %1").arg(face->role()));
        const bool mayBeSilent = (label != nullptr && !picture) ||
                                 qobject_cast<const QMenuBar*>(&widget) != nullptr ||
                                 qobject_cast<const QMenu*>(&widget) != nullptr;
        check(mayBeSilent || !nameOf(&widget).isEmpty(), widget, "has no name");
        check(!nameOf(&widget).contains('&'), widget, "has a name with a mark in it");
        checkState(widget, face->state());
    }

    void checkState(const QWidget& widget, const QAccessible::State& state) {
        check(bool(state.disabled) != widget.isEnabled(), widget, "tells its enabling wrong");
        check(bool(state.focusable) || !reachedByTab(widget), widget,
              "does not tell that it takes the focus");
        if (const auto* button = qobject_cast<const QAbstractButton*>(&widget)) {
            check(bool(state.checked) == button->isChecked(), widget, "tells its mark wrong");
        }
    }

    void checkCommands(const QWidget& widget) {
        for (int i = 0; i < spoken(&widget)->childCount(); ++i) {
            const QAccessibleInterface* item = spoken(&widget)->child(i);
            if (item->role() == QAccessible::Separator) continue;
            check(item->role() == QAccessible::MenuItem, widget, "has a child that is no command");
            check(!item->text(QAccessible::Name).isEmpty(), widget, "has a command without a name");
        }
    }

    /// The cells of the first rows; the rest is as they are.
    void checkTable(const QWidget& widget) {
        QAccessibleTableInterface* table = spoken(&widget)->tableInterface();
        check(table != nullptr, widget, "is no table");
        const int rows = table == nullptr ? 0 : std::min(table->rowCount(), 3);
        for (int row = 0; row < rows; ++row) {
            for (int column = 0; column < table->columnCount(); ++column) {
                QAccessibleInterface* cell = table->cellAt(row, column);
                const QAccessibleTableCellInterface* place = cell->tableCellInterface();
                check(place != nullptr && place->rowIndex() == row && place->columnIndex() == column, widget,
                      "has a cell in the wrong place");
                check(!table->columnDescription(column).isEmpty(), widget, "has a column without a name");
                check(cell->state().focusable, widget, "has a cell that cannot be reached");
            }
        }
    }

    void lookAtCurrentScene(const Look& look) {
        int looks = 0;
        currentScene().show([&](QWidget& window) {
            ++looks;
            QCoreApplication::sendPostedEvents();
            look(window);
        });
        QCOMPARE(looks, 1);
        QVERIFY2(complaints_.isEmpty(), qPrintable(complaints_.join('\n')));
    }

    /// The controls that Tab visits, in order, until it comes back to one.
    static QList<QWidget*> tabOrder(QWidget& window) {
        QList<QWidget*> order;
        // In a message box the default button acts before any has the focus.
        if (window.focusWidget() == nullptr) pressKey(&window, Qt::Key_Tab);
        for (QWidget* focus = window.focusWidget(); focus != nullptr && !order.contains(focus);
             focus = window.focusWidget()) {
            order.append(focus);
            pressKey(focus, Qt::Key_Tab);
        }
        return order;
    }

    void checkTabOrder(QWidget& window) {
        QList<QWidget*> expected;
        for (QWidget* widget : partsOf(window)) {
            // In a group of options the arrow keys go from one to the other.
            const auto* option = qobject_cast<QRadioButton*>(widget);
            if (reachedByTab(*widget) && (option == nullptr || option->isChecked())) expected.append(widget);
        }
        if (expected.isEmpty()) return;
        auto* text = qobject_cast<QPlainTextEdit*>(window.focusWidget());
        if (text != nullptr && !text->tabChangesFocus()) {
            check(expected == QList<QWidget*>{text}, window, "has controls that its text keeps Tab from");
            return;
        }
        const QList<QWidget*> order = tabOrder(window);
        for (QWidget* widget : expected) check(order.contains(widget), *widget, "is not reached by Tab");
        for (QWidget* widget : order) check(expected.contains(widget), *widget, "is reached, but should not");
        QStringList back;
        for (qsizetype i = 0; i < order.size(); ++i) {
            const QWidget& from = *order[i];
            const QWidget& to = *order[(i + 1) % order.size()];
            if (!readsOn(from, to)) back.append(describe(from) + " - " + describe(to));
        }
        // Once from the last one back to the first.
        check(back.size() <= 1, window, "has an order that goes back: " + back.join(", "));
    }

  private slots:
    void initTestCase() { installSpanish(*qApp); }
    void init() { complaints_.clear(); }

    void everyControlSaysWhatItIs_data() { addSceneRows(); }
    void everyControlSaysWhatItIs() {
        lookAtCurrentScene([this](QWidget& window) {
            for (QWidget* widget : partsOf(window)) {
                checkControl(*widget);
                const QAccessible::Role role = spoken(widget)->role();
                if (role == QAccessible::Table) checkTable(*widget);
                if (role == QAccessible::MenuBar || role == QAccessible::PopupMenu) checkCommands(*widget);
            }
        });
    }

    void tabVisitsEveryControlInReadingOrder_data() { addSceneRows(); }
    void tabVisitsEveryControlInReadingOrder() {
        lookAtCurrentScene([this](QWidget& window) {
            if (window.windowType() != Qt::Popup) checkTabOrder(window);
        });
    }

    void captionsBelongToTheirBoxes() {
        const Simulator s;
        QList<const QWidget*> boxes;
        for (const HexBox* box : s.window.findChildren<HexBox*>()) boxes.append(box);
        for (int bit : {0, 2, 4, 6, 7}) boxes.append(s.button(QStringLiteral("chkF%1").arg(bit)));
        QCOMPARE(boxes.size(), 14 + 4 + 4 + 2 + 5);
        const QStringList withoutCaption{"txtDIR", "INSCO", "INSOP1", "INSOP2"};  // they have tool tips
        for (const QWidget* box : boxes) {
            if (withoutCaption.contains(box->objectName())) {
                QVERIFY(!box->toolTip().isEmpty());
                continue;
            }
            QStringList captions;
            for (const auto& [label, relation] : spoken(box)->relations(QAccessible::Label)) {
                if (label->role() == QAccessible::StaticText) captions.append(label->text(QAccessible::Name));
            }
            QVERIFY2(captions.size() == 1 && !captions.first().isEmpty(), qPrintable(describe(*box)));
        }
    }

    void gridsTellAddressAndByte() {
        Simulator s;
        s.load(0x10, QByteArray::fromHex("00AB"));
        QAccessibleTableInterface* memory = spoken(s.grid("grdmem"))->tableInterface();
        QCOMPARE(memory->rowCount(), 4096);
        QCOMPARE(memory->columnCount(), 16);
        QCOMPARE(memory->cellAt(1, 1)->text(QAccessible::Name), QString("0011: AB"));
        QCOMPARE(memory->rowDescription(1), QString("0010"));
        QCOMPARE(memory->columnDescription(1).trimmed(), QString("1"));
        QCOMPARE(spoken(s.grid("grdport"))->tableInterface()->cellAt(15, 15)->text(QAccessible::Name),
                 QString("FF: 00"));
    }

    /// Breakpoint and program counter have marks of their own, and words.
    void theListingTellsWithoutColour() {
        Simulator s;
        s.load(0, QByteArray::fromHex("3E08C30000"));
        s.clickRow(s.rowOf(2));
        pressKey(s.listing(), Qt::Key_F9);
        const auto said = [&s](int address) {
            return spoken(s.listing())->child(s.rowOf(address))->text(QAccessible::Name);
        };
        QVERIFY(said(0).contains("contador de programa"));
        QVERIFY(said(2).contains("punto de ruptura"));
        QVERIFY(!said(0).contains("punto de ruptura") && !said(2).contains("contador de programa"));
        QCOMPARE(s.rows().at(s.rowOf(2)).at(ListingView::breakpointColumn), QChar('*'));
        QCOMPARE(s.rows().at(s.rowOf(0)).at(ListingView::breakpointColumn), QChar(' '));
    }

    /// What a report shows in the colour of errors is bold too, and begins with words that say so.
    void theErrorReportTellsWithoutColour() {
        int errors = 0;
        const auto check = [&errors](QWidget& window) {
            const auto* report = window.findChild<QPlainTextEdit*>("filehex");
            for (QTextBlock line = report->document()->begin(); line.isValid(); line = line.next()) {
                for (const QTextLayout::FormatRange& range : line.layout()->formats()) {
                    if (!range.format.hasProperty(QTextFormat::ForegroundBrush)) continue;
                    ++errors;
                    QVERIFY(range.format.fontWeight() >= QFont::Bold);
                    QVERIFY(line.text().startsWith("Línea: ") || line.text().startsWith("==> ERROR: "));
                }
            }
            QVERIFY(!window.findChild<QLabel*>("Label1")->text().isEmpty());
        };
        for (const Scene& scene : scenes()) {
            if (QByteArray(scene.name) == "assembler, errors") scene.show(check);
        }
        QVERIFY(errors > 0);
    }

    /// A disabled caption is paler, not only of another hue, and still can be read.
    void disabledControlsDifferInLightness() {
        const QPalette palette = QApplication::palette();
        const auto lightness = [&](QPalette::ColorGroup group, QPalette::ColorRole role) {
            return palette.color(group, role).lightness();
        };
        const int background = lightness(QPalette::Disabled, QPalette::Button);
        const int enabled = lightness(QPalette::Active, QPalette::ButtonText);
        const int disabled = lightness(QPalette::Disabled, QPalette::ButtonText);
        QVERIFY(std::abs(disabled - enabled) > 40);
        QVERIFY(std::abs(disabled - background) > 40);
    }
};

QTEST_MAIN(AccessTest)
#include "AccessTest.moc"
