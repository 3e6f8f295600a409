#include "assembler/window/PathLabel.h"

#include <QPainter>
#include <QStyle>

namespace tavinor {

PathLabel::PathLabel(QWidget* parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

void PathLabel::showPath(const QString& path) {
    setText(path);
    // As rich text, which is broken into lines, with a place to break it after every folder.
    const QString breakable = path.toHtmlEscaped().replace('/', "/&#8203;").replace('\\', "\\&#8203;");
    setToolTip("<span>" + breakable + "</span>");
}

void PathLabel::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const QRect room = contentsRect();
    style()->drawItemText(&painter, room, static_cast<int>(alignment()), palette(), isEnabled(),
                          fontMetrics().elidedText(text(), Qt::ElideMiddle, room.width()), foregroundRole());
}

}  // namespace tavinor
