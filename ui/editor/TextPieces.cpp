#include "ui/editor/TextPieces.h"

#include <utility>

namespace tavinor {

QString TextPieces::next() {
    qsizetype end = taken_;
    for (int lines = 0; end < text_.size() && end - taken_ < enough && lines < mostLines; ++lines) {
        end = lineEnd(end);
    }
    return text_.mid(std::exchange(taken_, end), end - taken_);
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
