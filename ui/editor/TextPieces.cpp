#include "ui/editor/TextPieces.h"

namespace tavinor {

QString TextPieces::next() {
    qsizetype end = taken_;
    for (int lines = 0; end < text_.size() && end - taken_ < enough && lines < mostLines; ++lines) {
        end = lineEnd(end);
    }
    QString piece = text_.mid(taken_, end - taken_);
    taken_ = end;  // not before: without memory for the piece, it is the next one again
    return piece;
}

void TextPieces::handOut(const std::function<void(const QString&)>& take) const {
    for (qsizetype start = taken_; start < text_.size();) {
        const qsizetype end = lineEnd(start);
        take(text_.mid(start, end - start));
        start = end;
    }
}

qsizetype TextPieces::lineEnd(qsizetype start) const {
    const qsizetype end = text_.indexOf('\n', start);
    return end < 0 ? text_.size() : end + 1;
}

}  // namespace tavinor
