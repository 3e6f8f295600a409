// The editor where there is no memory: each allocation of the program's own is refused once while it reads,
// saves and closes.

#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QTest>
#include <cstdio>
#include <filesystem>
#include <new>

#include "tests/memory/User.h"
#include "tests/ui/editor/EditorFixture.h"
#include "ui/common/FileDrops.h"
#include "ui/editor/RescueCopy.h"

using namespace tavinor;
using test::FailingAllocation;
using test::refuseEach;
using test::User;

class EditorOutOfMemoryTest : public QObject {
    Q_OBJECT

  private:
    static QStringList files(const EditorFixture& f) {
        return QDir(f.folder.path()).entryList(QDir::Files | QDir::Hidden);
    }
    static void drop(EditorFixture& f, const QString& path, const User& user) {
        auto* drops = f.editor.findChild<FileDrops*>();
        const QString kind = QStringLiteral("asm");
        user.start();
        emit drops->dropped(path, kind);
    }
    static bool refuse(int number, const User& user) {
        qWarning() << number << user.boxes;
        return false;
    }

  private slots:
    /// A text that is not the file's whole one has no name under which it could replace it.
    void opening() {
        EditorFixture f;
        const QString old = f.put("a.asm", "A\r\n");
        const QString path = f.put("b.asm", "uno\r\ndos\r\n");
        QVERIFY(f.open(old));
        const int refused = refuseEach([&](int number) {
            drop(f, old, User(-1));
            const User user(number);
            drop(f, path, user);
            const bool told = user.wasToldOfMemory();
            const bool whole = f.filename() == path && f.text() == "uno\ndos\n";
            const bool kept = f.filename() == old && f.text() == "A\n";
            const bool good = told ? whole || kept || f.filename().isEmpty() : whole && user.boxes.isEmpty();
            return good || refuse(number, user);
        });
        QVERIFY2(refused >= 3, qPrintable(QString::number(refused)));
        QVERIFY(f.editor.close());  // nothing counts as changed
        QCOMPARE(f.get("a.asm"), QByteArray("A\r\n"));
        QCOMPARE(f.get("b.asm"), QByteArray("uno\r\ndos\r\n"));
    }

    void saving_data() {
        QTest::addColumn<bool>("otherName");
        QTest::newRow("beside the old file") << false;
        QTest::newRow("in place") << true;
    }

    void saving() {
        QFETCH(bool, otherName);
        EditorFixture f;
        const QString path = f.put("a.asm", "A\r\n");
        if (otherName) std::filesystem::create_hard_link(path.toStdString(), f.path("b.asm").toStdString());
        QVERIFY(f.open(path));
        const QStringList names = files(f);
        QAction* save = f.action("guardar");
        const int refused = refuseEach([&](int number) {
            f.texto()->insertPlainText("x");
            const QString text = f.text();
            const QByteArray before = f.get("a.asm");
            const QByteArray after = QString(text).replace("\n", "\r\n").toLatin1() + "\r\n";
            const User user(number);
            user.start();
            save->trigger();
            const bool told = user.wasToldOfMemory();
            const QByteArray now = f.get("a.asm");
            const bool whole = now == after || (told && now == before);
            const bool good =
                whole && f.text() == text && files(f) == names && (told || user.boxes.isEmpty());
            if (!good) return refuse(number, user);
            save->trigger();
            return f.get("a.asm") == after || refuse(number, user);
        });
        QVERIFY2(refused >= 3, qPrintable(QString::number(refused)));
        QVERIFY(f.editor.close());
    }

    /// Yes to the question whether to save: the editor closes when it has saved, and not before.
    void closing() {
        EditorFixture f;
        const QString path = f.put("a.asm", "A\r\n");
        const int refused = refuseEach([&](int number) {
            f.put("a.asm", "A\r\n");
            f.editor.openDropped(path, &f.principal);
            f.texto()->insertPlainText("x");
            const User user(number);
            const bool closed = f.editor.close();
            const bool told = user.wasToldOfMemory();
            const bool saved = f.get("a.asm") == "xA\r\n\r\n";
            const bool kept = f.get("a.asm") == "A\r\n" && f.text() == "xA\n" && f.filename() == path;
            const bool good = closed ? saved : told && (kept || saved);
            if (!closed) f.action("guardar")->trigger();
            f.editor.close();
            return (good && f.get("a.asm") == "xA\r\n\r\n") || refuse(number, user);
        });
        QVERIFY2(refused >= 3, qPrintable(QString::number(refused)));
    }

