#include <QAbstractItemView>
#include <QComboBox>
#include <QDateTime>
#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QMimeData>
#include <QPushButton>
#include <QTest>
#include <QUrl>
#include <utility>

#include "tests/support/Dragging.h"
#include "tests/ui/common/FileDialogFixture.h"

using namespace tavinor;

/// What the file dialog makes of a name that is typed.
class FileNamesTest : public QObject {
    Q_OBJECT

  private slots:
    /// Typed letter by letter, and Enter.
    void aPatternShowsWhatFits_data() {
        QTest::addColumn<QString>("pattern");
        QTest::addColumn<QStringList>("fitting");
        QTest::newRow("star") << "*.lst" << QStringList{"a.LST"};
        QTest::newRow("question mark") << "?.asm" << QStringList{"a.asm", "b.asm"};
        QTest::newRow("everything") << "*.*" << QStringList{"a.LST", "a.asm", "b.asm", "plain"};
        QTest::newRow("nothing") << "*.no" << QStringList{};
    }
    void aPatternShowsWhatFits() {
        QFETCH(const QString, pattern);
        QFETCH(const QStringList, fitting);
        FileDialogFixture f("a.asm");
        for (const char* name : {"b.asm", "a.LST", "plain"}) f.put(name);
        for (const bool saving : {false, true}) {
            const auto chosen = f.ask(saving, {}, [&](QFileDialog& dialog) {
                typeName(dialog, pattern);
                QVERIFY(dialog.isVisible());
                QCOMPARE(nameField(dialog)->text(), pattern);
                QTRY_COMPARE(namesShown(dialog), fitting);
            });
            QVERIFY(!chosen);
        }
        QCOMPARE(QDir(f.path({})).entryList(QDir::Files).size(), 4);
    }

    void thePresetPatternIsNoNameEither() {
        FileDialogFixture f("a.asm");
        f.put("b.txt");
        for (const bool saving : {false, true}) {
            const auto chosen = f.ask(saving, "*.asm", [&](QFileDialog& dialog) {
                pressKey(&dialog, Qt::Key_Return);
                QVERIFY(dialog.isVisible());
                QTRY_COMPARE(namesShown(dialog), QStringList{"a.asm"});
            });
            QVERIFY(!chosen);
        }
    }

    void aPatternInAnotherFolder() {
        FileDialogFixture f("a.asm");
        QVERIFY(QDir(f.path({})).mkdir("sub"));
        f.put("sub/c.asm");
        f.put("sub/d.txt");
        const auto chosen = f.ask(false, {}, [&](QFileDialog& dialog) {
            typeName(dialog, "sub/*.asm");
            QCOMPARE(dialog.directory().dirName(), QString("sub"));
            QTRY_COMPARE(namesShown(dialog), QStringList{"c.asm"});
            typeName(dialog, "c.asm");
        });
        QCOMPARE(chosen, f.path("sub/c.asm"));
    }

    void aPatternInAFolderThatIsNotThereChangesNothing() {
        FileDialogFixture f("a.asm");
        f.put("b.txt");
        const QStringList all{"a.asm", "b.txt"};
        for (const QString pattern : {"nada/*.asm", "a.asm/*.asm", "/nada/nada/?"}) {
            for (const bool saving : {false, true}) {
                const auto chosen = f.ask(saving, {}, [&](QFileDialog& dialog) {
                    QTRY_COMPARE(namesShown(dialog), all);
                    typeName(dialog, pattern);
                    QVERIFY(dialog.isVisible());
                    QCOMPARE(nameField(dialog)->text(), pattern);
                    QCOMPARE(nameField(dialog)->selectedText(), pattern);  // ready to be typed again
                    QCOMPARE(dialog.directory().path(), f.path({}));
                    QTest::qWait(50);  // the files are filtered in the background
                    QCOMPARE(namesShown(dialog), all);
                });
                QVERIFY(!chosen);
            }
        }
    }

    /// Qt takes quotes for a list of names.
    void quotesBelongToTheName() {
        FileDialogFixture f("b");
        for (const QString name : {"x\"b\"c.asm", "\"b\"", "a\".asm", "\"", "\"b\" \"b\""}) {
            for (const bool saving : {false, true}) {
                const auto chosen = f.ask(saving, {}, [&](QFileDialog& dialog) { typeName(dialog, name); });
                QVERIFY2(chosen.has_value(), qPrintable(name));
                QVERIFY2(chosen->startsWith(f.path(name)), qPrintable(*chosen));
            }
        }
    }

