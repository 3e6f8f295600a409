#include "ui/editor/KnownContents.h"

#include <QDateTime>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace tavinor;

class KnownContentsTest : public QObject {
    Q_OBJECT

  private:
    QTemporaryDir folder_;

    [[nodiscard]] QString path() const { return folder_.filePath("a.asm"); }
    void put(const QByteArray& bytes) const {
        QFile file(path());
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) qFatal("cannot write");
    }
    void setTime(const QDateTime& time) const {
        QFile file(path());
        if (!file.open(QIODevice::ReadWrite) || !file.setFileTime(time, QFileDevice::FileModificationTime)) {
            qFatal("cannot set a time");
        }
    }

  private slots:
    void cleanup() { QFile::remove(path()); }

    void comparesContents() {
        put("uno");
        KnownContents known;
        known.note(path());
        QVERIFY(!known.differFrom(path()));
        put("dos");
        QVERIFY(known.differFrom(path()));
        put("unos");
        QVERIFY(known.differFrom(path()));
        put("uno");
        QVERIFY(!known.differFrom(path()));
    }

    void timesSayNothing() {
        put("uno");
        const QDateTime time = QDateTime::currentDateTime().addDays(-1);
        setTime(time);
        KnownContents known;
        known.note(path());
        setTime(time.addSecs(60));
        QVERIFY(!known.differFrom(path()));
        put("dos");
        setTime(time);
        QVERIFY(known.differFrom(path()));
    }

    void knowsWhatWasWritten() {
        KnownContents known;
        known.noteWritten("uno");
        put("uno");
        QVERIFY(!known.differFrom(path()));
        put("dos");
        QVERIFY(known.differFrom(path()));
    }

    void aFileThatHasGoneIsNoLoss() {
        put("uno");
        KnownContents known;
        known.note(path());
        QVERIFY(QFile::remove(path()));
        QVERIFY(!known.differFrom(path()));
        QVERIFY(!KnownContents().differFrom(folder_.path()));  // a folder
    }

    void aFileThatHasComeIs() {
        KnownContents known;
        known.note(path());
        QVERIFY(!known.differFrom(path()));
        put("");
        QVERIFY(known.differFrom(path()));
    }

    void longFiles() {
        QByteArray bytes(1'000'000, 'x');
        put(bytes);
        KnownContents known;
        known.note(path());
        QVERIFY(!known.differFrom(path()));
        bytes.back() = 'y';
        put(bytes);
        QVERIFY(known.differFrom(path()));
    }

    /// Its size tells enough: the user does not wait until all of it has been read.
    void aFileThatIsLargerThanAnySource() {
        put("uno");
        KnownContents known;
        known.note(path());
        QVERIFY(QFile::resize(path(), qint64{1} << 40));
        QVERIFY(known.differFrom(path()));
        known.note(path());
        QVERIFY(!known.differFrom(path()));
    }
};

QTEST_MAIN(KnownContentsTest)
#include "KnownContentsTest.moc"
