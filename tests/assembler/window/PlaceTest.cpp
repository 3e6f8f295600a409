// Where the assembler's window and its message boxes open. It runs on a real display too: a window manager
// has a say there.

#include <QApplication>
#include <QMessageBox>
#include <QTest>
#include <QTimer>

#include "assembler/window/Ensamblador.h"
#include "tests/support/RealInput.h"
#include "tests/support/TemporaryFolder.h"
#include "ui/common/Paths.h"

using namespace tavinor;

namespace {

constexpr QPoint awayFromTheMiddle(600, 300);
constexpr QSize small(500, 400);
constexpr int aboutTheSame = 60;  // frames of any thickness

constexpr int settlingTime = 300;  // milliseconds for the window manager

/// Notes where the message box of an assembly and the window below it stand, and closes both.
class BoxWatch : public QObject {
  public:
    BoxWatch() { qApp->installEventFilter(this); }

    QRect window, box;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        auto* shown = qobject_cast<QMessageBox*>(watched);
        if (shown != nullptr && event->type() == QEvent::Show) {
            QTimer::singleShot(settlingTime, shown, [this, shown] { noteAndClose(shown); });
        }
        return QObject::eventFilter(watched, event);
    }

  private:
    void noteAndClose(QMessageBox* shown) {
        auto* below = qobject_cast<QDialog*>(shown->parentWidget());
        box = shown->frameGeometry();
        window = below->frameGeometry();
        QTimer::singleShot(0, below, &QDialog::accept);
        shown->close();
    }
};

}  // namespace

class PlaceTest : public QObject {
    Q_OBJECT

  private slots:
    void theFirstBoxOpensOverItsWindow() {
        const test::TemporaryFolder folder;
        folder.write("mal.asm", " NOPE\r\n");
        const QString source = fromPath(folder.path() / "mal.asm");
        QWidget parent;
        parent.resize(small);
        parent.move(awayFromTheMiddle);
        QVERIFY(showActive(&parent));
        QTest::qWait(settlingTime);
        Ensamblador window(&parent);
        BoxWatch watch;
        window.assemble(source, source + ".HEX", {});
        // Qt keeps a place to itself unless it was chosen; the window manager then takes its own, and tells
        // so before the box or after it.
        QVERIFY(window.testAttribute(Qt::WA_Moved));
        QVERIFY(watch.box.isValid());
        const QPoint off = watch.box.center() - watch.window.center();
        QVERIFY2(off.manhattanLength() < aboutTheSame,
                 qPrintable(QStringLiteral("%1, %2").arg(off.x()).arg(off.y())));
        QVERIFY(watch.window.contains(watch.box));
    }
};

QTEST_MAIN(PlaceTest)
#include "PlaceTest.moc"
