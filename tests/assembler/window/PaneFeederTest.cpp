#include "assembler/window/PaneFeeder.h"

#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <QTextBlock>
#include <algorithm>
#include <string>
#include <utility>

#include "tests/support/DialogAnswerer.h"
#include "tests/support/RealInput.h"

using namespace tavinor;

/// What is in the panes, whatever the clock has let through so far.
class PaneFeederTest : public QObject {
    Q_OBJECT

  private slots:
    void aPaneKeepsNothingOfThePassBefore() {
        QPlainTextEdit listing;
        QPlainTextEdit report;
        PaneFeeder feeder(&listing, &report, nullptr);
        feeder.appended(Pane::listing, "uno\r\n");
        feeder.appended(Pane::report, "otro\r\n");
        feeder.finish();
        feeder.cleared(Pane::listing);
        feeder.appended(Pane::listing, "dos\r\n");
        feeder.finish();
        QCOMPARE(listing.toPlainText(), QString("dos\n"));
        QCOMPARE(report.toPlainText(), QString("otro\n"));
    }

    void whatWasNeverShownIsClearedToo() {
        QPlainTextEdit listing;
        QPlainTextEdit report;
        PaneFeeder feeder(&listing, &report, nullptr);
        feeder.appended(Pane::listing, "uno\r\n");
        feeder.cleared(Pane::listing);
        feeder.appended(Pane::listing, "dos\r\n");
        feeder.finish();
        QCOMPARE(listing.toPlainText(), QString("dos\n"));
    }

    void manyShortLinesComeByPieces() {
        constexpr int lines = 50'000;
        QPlainTextEdit listing;
        QPlainTextEdit report;
        PaneFeeder feeder(&listing, &report, nullptr);
        int before = 1;  // an empty pane has a line
        int most = 0;
        connect(&listing, &QPlainTextEdit::blockCountChanged, this,
                [&](int count) { most = std::max(most, count - std::exchange(before, count)); });
        feeder.appended(Pane::listing, std::string(lines, '\n'));
        feeder.finish();
        QCOMPARE(listing.blockCount(), lines + 1);
        QVERIFY2(most <= PaneFeeder::mostLinesOfAPiece, qPrintable(QString::number(most)));
    }

    /// Qt lays out all that is in view at every paint.
    void longLinesHaveSoMuchRoomTogether() {
        QPlainTextEdit listing;
        QPlainTextEdit report;
        PaneFeeder feeder(&listing, &report, nullptr);
        const std::string line = std::string(100'000, 'x') + '\n';
        for (int lines = 0; lines < 3; ++lines) feeder.appended(Pane::listing, line);
        feeder.finish();
        QCOMPARE(listing.document()->findBlockByNumber(1).length(), 100'001);
        QVERIFY(listing.document()->findBlockByNumber(2).length() < 2000);
        QCOMPARE(listing.toPlainText().remove('\n').size(), 300'000);
        feeder.cleared(Pane::listing);
        feeder.appended(Pane::listing, line);
        feeder.finish();
        QCOMPARE(listing.document()->firstBlock().length(), 100'001);
    }

    /// Qt looks for them in all fonts there are.
    void strangeCharactersTakeMoreRoom() {
        QPlainTextEdit listing;
        QPlainTextEdit report;
        PaneFeeder feeder(&listing, &report, nullptr);
        feeder.appended(Pane::listing, std::string(20'000, '\0') + '\n');
        feeder.appended(Pane::listing, std::string(20'000, '\t') + '\n');
        feeder.finish();
        QVERIFY(listing.document()->firstBlock().length() < 2000);
        QCOMPARE(listing.document()->lastBlock().previous().length(), 20'001);
    }

    void aBoxComesWhenAllThatWasSaidBeforeIsShown() {
        QPlainTextEdit listing;
        QPlainTextEdit report;
        PaneFeeder feeder(&listing, &report, &listing);
        QVERIFY(showActive(&listing));
        feeder.appended(Pane::listing, "uno\r\n");
        feeder.appended(Pane::report, "otro\r\n");
        QString shown;
        DialogAnswerer dialogs;
        dialogs.expectWindow("messageBox", [&](QWidget* box) {
            shown = listing.toPlainText() + report.toPlainText();
            clickIn(box->findChild<QPushButton*>());
        });
        feeder.message("Error creando fichero");
        QVERIFY(dialogs.allCame());
        QCOMPARE(shown, QString("uno\notro\n"));
    }
};

QTEST_MAIN(PaneFeederTest)
#include "PaneFeederTest.moc"
