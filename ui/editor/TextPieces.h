#pragma once

#include <QString>
#include <functional>

namespace tavinor {

/// A long text that goes into the text box by pieces, each of them small enough for Qt to take it before the
/// user notices.
class TextPieces {
  public:
    /// Lines that one piece has at most.
    static constexpr int mostLines = 16'000;
    /// Characters from which on a piece takes no further line.
    static constexpr qsizetype enough = qsizetype{512} * 1024;

    TextPieces() = default;
    /// The lines of `text` end in LF.
    explicit TextPieces(QString text) : text_(std::move(text)) {}

    [[nodiscard]] bool areAllTaken() const { return taken_ == text_.size(); }
    [[nodiscard]] qsizetype left() const { return text_.size() - taken_; }
    /// Whole lines, so that no two pieces share one.
    QString next();
    /// What is left will not be needed.
    void drop() { *this = {}; }
    /// Hands out what is left line by line, each with its LF, and takes nothing.
    void handOut(const std::function<void(const QString&)>& take) const;

  private:
    /// Where the line that begins at `start` ends, its LF included.
    [[nodiscard]] qsizetype lineEnd(qsizetype start) const;

    QString text_;
    qsizetype taken_ = 0;
};

}  // namespace tavinor
