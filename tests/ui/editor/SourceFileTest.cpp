#include "ui/editor/SourceFile.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <filesystem>
#include <new>
#include <optional>

#include "tests/support/Canceller.h"
#include "tests/support/FileSizeLimit.h"
#include "tests/support/MemoryLimit.h"
#include "tests/support/OddFiles.h"
#include "ui/common/Paths.h"

using namespace tavinor;

namespace {

void put(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

QByteArray bytesOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(not there)");
}

}  // namespace

class SourceFileTest : public QObject {
    Q_OBJECT

  private:
    QTemporaryDir folder_;
    WorkObserver patient_;
    [[nodiscard]] QString path(const QString& name) const { return folder_.filePath(name); }

  private slots:
    void decodes_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("unicode");
        QTest::newRow("ascii") << QByteArray("MVI A,1\r\n") << "MVI A,1\n" << true;
        QTest::newRow("utf-8") << QByteArray("; a\xC3\xB1o \xE2\x82\xAC") << "; año €" << true;
        QTest::newRow("past the basic plane") << QByteArray("\xF0\x9F\x98\x80") << "\U0001F600" << true;
        QTest::newRow("byte-order mark") << QByteArray("\xEF\xBB\xBF; \xC3\xB1") << "; ñ" << true;
        QTest::newRow("a mark alone") << QByteArray("\xEF\xBB\xBF") << "" << true;
        QTest::newRow("two marks: one is text") << QByteArray(
                                                       "\xEF\xBB\xBF\xEF\xBB\xBF"
                                                       "A")
                                                << QStringLiteral(u"\uFEFFA") << true;
        QTest::newRow("windows-1252") << QByteArray("; a\xF1o \x80\x93\x94") << "; año €“”" << false;
        QTest::newRow("its undefined bytes") << QByteArray("\x81\xFF") << QStringLiteral(u"\u0081ÿ") << false;
        QTest::newRow("cut-off utf-8") << QByteArray("a\xC3") << "aÃ" << false;
        QTest::newRow("overlong utf-8") << QByteArray("\xC0\xAF") << "À¯" << false;
        QTest::newRow("a surrogate in utf-8")
            << QByteArray("\xED\xA0\x80") << QStringLiteral(u"í €") << false;
        QTest::newRow("utf-16, little end first") << QByteArray("\xFF\xFE\xF1\0\xAC\x20", 6) << "ñ€" << true;
        QTest::newRow("utf-16, big end first") << QByteArray("\xFE\xFF\0\xF1\x20\xAC", 6) << "ñ€" << true;
        QTest::newRow("line ends") << QByteArray(
                                          "a\r\nb\rc\nd\xE2\x80\xA8"
                                          "e\xE2\x80\xA9"
                                          "f\xC2\x85g")
                                   << "a\nb\nc\nd\ne\nf\ng" << true;
        QTest::newRow("an ellipsis ends no line") << QByteArray("\xF1\x85") << "ñ…" << false;
        QTest::newRow("no-break space") << QByteArray(
                                               "MVI\xC2\xA0"
                                               "A,1")
                                        << "MVI A,1" << true;
        QTest::newRow("what Qt keeps for itself") << QByteArray(
                                                         "a\xEF\xB7\x90"
                                                         "b\xEF\xB7\x91")
                                                  << QStringLiteral(u"a\uFFFDb\uFFFD") << true;
        QTest::newRow("marked, yet not utf-8") << QByteArray("\xEF\xBB\xBF\xF1") << "ñ" << false;
        QTest::newRow("NUL") << QByteArray("a\0b", 3) << QStringLiteral(u"a\0b") << true;
    }

    void decodes() {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, text);
        QFETCH(bool, unicode);
        const SourceFile file = decodeSource(bytes.toStdString());
        QCOMPARE(file.state, SourceFile::State::read);
        QCOMPARE(file.text, text);
        QCOMPARE(file.encoding != TextEncoding::windows1252, unicode);
    }

    /// As any text it would be saved as other bytes: half a line end is none.
    void readsNoMalformedUtf16_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("half a unit") << QByteArray("\xFF\xFE\r\0\n\0\xF1", 7);
        QTest::newRow("half a unit, big end first") << QByteArray("\xFE\xFF\0\r\0\n\0", 7);
        QTest::newRow("the mark and half a unit") << QByteArray("\xFF\xFE\xF1");
        QTest::newRow("first surrogate alone") << QByteArray("\xFF\xFE\x3D\xD8\r\0\n\0", 8);
        QTest::newRow("first surrogate at the end") << QByteArray("\xFF\xFE\r\0\n\0\x3D\xD8", 8);
        QTest::newRow("second surrogate alone") << QByteArray("\xFE\xFF\xDE\0\0\r\0\n", 8);
    }

    void readsNoMalformedUtf16() {
        QFETCH(QByteArray, bytes);
        QCOMPARE(decodeSource(bytes.toStdString()).state, SourceFile::State::failed);
    }

    void asksForTheMemoryOfAFileAndOfItsText() {
        const std::string oneLine = "NOP\r\n";
        put(path("a.asm"), QByteArray("\n").repeated(2'000'001));  // whose text would be refused
        const test::MemoryLimit limit;
        QVERIFY_EXCEPTION_THROWN(readSource(path("a.asm")), std::bad_alloc);
        QVERIFY_EXCEPTION_THROWN(decodeSource(oneLine), std::bad_alloc);
    }

    void everyByteComesBackInTheOldEncoding() {
        QByteArray all("\xFF\xFF");  // no valid UTF-8
        for (int byte = 0; byte < 256; ++byte) {
            // These become other characters: a line ends in a pair, and a no-break space is a blank.
            const bool changes = byte == '\n' || byte == '\r' || byte == 0xA0;
            if (!changes) all.append(static_cast<char>(byte));
        }
        const SourceFile file = decodeSource(all.toStdString());
        QCOMPARE(file.encoding, TextEncoding::windows1252);
        QVERIFY(canEncodeSource(file.text, file.encoding, patient_));
        QVERIFY(writeSource(path("all"), file.text, file.encoding, patient_));
        QCOMPARE(bytesOf(path("all")), all);
    }

    void knowsWhatTheOldEncodingLacks() {
        QVERIFY(canEncodeSource("año € “x”", TextEncoding::windows1252, patient_));
        QVERIFY(!canEncodeSource("Ω", TextEncoding::windows1252, patient_));
        QVERIFY(!canEncodeSource("\U0001F600", TextEncoding::windows1252, patient_));
        QVERIFY(canEncodeSource("Ω\U0001F600", TextEncoding::utf8, patient_));
    }

    void readsNothingButFiles() {
        QCOMPARE(readSource(folder_.path()).state, SourceFile::State::failed);
        QCOMPARE(readSource(path("missing")).state, SourceFile::State::failed);
        QCOMPARE(readSource("/dev/zero").state, SourceFile::State::failed);
        put(path("none"), {});
        QCOMPARE(readSource(path("none")).state, SourceFile::State::empty);
    }

    void bringsBackTheEncodingAndItsMark_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("utf-8") << QByteArray("\xC3\xB1\r\n");
        QTest::newRow("marked utf-8") << QByteArray("\xEF\xBB\xBF\xC3\xB1\r\n");
        QTest::newRow("utf-16, little end first") << QByteArray("\xFF\xFE\xF1\0\r\0\n\0", 8);
        QTest::newRow("utf-16, big end first") << QByteArray("\xFE\xFF\0\xF1\0\r\0\n", 8);
        QTest::newRow("windows-1252") << QByteArray("\xF1\r\n");
    }

    void bringsBackTheEncodingAndItsMark() {
        QFETCH(QByteArray, bytes);
        put(path("a.asm"), bytes);
        const SourceFile file = readSource(path("a.asm"));
        QCOMPARE(file.text, QString("ñ\n"));
        QVERIFY(canEncodeSource(file.text, file.encoding, patient_));
        QVERIFY(writeSource(path("a.asm"), file.text, file.encoding, patient_));
        QCOMPARE(bytesOf(path("a.asm")), bytes);
    }

    void readsNoMoreThanATextBoxHolds() {
        const QByteArray line(1024, 'x');
        QByteArray huge = (line.left(1023) + '\n').repeated(64 * 1024);
        put(path("huge"), huge);
        QCOMPARE(readSource(path("huge")).text.size(), huge.size());
        put(path("huge"), huge + 'x');
        QCOMPARE(readSource(path("huge")).state, SourceFile::State::tooLarge);
        QCOMPARE(readSource(path("huge")).text,
                 QString("Texto demasiado grande. El editor admite hasta 64 MiB."));
        QVERIFY(QFile::remove(path("huge")));
    }

    void readsNoMoreThanTwoMillionLines() {
        put(path("a.asm"), QByteArray("\r\n").repeated(2'000'000));
        QCOMPARE(readSource(path("a.asm")).state, SourceFile::State::read);
        put(path("a.asm"), QByteArray("\r\n").repeated(2'000'000) + 'x');
        QCOMPARE(readSource(path("a.asm")).state, SourceFile::State::tooLarge);
        QCOMPARE(readSource(path("a.asm")).text,
                 QString("Demasiadas líneas. El editor admite hasta dos millones."));
    }

    void readsNoLineThatTheTextBoxWouldTakeLongFor() {
        const QByteArray longest = QByteArray("\xC3\xB1").repeated(128 * 1024);  // characters count
        for (const char* end : {"\n", "\r", "\r\n", ""}) {
            const QByteArray two = longest + end + longest;
            const bool fits = *end != '\0';
            put(path("a.asm"), two);
            QCOMPARE(readSource(path("a.asm")).state,
                     fits ? SourceFile::State::read : SourceFile::State::tooLarge);
            put(path("a.asm"), longest + 'x' + end);
            QCOMPARE(readSource(path("a.asm")).state, SourceFile::State::tooLarge);
        }
        QCOMPARE(readSource(path("a.asm")).text,
                 QString("Línea demasiado larga. El editor admite hasta 128 KiB en cada una."));
    }

    void writesLineEndsAsPairs() {
        QVERIFY(writeSource(path("a.asm"), "uno\n\ndos ñ\n", TextEncoding::utf8, patient_));
        QCOMPARE(bytesOf(path("a.asm")), QByteArray("uno\r\n\r\ndos \xC3\xB1\r\n"));
        QVERIFY(writeSource(path("a.asm"), "ñ\n", TextEncoding::windows1252, patient_));
        QCOMPARE(bytesOf(path("a.asm")), QByteArray("\xF1\r\n"));
    }

    void keepsPermissions() {
        put(path("p.asm"), "x");
        const auto permissions = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::ReadGroup;
        QVERIFY(QFile::setPermissions(path("p.asm"), permissions));
        const auto before = QFile::permissions(path("p.asm"));
        QVERIFY(writeSource(path("p.asm"), "y", TextEncoding::utf8, patient_));
        QCOMPARE(QFile::permissions(path("p.asm")), before);
    }

    void writesThroughLinks() {
        put(path("real.asm"), "x");
        QVERIFY(QFile::link("real.asm", path("link.asm")));
        QVERIFY(QFile::link("link.asm", path("second.asm")));
        QVERIFY(writeSource(path("second.asm"), "y", TextEncoding::utf8, patient_));
        QVERIFY(QFileInfo(path("second.asm")).isSymLink());
        QVERIFY(QFileInfo(path("link.asm")).isSymLink());
        QCOMPARE(bytesOf(path("real.asm")), QByteArray("y"));
    }

    void writesUnderAllNamesOfAFile() {
        put(path("one.asm"), "x");
        std::filesystem::create_hard_link(toPath(path("one.asm")), toPath(path("two.asm")));
        QVERIFY(writeSource(path("two.asm"), "y\n", TextEncoding::utf8, patient_));
        QCOMPARE(bytesOf(path("one.asm")), QByteArray("y\r\n"));
    }

    void aCancelledSaveLeavesTheOldFile_data() {
        QTest::addColumn<bool>("twoNames");
        QTest::newRow("replaced") << false;
        QTest::newRow("rewritten in place") << true;
    }
    void aCancelledSaveLeavesTheOldFile() {
        QFETCH(const bool, twoNames);
        put(path("c.asm"), "old");
        if (twoNames) std::filesystem::create_hard_link(toPath(path("c.asm")), toPath(path("d.asm")));
        const QStringList before = QDir(folder_.path()).entryList(QDir::Files | QDir::Hidden);
        const QString text = QString(1023, 'x').append('\n').repeated(2048);
        int reports = 1;
        for (;; ++reports) {
            Canceller canceller(reports);
            try {
                QVERIFY(writeSource(path("c.asm"), text, TextEncoding::utf8, canceller));
                break;
            } catch (const Cancelled&) {
                QVERIFY(canceller.sane());
                QCOMPARE(bytesOf(path("c.asm")), QByteArray("old"));
                QCOMPARE(QDir(folder_.path()).entryList(QDir::Files | QDir::Hidden), before);
            }
        }
        QVERIFY(reports > 4);
        QCOMPARE(bytesOf(path("c.asm")).size(), text.size() + 2048);
    }

    void leavesOtherThingsAlone() {
        QVERIFY(!writeSource(folder_.path(), "y", TextEncoding::utf8, patient_));
        QVERIFY(!writeSource("/dev/null", "y", TextEncoding::utf8, patient_));
        QVERIFY(!QFileInfo("/dev/null").isFile());
        QVERIFY(!writeSource(path("no/such/folder.asm"), "y", TextEncoding::utf8, patient_));
    }

    void whatIsNoFileIsNeitherReadNorWritten() {
        test::OddFiles().each([this](const std::string& what, const std::filesystem::path& odd) {
            QVERIFY2(readSource(fromPath(odd)).state == SourceFile::State::failed, what.c_str());
            QVERIFY2(!writeSource(fromPath(odd), "y", TextEncoding::utf8, patient_), what.c_str());
        });
    }

    /// The write fails in its middle.
    void aFailedSaveLeavesTheOldFile_data() {
        QTest::addColumn<int>("size");
        QTest::newRow("more than a buffer") << 100'000;
        QTest::newRow("less than a buffer") << 6'000;
    }

    void aFailedSaveLeavesTheOldFile() {
        QFETCH(int, size);
        put(path("old.asm"), "old");
        const QStringList before = QDir(folder_.path()).entryList();
        std::optional<test::FileSizeLimit> fullDisk(4096);
        const auto saved = writeSource(path("old.asm"), QString(size, 'x'), TextEncoding::utf8, patient_);
        fullDisk.reset();
        QVERIFY(!saved);
        QCOMPARE(bytesOf(path("old.asm")), QByteArray("old"));
        QCOMPARE(QDir(folder_.path()).entryList(), before);
    }
};

QTEST_MAIN(SourceFileTest)
#include "SourceFileTest.moc"
