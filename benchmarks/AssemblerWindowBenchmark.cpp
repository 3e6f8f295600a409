// The assembler's window: how long it takes to fill its panes, whether it paints meanwhile, and what it
// needs. `assembler_window_benchmark [LINES | FILE]`: 100,000 lines when nothing is given.

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>

#include "assembler/window/Ensamblador.h"
#include "benchmarks/Heartbeat.h"
#include "benchmarks/Sources.h"
#include "ui/common/Application.h"

using namespace tavinor;

namespace {

/// Counts the paints of a widget, and keeps the longest time between two.
class PaintWatcher : public QObject {
  public:
    explicit PaintWatcher(QWidget* painted) {
        sincePaint_.start();
        painted->installEventFilter(this);
    }
    [[nodiscard]] int paints() const { return paints_; }
    /// Until now, when nothing was painted since.
    [[nodiscard]] qint64 longestGap() const { return std::max(longestGap_, sincePaint_.elapsed()); }

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            ++paints_;
            longestGap_ = std::max(longestGap_, sincePaint_.restart());
        }
        return QObject::eventFilter(watched, event);
    }

  private:
    QElapsedTimer sincePaint_;
    qint64 longestGap_ = 0;
    int paints_ = 0;
};

/// The outcome is there, no box is in front, and the listing file has been written.
bool finished(const QWidget& window) {
    return QApplication::activeModalWidget() == &window &&
           window.findChild<QPushButton*>("cerrar")->isEnabled();
}

void dismissBox() {
    auto* box = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    if (box != nullptr && box->objectName() == QStringLiteral("messageBox")) box->accept();
}

void measure(const QString& source) {
    QElapsedTimer timer;
    timer.start();
    std::optional<benchmarks::Heartbeat> closing;
    {
        Ensamblador window(nullptr);
        PaintWatcher paints(window.findChild<QPlainTextEdit*>("filelst")->viewport());
        const benchmarks::Heartbeat heartbeat;
        QTimer poll;
        QObject::connect(&poll, &QTimer::timeout, &window, [&] {
            dismissBox();
            if (!finished(window)) return;
            std::printf("panes filled, files written  %7lld ms\n", static_cast<long long>(timer.elapsed()));
            std::printf("paints meanwhile             %7d, the longest time without one %lld ms\n",
                        paints.paints(), static_cast<long long>(paints.longestGap()));
            std::printf("longest without an event     %7lld ms\n",
                        static_cast<long long>(heartbeat.longestPause()));
            std::printf("memory                       %7ld MB, at most %ld MB\n",
                        benchmarks::statusMegabytes("VmRSS"), benchmarks::statusMegabytes("VmHWM"));
            poll.stop();
            timer.start();
            closing.emplace();
            window.findChild<QPushButton*>("cerrar")->click();
        });
        poll.start(1);
        window.assemble(source, source + ".HEX", source + ".LST");
    }
    std::printf("closed in                    %7lld ms, the longest time without an event %lld ms\n",
                static_cast<long long>(timer.elapsed()), static_cast<long long>(closing->longestPause()));
}

/// The file that the argument names, or one with as many lines.
QString sourceFile(const QString& argument, const QTemporaryDir& folder) {
    QString path = folder.filePath("programa.asm");
    if (QFileInfo::exists(argument)) {
        QFile::copy(argument, path);
        return path;
    }
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly)) std::abort();
    file.write(QByteArray::fromStdString(benchmarks::source(argument.toInt())));
    return path;
}

}  // namespace

int main(int argc, char* argv[]) {
    QApplication application(argc, argv);
    installSpanish(application);
    const QTemporaryDir folder;
    const QString argument = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral("100000");
    std::printf("assembler's window           %s%s\n", qPrintable(argument),
                QFileInfo::exists(argument) ? "" : " lines");
    measure(sourceFile(argument, folder));
    return 0;
}
