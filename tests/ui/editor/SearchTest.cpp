#include "ui/editor/Search.h"

#include <QTest>

using namespace tavinor;

class SearchTest : public QObject {
    Q_OBJECT

  private slots:
    void finds_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("pattern");
        QTest::addColumn<int>("start");
        QTest::addColumn<bool>("matchCase");
        QTest::addColumn<int>("position");  // 0: nowhere
        QTest::newRow("first") << "MVI A,1\nMVI B,2"
                               << "MVI" << 1 << true << 1;
        QTest::newRow("from its own start") << "xMVI"
                                            << "MVI" << 2 << true << 2;
        QTest::newRow("later") << "MVI A,1\nMVI B,2"
                               << "MVI" << 2 << true << 9;
        QTest::newRow("overlapping") << "aaa"
                                     << "aa" << 2 << true << 2;
        QTest::newRow("past the last") << "aaa"
                                       << "aa" << 3 << true << 0;
        QTest::newRow("other case") << "MVI A"
                                    << "mvi" << 1 << true << 0;
        QTest::newRow("any case") << "MVI A"
                                  << "mvi" << 1 << false << 1;
        QTest::newRow("accents of any case") << "Ñandú ÁÉÍÓÚ"
                                             << "ñANDÚ áéíóú" << 1 << false << 1;
        QTest::newRow("an accent is a letter of its own") << "ANO"
                                                          << "año" << 1 << false << 0;
        QTest::newRow("sharp s keeps its length") << "straße x"
                                                  << "X" << 1 << false << 8;
        QTest::newRow("ligature keeps its length") << "\uFB01n MOV"
                                                   << "mov" << 1 << false << 4;
        QTest::newRow("nothing to find") << "MVI"
                                         << "" << 1 << false << 0;
        QTest::newRow("nothing to find it in") << ""
                                               << "MVI" << 1 << false << 0;
        QTest::newRow("start past the end") << "MVI"
                                            << "I" << 4 << false << 0;
        QTest::newRow("start far past the end") << "MVI"
                                                << "I" << 1000 << false << 0;
        QTest::newRow("cut off by the end") << "MV"
                                            << "MVI" << 1 << false << 0;
        QTest::newRow("the last letter") << "xxI"
                                         << "I" << 3 << true << 3;
        QTest::newRow("at the very end") << "xxMVI"
                                         << "mvi" << 3 << false << 3;
    }

    void finds() {
        QFETCH(QString, text);
        QFETCH(QString, pattern);
        QFETCH(int, start);
        QFETCH(bool, matchCase);
        QFETCH(int, position);
        QCOMPARE(static_cast<int>(findText(text, pattern, start, matchCase).value_or(0)), position);
    }

    void upperCaseNeverChangesTheLength() {
        for (char16_t code = 1; code != 0; ++code) {
            const QString letter{QChar(code)};
            if (upperCased(letter).size() != 1) QFAIL(qPrintable(QString::number(code, 16)));
        }
        QCOMPARE(upperCased("áñüßç"), QString("ÁÑÜßÇ"));
        QCOMPARE(upperCased("ÿ\u0131\U00010428"), QString("Ÿ\u0131\U00010428"));
    }

    /// The assembler takes these letters as they are, and so does a search.
    void lettersThatTheAssemblerLeavesAlone() {
        QCOMPARE(upperCased("\u00B5\u0192"), QString("\u00B5\u0192"));
    }
};

QTEST_MAIN(SearchTest)
#include "SearchTest.moc"