    /// A file that has changed on disk is not read again where there is no memory, and nothing is said.
    void readingAgain() {
        EditorFixture f;
        const QString path = f.put("a.asm", "A\r\n");
        QVERIFY(f.open(path));
        const int refused = refuseEach([&](int number) {
            const QString before = f.text();
            f.put("a.asm", "; " + QByteArray::number(number) + "\r\n");
            const User user(number);
            QEvent activate(QEvent::WindowActivate);
            user.start();
            QApplication::sendEvent(&f.editor, &activate);
            const bool told = user.wasToldOfMemory();
            const bool good = f.text() == before || f.text() == "; " + QString::number(number) + "\n";
            return (good && !told && user.boxes.isEmpty() && f.filename() == path) || refuse(number, user);
        });
        QVERIFY2(refused >= 3, qPrintable(QString::number(refused)));
    }

    /// What has not come to the clipboard stays in the text.
    void cuttingAndCopying_data() {
        QTest::addColumn<QString>("command");
        QTest::newRow("cut") << "Cortar";
        QTest::newRow("copy") << "Copiar";
    }

    void cuttingAndCopying() {
        QFETCH(QString, command);
        EditorFixture f;
        QVERIFY(f.open(f.put("a.asm", "A\r\n")));
        f.texto()->setPlainText("uno\n");
        const int refused = refuseEach([&](int number) {
            QApplication::clipboard()->setText("before");
            f.selectText(0, 3);
            const User user(number);
            user.start();
            f.action(command.toLatin1().constData())->trigger();
            QCoreApplication::processEvents();  // the message
            const bool told = user.wasToldOfMemory();
            const QString clipboard = QApplication::clipboard()->text();
            const bool taken = clipboard == "uno" && f.text() == (command == "Cortar" ? "\n" : "uno\n");
            const bool kept = clipboard == "before" && f.text() == "uno\n";
            if (taken && command == "Cortar") f.texto()->undo();
            return (told ? kept : taken && user.boxes.isEmpty()) || refuse(number, user);
        });
        QVERIFY2(refused >= 1, qPrintable(QString::number(refused)));
        f.discard();
    }

    void pasting() {
        EditorFixture f;
        QVERIFY(f.open(f.put("a.asm", "A\r\n")));
        const QString much = QString("NOP\n").repeated(25'000);
        QApplication::clipboard()->setText(much);
        const int refused = refuseEach([&](int number) {
            const User user(number);
            user.start();
            f.action("Pegar")->trigger();
            QCoreApplication::processEvents();
            const bool told = user.wasToldOfMemory();
            const bool good = told ? f.text() == "A\n" : f.text() == much + "A\n" && user.boxes.isEmpty();
            while (f.texto()->document()->isUndoAvailable()) f.texto()->document()->undo();
            return good || refuse(number, user);
        });
        QVERIFY2(refused >= 3, qPrintable(QString::number(refused)));
        f.discard();
    }

    void rescuing() {
        EditorFixture f;
        const QString path = f.put("a.asm", "A\r\n");
        const RescueCopy copy(path);
        const RescueCopy::Text text = [](const auto& take) { take(QStringLiteral("nuevo\n")); };
        const int refused = refuseEach([&](int number) {
            f.put("a.asm.rescate", "old");
            bool written = false;
            FailingAllocation::arm(number);
            try {
                written = copy.write(text, TextEncoding::utf8);
            } catch (const std::bad_alloc&) {
                // The program is ending anyway.
            }
            FailingAllocation::disarm();
            const bool whole = f.get("a.asm.rescate") == (written ? "nuevo\r\n" : "old");
            return whole && files(f) == QStringList({"a.asm", "a.asm.rescate"});
        });
        QVERIFY2(refused >= 3, qPrintable(QString::number(refused)));
    }
};

QTEST_MAIN(EditorOutOfMemoryTest)
#include "EditorOutOfMemoryTest.moc"
