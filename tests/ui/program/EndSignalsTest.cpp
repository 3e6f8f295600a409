#include "ui/program/EndSignals.h"

#include <QSignalSpy>
#include <QTest>
#include <csignal>

using namespace tavinor;

class EndSignalsTest : public QObject {
    Q_OBJECT

  private slots:
    void isReceived_data() {
        QTest::addColumn<int>("signal");
        QTest::newRow("terminate") << SIGTERM;
        QTest::newRow("interrupt") << SIGINT;
        QTest::newRow("hang up") << SIGHUP;
    }

    void isReceived() {
        QFETCH(const int, signal);
        const EndSignals ends;
        const QSignalSpy received(&ends, &EndSignals::received);
        std::raise(signal);
        QCOMPARE(received.count(), 0);  // not before the event loop
        QTRY_COMPARE(received.count(), 1);
    }

    /// The second one of a hurry ends the program without a question.
    void eachCountsAlsoWhenTheyComeTogether() {
        const EndSignals ends;
        const QSignalSpy received(&ends, &EndSignals::received);
        std::raise(SIGTERM);
        std::raise(SIGTERM);
        QTRY_COMPARE(received.count(), 2);
    }

    void oneThatIsIgnoredStaysSo() {
        const auto before = std::signal(SIGHUP, SIG_IGN);
        {
            const EndSignals ends;
            const QSignalSpy received(&ends, &EndSignals::received);
            std::raise(SIGHUP);
            std::raise(SIGTERM);
            QTRY_VERIFY(received.count() > 0);
            QTest::qWait(20);
            QCOMPARE(received.count(), 1);
        }
        QVERIFY(std::signal(SIGHUP, before) == SIG_IGN);
    }
};

QTEST_MAIN(EndSignalsTest)
#include "EndSignalsTest.moc"
