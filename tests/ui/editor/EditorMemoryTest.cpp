// The editor where there is too little memory for what it is to do: it says so, and nothing is lost.

#include <QSignalSpy>
#include <QTest>
#include <new>
#include <utility>

#include "tests/support/MemoryLimit.h"
#include "tests/ui/editor/EditorFixture.h"
#include "ui/editor/SourceEdit.h"

using namespace tavinor;

namespace {

const QString memoryOut = QStringLiteral("Memoria insuficiente");

}  // namespace

class EditorMemoryTest : public QObject {
    Q_OBJECT

  private slots:
    void aSourceThatIsNotOpenedLeavesTheText() {
        EditorFixture f;
        QVERIFY(f.open(f.put("a.asm", "A\r\n")));
        f.texto()->insertPlainText("x");
        const QString other = f.put("b.asm", "B\r\n");
        {
            DialogAnswerer dialogs;
            dialogs.expectQuestion(f.saveQuestion(), f.saveButtons(), QMessageBox::No);
            dialogs.expectFileDialog(f.dialog("Cargar fichero .ASM"), other);
            dialogs.expectMessage(memoryOut);
            const test::MemoryLimit limit;
            f.action("Abrir")->trigger();
        }
        QCOMPARE(f.text(), QString("xA\n"));
        QCOMPARE(f.filename(), f.path("a.asm"));
        QCOMPARE(f.editor.windowTitle(), QString("Tavinor - a.asm"));
        DialogAnswerer dialogs;
        dialogs.expectQuestion(f.saveQuestion(), f.saveButtons(), QMessageBox::Yes);  // it has still changed
        QVERIFY(f.editor.close());
        QCOMPARE(f.get("a.asm"), QByteArray("xA\r\n\r\n"));
    }

    void theFirstSourceLeavesNoEditor() {
        EditorFixture f;
        const QString path = f.put("a.asm", "A\r\n");
        {
            const test::MemoryLimit limit;
            QVERIFY_EXCEPTION_THROWN(f.open(path), std::bad_alloc);  // the main window tells
        }
        QVERIFY(!f.editor.isVisible());
        QCOMPARE(f.filename(), QString());
        QVERIFY(f.open(path));
        QCOMPARE(f.text(), QString("A\n"));
    }

    void aLargeTextIsNotSaved() {
        EditorFixture f;
        QVERIFY(f.open(f.put("a.asm", "A\r\n")));
        f.texto()->setPlainText(QString(99, 'x').append('\n').repeated(11'000));
        {
            DialogAnswerer dialogs;
            dialogs.expectMessage(memoryOut);
            const test::MemoryLimit limit;
            f.action("guardar")->trigger();
        }
        QCOMPARE(f.get("a.asm"), QByteArray("A\r\n"));
        QCOMPARE(f.text().size(), 1'100'000);
        DialogAnswerer dialogs;
        dialogs.expectQuestion(f.saveQuestion(), f.saveButtons(), QMessageBox::Yes);
        QVERIFY(f.editor.close());
        QCOMPARE(f.get("a.asm").size(), 1'100'000 + 11'000 + 2);
    }

    void aSmallTextIsSavedAllTheSame() {
        EditorFixture f;
        QVERIFY(f.open(f.put("a.asm", "A\r\n")));
        f.texto()->insertPlainText("x");
        const test::MemoryLimit limit;
        f.action("guardar")->trigger();
        QCOMPARE(f.get("a.asm"), QByteArray("xA\r\n\r\n"));
        QVERIFY(f.editor.close());
    }

    /// It is told once, and the rest of the text comes later.
    void aTextThatIsComingInIsNotCutShort() {
        EditorFixture f;
        const QString text = QString("NOP\n").repeated(20'000);
        QVERIFY(f.open(f.put("a.asm", text.toLatin1())));
        auto* box = f.editor.findChild<SourceEdit*>();
        QTRY_VERIFY(!box->isFilling());
        QSignalSpy refused(box, &SourceEdit::refused);
        f.selectText(box->document()->characterCount() - 5, 3);
        box->setSourceInPlace(text);
        bool first = true;
        connect(box, &SourceEdit::touched, this, [&first] {
            if (std::exchange(first, false))
                throw std::bad_alloc();  // as anything that a piece is followed by
        });
        DialogAnswerer dialogs;
        dialogs.expectMessage(memoryOut);
        QTRY_VERIFY(!box->isFilling());
        QTRY_VERIFY(dialogs.allCame());
        QCOMPARE(refused.count(), 1);
        QVERIFY(f.text() == text);
    }
};

QTEST_MAIN(EditorMemoryTest)
#include "EditorMemoryTest.moc"
