#include <QLabel>
#include <QLayout>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>

#include "tests/support/DialogAnswerer.h"
#include "tests/support/RealInput.h"
#include "ui/common/MessageBoxes.h"
#include "ui/common/Naming.h"

using namespace tavinor;

/// How a message box looks; what it says and answers is tested where it is shown.
class MessageBoxesTest : public QObject {
    Q_OBJECT

  private:
    /// Looks at a box with `text` over `parent`.
    static void lookAt(QWidget* parent, const QString& text, bool rightAligned,
                       const std::function<void(QMessageBox&)>& look) {
        DialogAnswerer dialogs;
        dialogs.expectWindow("messageBox", [&look](QWidget* window) {
            look(dynamic_cast<QMessageBox&>(*window));
            pressKey(window, Qt::Key_Escape);
        });
        showMessage(parent, text, rightAligned);
    }

    static QLabel* textOf(const QMessageBox& box) {
        return box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
    }

    QWidget parent_;

  private slots:
    void initTestCase() { QVERIFY(showActive(&parent_)); }

    /// A window manager needs some of a title bar for its menu and three buttons, as wide as the bar is high.
    void aShortBoxHasRoomForItsTitle() {
        lookAt(&parent_, "No", false, [](const QMessageBox& box) {
            const QFontMetrics metrics(box.font());
            const int barAndButtons = 4 * (metrics.height() + 12);
            QCOMPARE(box.windowTitle(), applicationTitle());
            QVERIFY2(box.width() >= metrics.horizontalAdvance(box.windowTitle()) + barAndButtons,
                     qPrintable(QString::number(box.width())));
        });
    }

    void thereIsNoHoleForAnIcon() {
        lookAt(&parent_, "Error en lectura", false, [](const QMessageBox& box) {
            const QMargins margins = box.layout()->contentsMargins();
            QCOMPARE(textOf(box)->x() + textOf(box)->contentsMargins().left(), margins.left());
        });
    }

    /// The loader's texts stand at the right edge, and there is no hole at the left either.
    void textAtTheRightReachesTheEdge() {
        lookAt(&parent_, "Error\rFormato incorrecto.", true, [](const QMessageBox& box) {
            QCOMPARE(textOf(box)->geometry().right(),
                     box.width() - 1 - box.layout()->contentsMargins().right());
            QVERIFY(textOf(box)->alignment().testFlag(Qt::AlignRight));
        });
    }
};

QTEST_MAIN(MessageBoxesTest)
#include "MessageBoxesTest.moc"
