// The assembler's window as a window: closing, keys, painting while it works, sizes.

#include <QAccessible>
#include <QLabel>
#include <QMenu>
#include <QScreen>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>
#include <QTextLayout>
#include <memory>

#include "tests/assembler/window/AssemblerUser.h"
#include "tests/support/RealInput.h"
#include "ui/common/Application.h"
#include "ui/common/MessageBoxes.h"

using namespace tavinor;

namespace {

using Action = void (*)(QDialog&);

struct NamedAction {
    const char* name;
    Action action;
};

/// What closes the window once it may be closed.
const NamedAction closings[] = {
    {"click", [](QDialog& window) { clickIn(closeButton(window)); }},
    {"access key", [](QDialog& window) { pressKey(&window, Qt::Key_C, Qt::AltModifier); }},
    {"Esc", [](QDialog& window) { pressKey(&window, Qt::Key_Escape); }},
    {"Return", [](QDialog& window) { pressKey(&window, Qt::Key_Return); }},
    {"close box", [](QDialog& window) { pressCloseBox(window); }},
};

class EventCounter : public QObject {
  public:
    EventCounter(QObject* watched, QEvent::Type type) : type_(type) { watched->installEventFilter(this); }
    [[nodiscard]] int count() const { return count_; }

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == type_) ++count_;
        return QObject::eventFilter(watched, event);
    }

  private:
    QEvent::Type type_;
    int count_ = 0;
};

QString spoken(QWidget* widget, QAccessible::Text text) {
    return QAccessible::queryAccessibleInterface(widget)->text(text);
}

}  // namespace

Q_DECLARE_METATYPE(Action)

class WindowTest : public QObject {
    Q_OBJECT

  private:
    std::unique_ptr<AssemblerUser> user_;

    void addClosings() {
        QTest::addColumn<Action>("action");
        for (const NamedAction& closing : closings) QTest::newRow(closing.name) << closing.action;
    }

  private slots:
    void initTestCase() { installSpanish(*qApp); }
    void init() {
        user_ = std::make_unique<AssemblerUser>();
        user_->write("bien.asm", " HLT\r\n");
        user_->write("mal.asm", " NOPE\r\n");
        user_->write("largo.asm", QByteArray("; nada\r\n NOP\r\n").repeated(30000));
    }
    void cleanup() { user_.reset(); }

    void closes_data() { addClosings(); }
    void closes() {
        QFETCH(const Action, action);
        user_->closing = action;
        QCOMPARE(user_->assemble("bien.asm").outcome, "Ensamblado correcto");
        QCOMPARE(user_->assemble("mal.asm", {"Ensamblado incorrecto"}).outcome, "Ensamblado incorrecto");
    }

    void cannotBeClosedWhileItWorks_data() { addClosings(); }
    void cannotBeClosedWhileItWorks() {
        QFETCH(const Action, action);
        user_->during = [action](QDialog& window) {
            QVERIFY(!closeButton(window)->isEnabled());
            QCOMPARE(Shown::by(window).outcome, QString());
            action(window);
            QVERIFY(window.isVisible());
            QVERIFY(!closeButton(window)->isEnabled());
        };
        QCOMPARE(user_->assemble("largo.asm").outcome, "Ensamblado correcto");
        QVERIFY(!user_->read("largo.HEX").isEmpty());
    }

    void paintsWhileItWorks() {
        std::unique_ptr<EventCounter> paints;
        bool ended = false;
        user_->during = [&](QDialog& window) {
            paints = std::make_unique<EventCounter>(listingPane(window)->viewport(), QEvent::Paint);
        };
        user_->afterwards = [&](QDialog&) {
            ended = true;
            QVERIFY2(paints->count() > 2, qPrintable(QString::number(paints->count())));
        };
        const Shown shown = user_->assemble("largo.asm");
        QVERIFY(ended);
        // The comment before the first statement is not listed; the symbol table is.
        QCOMPARE(shown.listing.count('\n'), 59999 + 4);
    }

    void assemblesOnceHoweverOftenItIsActivated() {
        user_->afterwards = [this](QDialog& window) {
            QVERIFY(QFile::remove(user_->path("bien.HEX")));
            const Shown before = Shown::by(window);
            const EventCounter activations(&window, QEvent::WindowActivate);
            for (int i = 0; i < 3; ++i) {
                user_->dialogs().expectMessage("encima");
                showMessage(&window, "encima");
                window.activateWindow();
                QVERIFY(QTest::qWaitForWindowActive(&window));
            }
            QVERIFY(activations.count() >= 3);
            QVERIFY(!QFile::exists(user_->path("bien.HEX")));
            QCOMPARE(Shown::by(window).report, before.report);
            QCOMPARE(Shown::by(window).outcome, before.outcome);
        };
        user_->assemble("bien.asm");
    }

    void standsOverTheMainWindow() {
        QPixmap picture(16, 16);
        picture.fill(Qt::red);
        user_->principal().setWindowIcon(QIcon(picture));
        user_->during = [this](QDialog& window) {
            QVERIFY(window.isModal());
            QCOMPARE(window.parentWidget(), &user_->principal());
            QCOMPARE(window.windowTitle(), "Tavinor");
            QCOMPARE(window.windowIcon().cacheKey(), user_->principal().windowIcon().cacheKey());
        };
        user_->assemble("bien.asm");
    }

    void movesThroughItsControlsByTab() {
        user_->afterwards = [](QDialog& window) {
            QStringList visited;
            for (int i = 0; i < 4; ++i) {
                visited.append(Shown::by(window).focus);
                pressKey(&window, Qt::Key_Tab);
            }
            QCOMPARE(visited, QStringList({"cerrar", "filelst", "filehex", "cerrar"}));
        };
        user_->assemble("bien.asm");
    }

