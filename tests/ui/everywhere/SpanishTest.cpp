// The program speaks Spanish, whatever the desktop's language is: this runs under several.

#include <QDir>
#include <QFileDialog>
#include <QFileSystemModel>
#include <QLocale>
#include <QTest>
#include <QTreeView>

#include "tests/ui/everywhere/EnglishTexts.h"
#include "tests/ui/everywhere/Scenes.h"
#include "tests/ui/everywhere/ShownTexts.h"
#include "ui/common/Application.h"

using namespace tavinor;

namespace {

const QString aboutButton = "QPushButton \"OK\", caption";  // reads "OK" in any language

}  // namespace

class SpanishTest : public QObject {
    Q_OBJECT

  private:
    EnglishTexts english_;

  private slots:
    void initTestCase() {
        QCOMPARE(QLocale::system().name(), qEnvironmentVariable("TAVINOR_TEST_SYSTEM_LOCALE"));
        installSpanish(*qApp);
    }

    void knowsEnglish_data() {
        QTest::addColumn<QString>("text");
        for (const char* text : {"Cancel", "&Paste", "File Folder", "Date Modified", "Shift+Ctrl+Z",
                                 "&Redo\tCtrl+Shift+Z", "3 items", "<b>Nothing</b>", "Parent Directory"}) {
            QTest::newRow(text) << text;
        }
    }
    void knowsEnglish() {
        QFETCH(const QString, text);
        QVERIFY(!english_.in(text).isEmpty());
    }

    void knowsSpanish_data() {
        QTest::addColumn<QString>("text");
        for (const char* text :
             {"Cancelar", "&Sí", "RESET", "E&jecutar", "Ctrl+Mayús+Z", "Error en lectura"}) {
            QTest::newRow(text) << text;
        }
    }
    void knowsSpanish() {
        QFETCH(const QString, text);
        QCOMPARE(english_.in(text), QStringList());
    }

    void everythingIsSpanish_data() { addSceneRows(); }
    void everythingIsSpanish() {
        int looks = 0;
        QStringList complaints;
        currentScene().show([&](QWidget& window) {
            ++looks;
            const QList<ShownText> texts = shownTexts(window);
            QVERIFY(!texts.isEmpty());
            for (const auto& [where, text] : texts) {
                if (where == aboutButton) continue;
                const QStringList found = english_.in(text);
                if (found.isEmpty()) continue;
                complaints.append(QStringLiteral("%1: \"%2\" (%3)").arg(where, text, found.join(", ")));
            }
        });
        QCOMPARE(looks, 1);
        QVERIFY2(complaints.isEmpty(), qPrintable(complaints.join("\n")));
    }

    /// Dates and sizes have no words that could give them away.
    void datesAndSizesAreSpanish() {
        const QLocale spanish(QLocale::Spanish, QLocale::Spain);
        int files = 0;
        const auto check = [&](QWidget& window) {
            const auto* view = window.findChild<QTreeView*>("treeView");
            const auto* dialog = qobject_cast<QFileDialog*>(&window);
            for (int row = 0; row < view->model()->rowCount(view->rootIndex()); ++row) {
                const auto cell = [&](int column) {
                    return view->model()->index(row, column, view->rootIndex()).data().toString();
                };
                const QFileInfo file(dialog->directory().filePath(cell(0)));
                QCOMPARE(cell(3), spanish.toString(file.lastModified(), QLocale::ShortFormat));
                if (file.isFile()) QCOMPARE(cell(1), spanish.formattedDataSize(file.size()));
                ++files;
            }
        };
        for (const Scene& scene : scenes()) {
            if (QByteArray(scene.name) == "file dialog, open, details") scene.show(check);
        }
        QCOMPARE(files, 4);
    }
};

QTEST_MAIN(SpanishTest)
#include "SpanishTest.moc"
