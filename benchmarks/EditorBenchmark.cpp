// The editor with a file of 10 MB: how long until its beginning is in view and until all of it is there, how
// long the window does not answer meanwhile, and what a key costs. Then the same for changes of two million
// lines at once.

#include <QApplication>
#include <QClipboard>
#include <QDialog>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "benchmarks/Heartbeat.h"
#include "ui/common/Application.h"
#include "ui/editor/Editor.h"
#include "ui/editor/SourceEdit.h"

using namespace tavinor;

namespace {

constexpr int keys = 200;

/// Types `path` into the file dialog that comes, and starts the timer as it is accepted.
void answerFileDialog(const QString& path, QElapsedTimer& timer) {
    QTimer::singleShot(300, [path, &timer] {
        auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        if (dialog == nullptr) std::abort();
        dialog->findChild<QLineEdit*>("fileNameEdit")->setText(path);
        timer.start();
        static_cast<QDialog*>(dialog)->accept();
    });
}

/// The example programs one after the other, again and again: lines as long as real ones.
QString sourceOf10Megabytes(const QTemporaryDir& folder) {
    QByteArray examples;
    for (const QFileInfo& info : QDir(TAVINOR_EXAMPLES).entryInfoList({"*.asm"})) {
        QFile example(info.filePath());
        if (!example.open(QIODevice::ReadOnly)) std::abort();
        examples += example.readAll();
    }
    QString path = folder.filePath("programa.asm");
    QFile file(path);
    if (examples.isEmpty() || !file.open(QIODevice::WriteOnly)) std::abort();
    while (file.size() < 10'000'000) file.write(examples);
    return path;
}

/// Does something with the text and says how long the window took, and how long it did not answer meanwhile.
template <typename Action>
void time(const char* what, const Action& action) {
    QElapsedTimer timer;
    timer.start();
    const benchmarks::Heartbeat heartbeat;
    action();
    QCoreApplication::processEvents();
    std::printf("%-21s %6lld ms, the longest time without an event %lld ms, memory at most %ld MB\n", what,
                static_cast<long long>(timer.elapsed()), static_cast<long long>(heartbeat.longestPause()),
                benchmarks::statusMegabytes("VmHWM"));
}

/// As many lines, and as many characters, as the editor takes.
void changeTwoMillionLines(SourceEdit* text) {
    text->setSource({});
    QApplication::clipboard()->setText(QString(32, 'x').append('\n').repeated(2'000'000));
    const auto press = [text](Qt::Key key, Qt::KeyboardModifiers modifiers) {
        return [=] { QTest::keyClick(text, key, modifiers); };
    };
    time("pasting 2,000,000", [text] { text->paste(); });
    time("undoing it", press(Qt::Key_Z, Qt::ControlModifier));
    time("redoing it", press(Qt::Key_Y, Qt::ControlModifier));
    text->selectAll();
    time("deleting it", press(Qt::Key_Delete, Qt::NoModifier));
    time("undoing that", press(Qt::Key_Z, Qt::ControlModifier));
}

}  // namespace

int main(int argc, char* argv[]) {
    QApplication application(argc, argv);
    installSpanish(application);
    const QTemporaryDir folder;
    const QString path = sourceOf10Megabytes(folder);
    Editor editor;
    QElapsedTimer timer;
    answerFileDialog(path, timer);
    editor.openFromPrincipal(nullptr);
    QCoreApplication::processEvents();
    const auto inView = static_cast<long long>(timer.elapsed());
    auto* text = editor.findChild<SourceEdit*>("texto");
    qint64 longestTurn = 0;
    while (text->isFilling()) {
        const qint64 start = timer.elapsed();
        QCoreApplication::processEvents();
        longestTurn = std::max(longestTurn, timer.elapsed() - start);
    }
    std::printf("opening %.1f MB       %6lld ms in view, %lld ms all of its %d lines, longest turn %lld ms\n",
                static_cast<double>(QFile(path).size()) / 1e6, inView,
                static_cast<long long>(timer.elapsed()), text->blockCount(),
                static_cast<long long>(longestTurn));
    timer.start();
    for (int i = 0; i < keys; ++i) {
        QTest::keyClick(text, Qt::Key_A);
        QCoreApplication::processEvents();
    }
    std::printf("a key                 %6.2f ms with its painting\n",
                static_cast<double>(timer.elapsed()) / keys);
    changeTwoMillionLines(text);
    std::fflush(stdout);
    std::_Exit(0);  // the text has changed: closing would ask
}