    void panesCanBeReadAndCopiedButNotChanged() {
        user_->afterwards = [](QDialog& window) {
            const Shown before = Shown::by(window);
            for (QPlainTextEdit* pane : {listingPane(window), reportPane(window)}) {
                clickIn(pane->viewport());
                QCOMPARE(Shown::by(window).focus, pane->objectName());
                typeText(&window, "x");
                pressKey(&window, Qt::Key_Backspace);
                pressKey(&window, Qt::Key_A, Qt::ControlModifier);
                QVERIFY(pane->textCursor().hasSelection());
                pressKey(&window, Qt::Key_X, Qt::ControlModifier);
                const std::unique_ptr<QMenu> menu(pane->createStandardContextMenu());
                QStringList actions;
                for (const QAction* action : menu->actions()) {
                    actions.append(action->text().section('\t', 0, 0));
                }
                QVERIFY2(actions.contains("&Copiar"), qPrintable(actions.join(", ")));
                QVERIFY2(!actions.contains("Cor&tar"), qPrintable(actions.join(", ")));
            }
            QCOMPARE(Shown::by(window).listing, before.listing);
            QCOMPARE(Shown::by(window).report, before.report);
        };
        user_->assemble("bien.asm");
    }

    void hasTheScrollBarsAtAllTimes() {
        user_->afterwards = [](QDialog& window) {
            QVERIFY(listingPane(window)->horizontalScrollBar()->isVisible());
            QVERIFY(listingPane(window)->verticalScrollBar()->isVisible());
            QVERIFY(!reportPane(window)->horizontalScrollBar()->isVisible());
            QVERIFY(reportPane(window)->verticalScrollBar()->isVisible());
        };
        user_->assemble("bien.asm");
    }

    void listsLongLinesUnbrokenAndWrapsThemInTheReport() {
        const QByteArray line = " NOPE ;" + QByteArray("comentario ").repeated(60);
        user_->write("ancho.asm", line + "\r\n");
        user_->afterwards = [](QDialog& window) {
            QVERIFY(listingPane(window)->horizontalScrollBar()->maximum() > 0);
            QCOMPARE(listingPane(window)->document()->firstBlock().layout()->lineCount(), 1);
            QVERIFY(reportPane(window)->document()->firstBlock().layout()->lineCount() > 1);
        };
        user_->assemble("ancho.asm", {"Ensamblado incorrecto"});
    }

    void fitsTheScreenHoweverLongThePath() {
        QString folder;
        for (int i = 0; i < 6; ++i) folder += QStringLiteral("una carpeta de nombre bastante largo/");
        QVERIFY(QDir(user_->path({})).mkpath(folder));
        user_->write(folder + "prog.asm", " HLT\r\n");
        user_->afterwards = [](QDialog& window) {
            const auto* file1 = window.findChild<QLabel*>("file1");
            QVERIFY(file1->fontMetrics().horizontalAdvance(file1->text()) > file1->width());
            const QRect screen = window.screen()->availableGeometry();
            QVERIFY(window.width() <= screen.width() && window.height() <= screen.height());
            QVERIFY(window.minimumSizeHint().width() < 400 && window.minimumSizeHint().height() < 384);
            QVERIFY2(file1->toolTip().contains("prog.asm"), qPrintable(file1->toolTip()));
        };
        user_->assemble(folder + "prog.asm");
    }

    void givesItsRoomToThePanes() {
        user_->afterwards = [](QDialog& window) {
            const int listing = listingPane(window)->height();
            const int report = reportPane(window)->height();
            QVERIFY(listing > 2 * report);
            window.resize(window.width() + 100, window.height() - 100);
            QCoreApplication::processEvents();
            QCOMPARE(listingPane(window)->height() + reportPane(window)->height(), listing + report - 100);
            QCOMPARE(listingPane(window)->width(), reportPane(window)->width());
        };
        user_->assemble("bien.asm");
    }

    void tellsAScreenReaderWhatItShows() {
        user_->afterwards = [](QDialog& window) {
            auto* file1 = window.findChild<QLabel*>("file1");
            QCOMPARE(spoken(file1, QAccessible::Name), file1->text());
            QCOMPARE(spoken(file1, QAccessible::Description), "Fichero fuente");
            QCOMPARE(spoken(window.findChild<QLabel*>("Label1"), QAccessible::Name), "Ensamblado correcto");
            QCOMPARE(spoken(closeButton(window), QAccessible::Name), "Cerrar");
            QCOMPARE(spoken(closeButton(window), QAccessible::Description), "Ensamblado correcto");
            QCOMPARE(spoken(listingPane(window), QAccessible::Name), "Listado");
            QCOMPARE(spoken(reportPane(window), QAccessible::Name), "Informe de errores o registros HEX");
        };
        user_->assemble("bien.asm");
    }

    void breaksOnlyLinesBeyondAllCode() {
        const QByteArray longest = " NOP ;" + QByteArray(230'000, 'x');
        const QByteArray longer = " NOP ;x" + QString(70'000, u'ñ').toUtf8();
        user_->write("ancho.asm", longest + "\r\n nop\r\n" + longer + "\r\n");
        const Shown shown = user_->assemble("ancho.asm");
        QCOMPARE(shown.outcome, "Ensamblado correcto");
        QVERIFY(shown.listing.startsWith("0000 00         " + longest + "\n"));
        QVERIFY(shown.listing.contains("\n0001 00          nop\n0002 00 "));
        QVERIFY(!shown.listing.contains(longer));
        QVERIFY(QString(shown.listing).remove('\n').contains(QString::fromUtf8(longer)));
        QVERIFY(user_->read("ancho.LST").contains(longer));
    }
};

QTEST_MAIN(WindowTest)
#include "WindowTest.moc"