    void quotesInANameThatIsClicked() {
        FileDialogFixture f("b");
        f.put("x\"b\"c.asm");
        const auto chosen = f.ask(false, {}, [&](QFileDialog& dialog) {
            auto* files = dialog.findChild<QTreeView*>("treeView");
            QTRY_COMPARE(namesShown(dialog).size(), 2);
            const QModelIndex index = files->model()->index(1, 0, files->rootIndex());
            QCOMPARE(index.data().toString(), QString("x\"b\"c.asm"));
            QTest::mouseClick(files->viewport(), Qt::LeftButton, {}, files->visualRect(index).center());
            QCOMPARE(nameField(dialog)->text(), QString("x\"b\"c.asm"));
            pressKey(&dialog, Qt::Key_Return);
        });
        QCOMPARE(chosen, f.path("x\"b\"c.asm"));
    }

    void aNameWithoutExtensionIsCompleted() {
        FileDialogFixture f("with.asm");
        f.put("both");
        f.put("both.asm");
        f.put("large.ASM");
        f.put("mixed.Asm");
        const QList<std::pair<QString, QString>> names{
            {"new", "new.asm"},     {"with", "with.asm"},   {"both", "both"},       {"large", "large.ASM"},
            {"mixed", "mixed.Asm"}, {"new.txt", "new.txt"}, {"new.asm", "new.asm"}, {"dot.", "dot."}};
        for (const bool saving : {false, true}) {
            for (const auto& [typed, meant] : names) {
                const auto chosen = f.ask(saving, {}, [&](QFileDialog& dialog) { typeName(dialog, typed); });
                QCOMPARE(chosen, f.path(meant));
            }
        }
    }

    void aPathFromTheUsersOwnFolder() {
        FileDialogFixture f("a.asm");
        const auto chosen = f.ask(true, {}, [](QFileDialog& dialog) { typeName(dialog, "~/b.asm"); });
        QCOMPARE(chosen, QDir::homePath() + "/b.asm");
    }

    void theNewestIsMeant() {
        const QStringList names{"old.asm", "old.ASM", "old.Asm", "old.aSm"};
        FileDialogFixture f("new.asm");
        const QDateTime now = QDateTime::currentDateTime();
        for (const QString& name : names) f.put(name);
        for (const QString& newest : names) {
            for (const QString& name : names) f.setTime(name, now.addSecs(name == newest ? -30 : -60));
            const auto chosen = f.ask(false, {}, [&](QFileDialog& dialog) { typeName(dialog, "old"); });
            QCOMPARE(chosen, f.path(newest));
        }
    }

    void aFolderIsEntered() {
        FileDialogFixture f("a.asm");
        QVERIFY(QDir(f.path({})).mkdir("sub"));
        f.put("sub/c.asm");
        const QString home = QDir::homePath();
        for (const bool saving : {false, true}) {
            const auto chosen = f.ask(saving, "*.asm", [&](QFileDialog& dialog) {
                typeName(dialog, "sub");
                QCOMPARE(dialog.directory().path(), f.path("sub"));
                QCOMPARE(nameField(dialog)->text(), QString());
                typeName(dialog, "..");
                QCOMPARE(dialog.directory().path(), f.path({}));
                typeName(dialog, "//");
                QCOMPARE(dialog.directory().path(), QString("/"));
                typeName(dialog, "~");
                QCOMPARE(dialog.directory().path(), home);
                typeName(dialog, f.path("sub") + '/');
                QCOMPARE(nameField(dialog)->text(), QString());
                pressKey(&dialog, Qt::Key_Return);  // nothing is no name
                typeName(dialog, "c.asm");
            });
            QCOMPARE(chosen, f.path("sub/c.asm"));
        }
    }

