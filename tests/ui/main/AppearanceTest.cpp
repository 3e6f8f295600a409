#include <QAccessible>
#include <QCheckBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QMenuBar>
#include <QRadioButton>
#include <QScrollBar>
#include <QTest>

#include "tests/support/RealInput.h"
#include "tests/ui/main/Simulator.h"
#include "ui/common/ScrollingContent.h"

using namespace tavinor;

namespace {

constexpr QSize smallScreen(1366, 768);
constexpr int panelAndTitleBar = 64;  // what a desktop takes from the height

/// Every control that the keyboard reaches, in reading order.
const QStringList readingOrder{
    "Ejecutar",  "Eje_paso", "CargarHEX",  "Ensamblar",  "Editar", "about", "Reset",  "prg",
    "txtDIR",    "INSCO",    "INSOP1",     "INSOP2",     "txtA",   "txtF",  "chkF7",  "chkF6",
    "chkF5",     "chkF4",    "chkF3",      "chkF2",      "chkF1",  "chkF0", "txtB",   "txtC",
    "txtBC",     "txtPC",    "txtD",       "txtE",       "txtDE",  "txtSP", "txtH",   "txtL",
    "txtHL",     "txtM",     "pila",       "CHK55",      "CHK65",  "CHK75", "CHKEI",  "chkSID",
    "ChkSOD",    "Rst55",    "Rst65",      "Rst75",      "Trap",   "Intr",  "txtVec", "txtDirMem",
    "txtDatMem", "grdmem",   "txtDirPort", "txtDatPort", "grdport"};

template <typename Widget>
QList<Widget*> visible(const QWidget* window) {
    QList<Widget*> found;
    for (Widget* widget : window->findChildren<Widget*>()) {
        if (widget->isVisible() && widget->window() == window) found.append(widget);
    }
    return found;
}

QString describe(const QWidget* widget) {
    return QStringLiteral("%1 \"%2\"").arg(widget->metaObject()->className(), widget->objectName());
}

/// Widgets that show a text and are smaller than it needs.
template <typename Widget>
QStringList clipped(const QWidget* window) {
    QStringList names;
    for (const Widget* widget : visible<Widget>(window)) {
        const QSize needed = widget->sizeHint();
        if (widget->width() < needed.width() || widget->height() < needed.height()) {
            names.append(describe(widget) + ' ' + widget->text());
        }
    }
    return names;
}

QStringList allClipped(const QWidget* window) {
    return clipped<QLabel>(window) + clipped<QAbstractButton>(window);
}

QString accessKey(const QString& caption) {
    return QKeySequence::mnemonic(caption).toString();
}

/// The access keys of all that can be pressed now.
QStringList accessKeys(const QMainWindow& window) {
    QStringList keys;
    for (const QAbstractButton* button : visible<QAbstractButton>(&window)) {
        if (button->isEnabled()) keys.append(accessKey(button->text()));
    }
    for (const QAction* action : window.menuBar()->actions()) {
        if (action->isEnabled()) keys.append(accessKey(action->text()));
    }
    keys.removeAll(QString());
    return keys;
}

}  // namespace

/// What every eye, hand and screen reader meets: sizes, names, keys and order.
class AppearanceTest : public QObject {
    Q_OBJECT

  private:
    std::unique_ptr<Simulator> s_;

