#include "ui/editor/RescueCopy.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <optional>

#include "tests/support/FileSizeLimit.h"
#include "ui/editor/SourceFile.h"

using namespace tavinor;

class RescueCopyTest : public QObject {
    Q_OBJECT

  private:
    std::unique_ptr<QTemporaryDir> folder_;

    [[nodiscard]] QString path(const QString& name = "a.asm") const { return folder_->filePath(name); }
    void put(const QString& name, const QByteArray& bytes) const {
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) qFatal("cannot write");
    }
    void setTime(const QString& name, const QDateTime& time) const {
        QFile file(path(name));
        if (!file.open(QIODevice::ReadWrite) || !file.setFileTime(time, QFileDevice::FileModificationTime)) {
            qFatal("cannot set a time");
        }
    }
    [[nodiscard]] QByteArray copy() const {
        QFile file(path("a.asm.rescate"));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(not there)");
    }
    [[nodiscard]] QStringList files() const {
        return QDir(folder_->path()).entryList(QDir::Files | QDir::Hidden);
    }
    static RescueCopy::Text lines(const QStringList& pieces) {
        return [pieces](const auto& take) {
            for (const QString& piece : pieces) take(piece);
        };
    }

  private slots:
    void init() { folder_ = std::make_unique<QTemporaryDir>(); }

    void liesBesideItsSource() {
        QCOMPARE(RescueCopy(path()).path(), path("a.asm.rescate"));
        QCOMPARE(RescueCopy("s").path(), QString("s.rescate"));
    }

    void isWrittenToTheLetter() {
        QVERIFY(RescueCopy(path()).write(lines({"uno ñ\n", "\n", "dos"}), TextEncoding::utf8));
        QCOMPARE(copy(), QByteArray("uno \xC3\xB1\r\n\r\ndos"));
        QVERIFY(RescueCopy(path()).write(lines({"ñ\n"}), TextEncoding::windows1252));
        QCOMPARE(copy(), QByteArray("\xF1\r\n"));
        QCOMPARE(files(), QStringList("a.asm.rescate"));
    }

    void nothingIsLostForItsEncoding() {
        QVERIFY(RescueCopy(path()).write(lines({"ñ\n", "Ω\n"}), TextEncoding::windows1252));
        QCOMPARE(copy(), QByteArray("\xC3\xB1\r\n\xCE\xA9\r\n"));
    }

    void longTexts() {
        QStringList pieces;
        QString whole;
        for (int i = 0; i < 50'000; ++i) pieces.append(QString("; línea %1\n").arg(i));
        whole = pieces.join(QString());
        QVERIFY(RescueCopy(path()).write(lines(pieces), TextEncoding::utf8));
        QCOMPARE(copy(), whole.toUtf8().replace("\n", "\r\n"));
        // The mark stands in front once, however many pieces follow.
        QVERIFY(RescueCopy(path()).write(lines(pieces), TextEncoding::markedUtf8));
        QCOMPARE(copy(), "\xEF\xBB\xBF" + whole.toUtf8().replace("\n", "\r\n"));
    }

    void isOfferedWhenItIsNotOlder() {
        const RescueCopy rescue(path());
        QVERIFY(!rescue.isNewer());
        const QDateTime time = QDateTime::currentDateTime().addDays(-1);
        put("a.asm.rescate", "x");
        QVERIFY(rescue.isNewer());  // without a source
        put("a.asm", "y");
        setTime("a.asm", time);
        setTime("a.asm.rescate", time);
        QVERIFY(rescue.isNewer());
        setTime("a.asm.rescate", time.addSecs(-1));
        QVERIFY(!rescue.isNewer());
        setTime("a.asm.rescate", time.addSecs(1));
        QVERIFY(rescue.isNewer());
    }

    void onlyFilesAreCopies() {
        QVERIFY(QDir(folder_->path()).mkdir("a.asm.rescate"));
        const RescueCopy rescue(path());
        QVERIFY(!rescue.isNewer());
        QVERIFY(!rescue.write(lines({"x"}), TextEncoding::utf8));
        rescue.remove();
        QVERIFY(QDir(path("a.asm.rescate")).exists());
    }

    void goes() {
        put("a.asm.rescate", "x");
        RescueCopy(path()).remove();
        QCOMPARE(files(), QStringList());
        RescueCopy(path()).remove();
    }

    void isWholeOrNotThere() {
        put("a.asm.rescate", "old");
        std::optional<test::FileSizeLimit> fullDisk(4096);
        const bool written = RescueCopy(path()).write(lines({QString(100'000, 'x')}), TextEncoding::utf8);
        fullDisk.reset();
        QVERIFY(!written);
        QCOMPARE(copy(), QByteArray("old"));
        QCOMPARE(files(), QStringList("a.asm.rescate"));
        QVERIFY(!RescueCopy(path("no/a.asm")).write(lines({"x"}), TextEncoding::utf8));
    }

    /// It stays under its name where no new one could be written.
    void anEarlierOneIsKept() {
        using Earlier = RescueCopy::Earlier;
        const RescueCopy rescue(path());
        QVERIFY(rescue.write(lines({"a"}), TextEncoding::utf8, Earlier::kept));
        QCOMPARE(files(), QStringList("a.asm.rescate"));
        std::optional<test::FileSizeLimit> fullDisk(4096);
        const bool written = rescue.write(lines({QString(100'000, 'x')}), TextEncoding::utf8, Earlier::kept);
        fullDisk.reset();
        QVERIFY(!written);
        QCOMPARE(copy(), QByteArray("a"));
        QVERIFY(rescue.write(lines({"b"}), TextEncoding::utf8, Earlier::kept));
        QVERIFY(rescue.write(lines({"c"}), TextEncoding::utf8, Earlier::kept));
        QCOMPARE(copy(), QByteArray("c"));
        QCOMPARE(files(), QStringList({"a.asm.rescate", "a.asm.rescate.1", "a.asm.rescate.2"}));
    }

    /// What others may not read in the source they may not read here.
    void itIsNoMorePublicThanItsSource() {
        put("a.asm", "x");
        QVERIFY(QFile::setPermissions(path(), QFile::ReadOwner | QFile::WriteOwner));
        QVERIFY(RescueCopy(path()).write(lines({"y"}), TextEncoding::utf8));
        QCOMPARE(QFile::permissions(path("a.asm.rescate")), QFile::permissions(path()));
    }
};

QTEST_MAIN(RescueCopyTest)
#include "RescueCopyTest.moc"