    /// The name is gone, so the button cannot be pressed, and Qt would hand the focus on to "Cancelar".
    void aFolderEnteredByTheButtonLeavesTheFocusToTheName() {
        FileDialogFixture f("a.asm");
        QVERIFY(QDir(f.path({})).mkdir("sub"));
        f.ask(false, {}, [&](QFileDialog& dialog) {
            typeWithoutEnter(dialog, "sub");
            hideListOfNames();
            auto* open = dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Open);
            open->setFocus();
            pressKey(&dialog, Qt::Key_Space);
            QCOMPARE(dialog.directory().path(), f.path("sub"));
            QCOMPARE(QApplication::focusWidget(), nameField(dialog));
            pressKey(&dialog, Qt::Key_Escape);
        });
    }

    /// The list of the names that begin with what was typed would take the next click.
    void theListOfNamesClosesWithEnter() {
        FileDialogFixture f("a.asm");
        QVERIFY(QDir(f.path({})).mkdir("sub"));
        f.put("sub/c.asm");
        f.ask(false, {}, [&](QFileDialog& dialog) {
            QTRY_COMPARE(namesShown(dialog), QStringList{"a.asm"});
            typeWithoutEnter(dialog, "sub");
            QTRY_VERIFY(QApplication::activePopupWidget() != nullptr);
            pressKey(QApplication::activePopupWidget(), Qt::Key_Return);
            QCOMPARE(dialog.directory().path(), f.path("sub"));
            QCOMPARE(nameField(dialog)->text(), QString());
            QTRY_COMPARE(namesShown(dialog), QStringList{"c.asm"});
            QVERIFY(QApplication::activePopupWidget() == nullptr);
        });
    }

    void aFileDroppedOnTheNameIsChosen() {
        FileDialogFixture f("a.asm");
        QVERIFY(QDir(f.path({})).mkdir("sub"));
        f.put("sub/mi programa.asm");
        for (const bool saving : {false, true}) {
            const auto chosen = f.ask(saving, "*.asm", [&](QFileDialog& dialog) {
                QMimeData dragged;
                dragged.setUrls({QUrl::fromLocalFile(f.path("sub/mi programa.asm"))});
                dragged.setText(dragged.urls().first().toString());  // as file managers do
                const QPoint place = nameField(dialog)->mapTo(&dialog, nameField(dialog)->rect().center());
                QCOMPARE(dropOn(&dialog, place, dragged, Qt::MoveAction), DragEnd::refused);
                QCOMPARE(dropOn(&dialog, place, dragged), DragEnd::copied);
                QCOMPARE(dialog.directory().path(), f.path("sub"));
                QCOMPARE(nameField(dialog)->text(), QString("mi programa.asm"));
                pressKey(&dialog, Qt::Key_Return);
            });
            QCOMPARE(chosen, f.path("sub/mi programa.asm"));
        }
    }

    /// Qt would move or copy it into the folder that is shown.
    void aFileDroppedOnTheListStaysWhereItIs() {
        FileDialogFixture f("a.asm");
        QVERIFY(QDir(f.path({})).mkdir("sub"));
        f.put("sub/b.asm");
        for (const auto& [mode, name] :
             {std::pair(QFileDialog::List, "listView"), {QFileDialog::Detail, "treeView"}}) {
            f.ask(false, "*.asm", [&](QFileDialog& dialog) {
                dialog.setViewMode(mode);
                QTRY_VERIFY(namesShown(dialog).contains("a.asm"));
                const auto* list = dialog.findChild<QAbstractItemView*>(name);
                const QPoint place = list->mapTo(&dialog, list->rect().center());
                QMimeData dragged;
                dragged.setUrls({QUrl::fromLocalFile(f.path("sub/b.asm"))});
                QCOMPARE(dropOn(&dialog, place, dragged), DragEnd::refused);
                QVERIFY(QFile::exists(f.path("sub/b.asm")) && !QFile::exists(f.path("b.asm")));
                QVERIFY(!list->dragEnabled());
            });
        }
    }

    void otherThingsDroppedOnTheName() {
        FileDialogFixture f("a.asm");
        QVERIFY(QDir(f.path({})).mkdir("sub"));
        f.ask(false, {}, [&](QFileDialog& dialog) {
            const QPoint place = nameField(dialog)->mapTo(&dialog, nameField(dialog)->rect().center());
            QMimeData elsewhere;
            elsewhere.setUrls({QUrl("sftp://example.org/b.asm")});
            QCOMPARE(dropOn(&dialog, place, elsewhere), DragEnd::refused);
            const DraggedFiles two({f.path("a.asm"), f.path("sub")});
            QCOMPARE(dropOn(&dialog, place, two), DragEnd::refused);
            QCOMPARE(nameField(dialog)->text(), QString());
            QVERIFY(dropOn(&dialog, place, DraggedText("b.asm")) != DragEnd::refused);
            QCOMPARE(nameField(dialog)->text(), QString("b.asm"));
            QCOMPARE(dropOn(&dialog, place, DraggedFiles({f.path("sub")})), DragEnd::copied);
            QCOMPARE(dialog.directory().path(), f.path("sub"));
            QCOMPARE(nameField(dialog)->text(), QString());
        });
    }

    void anotherKindOfFilesLeavesTheName() {
        FileDialogFixture f("a.asm");
        const auto chosen = f.ask(true, {}, [&](QFileDialog& dialog) {
            auto* kinds = dialog.findChild<QComboBox*>("fileTypeCombo");
            typeWithoutEnter(dialog, "prog.asm");
            hideListOfNames();
            kinds->setFocus();
            pressKey(kinds, Qt::Key_Down);
            QCOMPARE(kinds->currentIndex(), 1);
            QCOMPARE(nameField(dialog)->text(), QString("prog.asm"));
            QTRY_COMPARE(namesShown(dialog), QStringList{});
            pressKey(kinds, Qt::Key_Up);
            QTRY_COMPARE(namesShown(dialog), QStringList{"a.asm"});
            QCOMPARE(nameField(dialog)->text(), QString("prog.asm"));
            pressKey(&dialog, Qt::Key_Return);
        });
        QCOMPARE(chosen, f.path("prog.asm"));
    }
};

QTEST_MAIN(FileNamesTest)
#include "FileNamesTest.moc"