    void checkNames(const QWidget* window) const {
        for (QWidget* widget : visible<QWidget>(window)) {
            if ((widget->focusPolicy() & Qt::TabFocus) == 0) continue;
            QVERIFY2(!widget->objectName().isEmpty(), widget->metaObject()->className());
            const QString spoken = QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name);
            QVERIFY2(!spoken.isEmpty(), qPrintable(describe(widget)));
            QVERIFY2(!spoken.contains('&'), qPrintable(spoken));
            QVERIFY2(!widget->accessibleName().isEmpty(), qPrintable(describe(widget)));
        }
    }

  private slots:
    void init() {
        s_ = std::make_unique<Simulator>();
        s_->window.resize(smallScreen - QSize(0, panelAndTitleBar));
        QTest::qWait(20);
    }
    void cleanup() { s_.reset(); }

    /// Nothing scrolls there.
    void fitsASmallScreen_data() {
        QTest::addColumn<QSize>("screen");
        for (const QSize& screen : {smallScreen, QSize(1024, 768)}) {
            QTest::addRow("%d", screen.width()) << screen;
        }
    }
    void fitsASmallScreen() {
        QFETCH(const QSize, screen);
        constexpr int frames = 16;
        const QSize needed = s_->window.minimumSizeHint();
        QVERIFY2(needed.width() <= screen.width() - frames &&
                     needed.height() <= screen.height() - panelAndTitleBar,
                 qPrintable(QStringLiteral("%1x%2").arg(needed.width()).arg(needed.height())));
        s_->window.resize(screen - QSize(frames, panelAndTitleBar));
        const auto* area = s_->window.centralWidget()->findChild<ScrollingContent*>();
        QTRY_COMPARE(area->horizontalScrollBar()->maximum(), 0);
        QTRY_COMPARE(area->verticalScrollBar()->maximum(), 0);
    }

    void everyControlHasItsNames() { checkNames(&s_->window); }

    void everyControlOfTheHaltDialogHasItsNames() {
        s_->load(0, QByteArray::fromHex("76"));
        s_->dialogs.expectWindow("Halt", [this](QWidget* dialog) {
            checkNames(dialog);
            QCOMPARE(allClipped(dialog), QStringList());
            QStringList order;
            QTest::qWait(20);
            for (int i = 0; i < 4; ++i) {
                order.append(dialog->focusWidget()->objectName());
                pressKey(dialog, Qt::Key_Tab);
            }
            QCOMPARE(order, QStringList({"opt0", "txtVec", "aceptar", "opt0"}));
            clickIn(dialog->findChild<QAbstractButton*>("aceptar"));
        });
        s_->press("Eje_paso");
    }

    void tabGoesInReadingOrder() {
        QStringList expected;
        for (const QString& name : readingOrder) {
            if (s_->find<QWidget>(name)->isEnabled()) expected.append(name);
        }
        s_->button("Ejecutar")->setFocus();
        QStringList order;
        for (int i = 0; i < expected.size(); ++i) {
            order.append(s_->window.focusWidget()->objectName());
            pressKey(&s_->window, Qt::Key_Tab);
        }
        QCOMPARE(order, expected);
        QCOMPARE(s_->window.focusWidget()->objectName(), "Ejecutar");
        pressKey(&s_->window, Qt::Key_Backtab, Qt::ShiftModifier);
        QCOMPARE(s_->window.focusWidget()->objectName(), "grdport");
    }

    void everyControlIsInTheReadingOrder() {
        QStringList reached;
        for (const QWidget* widget : visible<QWidget>(&s_->window)) {
            if ((widget->focusPolicy() & Qt::TabFocus) != 0) reached.append(widget->objectName());
        }
        QStringList expected = readingOrder;
        reached.sort();
        expected.sort();
        QCOMPARE(reached, expected);
    }

    void accessKeysAreUnique() {
        QStringList keys = accessKeys(s_->window);
        QVERIFY(keys.size() >= 4);
        QCOMPARE(keys.removeDuplicates(), 0);
        s_->load(0, QByteArray::fromHex("C30000"));
        s_->press("CHKEI");
        s_->runWith([this] {
            QStringList running = accessKeys(s_->window);
            QVERIFY(running.contains("Alt+P"));
            QCOMPARE(running.removeDuplicates(), 0);
        });
    }

    void captions() {
        const std::pair<const char*, const char*> expected[] = {
            {"Ejecutar", "E&jecutar"}, {"Eje_paso", "&Paso"}, {"CargarHEX", "&Cargar"},
            {"Ensamblar", "E&nsam"},   {"Editar", "&Editar"}, {"about", "&Acerca"},
            {"Reset", "&RESET"},       {"CHK55", "M5.5"},     {"CHK65", "M6.5"},
            {"CHK75", "M7.5"},         {"CHKEI", "IE"},       {"chkSID", "SID"},
            {"ChkSOD", "SOD"},         {"Rst55", "RST 5.5"},  {"Rst65", "RST 6.5"},
            {"Rst75", "RST 7.5"},      {"Trap", "TRAP"},      {"Intr", "INTR"},
        };
        for (const auto& [name, caption] : expected) QCOMPARE(s_->button(name)->text(), caption);
        QStringList groups;
        for (const QGroupBox* group : visible<QGroupBox>(&s_->window)) groups.append(group->title());
        groups.sort();
        QCOMPARE(groups, QStringList({"Instrucción", "Interrupciones", "Memoria", "PILA", "Programa",
                                      "Puertos de E/S", "Registros"}));
    }

    void flagCaptionsStandAboveTheirBoxes() {
        const std::pair<const char*, const char*> expected[] = {
            {"S", "chkF7"}, {"Z", "chkF6"}, {"A", "chkF4"}, {"P", "chkF2"}, {"C", "chkF0"}};
        const auto* holder = s_->button("chkF7")->parentWidget();
        QStringList captions;
        for (const QLabel* label : holder->findChildren<QLabel*>()) {
            if (!label->text().isEmpty()) captions.append(label->text());
        }
        QCOMPARE(captions.join(""), "SZAPC");
        for (const auto& [caption, name] : expected) {
            for (const QLabel* label : holder->findChildren<QLabel*>()) {
                if (label->text() != caption) continue;
                const QAbstractButton* box = s_->button(name);
                QVERIFY(label->geometry().bottom() <= box->geometry().top());
                const int off = label->geometry().center().x() - box->geometry().center().x();
                QVERIFY(std::abs(off) <= box->width() / 2);
            }
        }
        for (int bit = 7; bit > 0; --bit) {
            QVERIFY(s_->button(QStringLiteral("chkF%1").arg(bit))->x() <
                    s_->button(QStringLiteral("chkF%1").arg(bit - 1))->x());
        }
    }

    void registersStandInThreeColumns() {
        const QStringList columns[] = {{"txtB", "txtC", "txtBC", "txtPC"},
                                       {"txtD", "txtE", "txtDE", "txtSP"},
                                       {"txtH", "txtL", "txtHL", "txtM"}};
        QVERIFY(s_->box("txtA")->y() < s_->box("txtF")->y());
        QVERIFY(s_->box("txtF")->y() < s_->box("txtB")->y());
        for (const QStringList& column : columns) {
            for (int row = 0; row < 4; ++row) {
                QCOMPARE(s_->box(column[row])->x(), s_->box(column[0])->x());
                QCOMPARE(s_->box(column[row])->y(), s_->box(columns[0][row])->y());
                if (row > 0) QVERIFY(s_->box(column[row])->y() > s_->box(column[row - 1])->y());
            }
        }
        QVERIFY(s_->box("txtB")->x() < s_->box("txtD")->x());
        QVERIFY(s_->box("txtD")->x() < s_->box("txtH")->x());
    }

    void noTextIsClipped_data() {
        QTest::addColumn<QSize>("size");
        QTest::newRow("as it opens") << QSize();
        QTest::newRow("small screen") << smallScreen - QSize(0, panelAndTitleBar);
        QTest::newRow("as small as it gets") << QSize(1, 1);
        QTest::newRow("large") << QSize(1900, 1000);
    }

    void noTextIsClipped() {
        QFETCH(QSize, size);
        if (!size.isValid()) s_ = std::make_unique<Simulator>();
        if (size.isValid()) s_->window.resize(size.expandedTo(s_->window.minimumSizeHint()));
        QTest::qWait(20);
        s_->load(0, QByteArray::fromHex("31CDAB"));
        s_->clickRow(0);  // "LXI SP,ABCD", the longest instruction
        QCOMPARE(s_->entryRow().last(), " LXI SP,ABCD");
        QCOMPARE(allClipped(&s_->window), QStringList());

        for (const HexBox* box : visible<HexBox>(&s_->window)) {
            const int text = box->fontMetrics().horizontalAdvance(QString(box->digits(), 'D'));
            QVERIFY2(box->width() >= text + 8, qPrintable(describe(box)));
            QVERIFY2(box->height() >= box->fontMetrics().height(), qPrintable(describe(box)));
        }
    }

    void gridsShowWholeCells() {
        for (const char* name : {"grdmem", "grdport"}) {
            const QTableView* grid = s_->grid(name);
            const QFontMetrics metrics(grid->font());
            int width = 0;
            for (int column = 0; column < 16; ++column) {
                width += grid->columnWidth(column);
                QVERIFY(grid->columnWidth(column) > metrics.horizontalAdvance("DD") + 4);
                QVERIFY(grid->columnWidth(column) >=
                        grid->horizontalHeader()->fontMetrics().horizontalAdvance(" D"));
            }
            QVERIFY(width <= grid->viewport()->width());
            QVERIFY(grid->rowHeight(0) >= metrics.height());
            const int digits = grid->model()->headerData(0, Qt::Vertical).toString().size() == 4 ? 4 : 2;
            QVERIFY(grid->verticalHeader()->width() >
                    grid->verticalHeader()->fontMetrics().horizontalAdvance(QString(digits, 'D')));
            QCOMPARE(grid->textElideMode(), Qt::ElideNone);
        }
        const QTableView* ports = s_->grid("grdport");
        QVERIFY(ports->viewport()->height() >= 16 * ports->rowHeight(0));
    }

    void onlyMemoryAndListingHaveScrollBars() {
        QStringList owners;
        for (const QScrollBar* bar : visible<QScrollBar>(&s_->window)) {
            const QWidget* owner = bar->objectName().isEmpty() || bar->objectName().startsWith("qt_")
                                       ? bar->parentWidget()->parentWidget()
                                       : bar;
            owners.append(owner->objectName());
        }
        owners.sort();
        QCOMPARE(owners, QStringList({"grdmem", "prgScrollBar"}));
    }

    void theListingShowsWholeRows() {
        s_->load(0, QByteArray::fromHex("31CDAB"));
        const QRect row = s_->listing()->visualItemRect(s_->listing()->item(0));
        QVERIFY(s_->listing()->viewport()->width() >= s_->listing()->sizeHintForColumn(0));
        QVERIFY(row.height() >= s_->listing()->fontMetrics().height());
    }

    void theStackShowsAllItsWords() {
        const auto* pila = s_->find<QListWidget>("pila");
        QVERIFY(pila->viewport()->rect().contains(pila->visualItemRect(pila->item(7))));
    }

    void hexadecimalTextIsFixedWidth() {
        for (const HexBox* box : visible<HexBox>(&s_->window)) QVERIFY(QFontInfo(box->font()).fixedPitch());
        for (const char* name : {"prg", "pila", "grdmem", "grdport"}) {
            QVERIFY(QFontInfo(s_->find<QWidget>(name)->font()).fixedPitch());
        }
    }
};

QTEST_MAIN(AppearanceTest)
#include "AppearanceTest.moc"
