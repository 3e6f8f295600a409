// A small window in a corner of the screen, above all others, from which the files named on the command line
// can be dragged, as from a file manager. Says "ready" when it can be seen, "dragging" when a drag
// begins, "allowed" where it may be dropped, and then how it has ended.

#include <QApplication>
#include <QDrag>
#include <QLabel>
#include <QMimeData>
#include <QMouseEvent>
#include <QScreen>
#include <QTextStream>
#include <QUrl>

namespace {

void say(const char* what) {
    QTextStream(stdout) << what << Qt::endl;
}

class Source : public QLabel {
  public:
    Source() : QLabel(QStringLiteral("source")) {
        setWindowFlags(Qt::WindowStaysOnTopHint | Qt::X11BypassWindowManagerHint);
        setGeometry(QRect(screen()->size().width() - 40, screen()->size().height() - 40, 40, 40));
    }

  protected:
    void paintEvent(QPaintEvent* event) override {
        QLabel::paintEvent(event);
        if (!ready_) say("ready");
        ready_ = true;
    }

    void mousePressEvent(QMouseEvent* event) override { event->accept(); }

    void mouseMoveEvent(QMouseEvent* event) override {
        if (!event->buttons().testFlag(Qt::LeftButton)) return;
        auto* files = new QMimeData;
        QList<QUrl> urls;
        for (const QString& path : QApplication::arguments().mid(1)) urls.append(QUrl::fromLocalFile(path));
        files->setUrls(urls);
        auto* drag = new QDrag(this);
        drag->setMimeData(files);
        connect(drag, &QDrag::actionChanged, drag, [](Qt::DropAction action) {
            if (action != Qt::IgnoreAction) say("allowed");
        });
        say("dragging");
        const Qt::DropAction end = drag->exec(Qt::CopyAction | Qt::MoveAction | Qt::LinkAction);
        say(end == Qt::CopyAction ? "copied" : end == Qt::IgnoreAction ? "refused" : "otherwise");
    }

  private:
    bool ready_ = false;
};

}  // namespace

int main(int argc, char* argv[]) {
    const QApplication application(argc, argv);
    Source source;
    source.show();
    return QApplication::exec();
}
