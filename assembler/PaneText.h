#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "assembler/AssemblyObserver.h"

namespace tavinor {

inline constexpr std::string_view lineEnd = "\r\n";

/// The text of a pane, which grows line by line. The observer hears of it in pieces, not of every line.
class PaneText {
  public:
    PaneText(Pane pane, AssemblyObserver& observer) : pane_(pane), observer_(observer) {}

    void clear();

    /// Appends a line made of the pieces, and its end.
    template <class... Pieces>
    void line(const Pieces&... pieces) {
        (text_.append(pieces), ...);
        text_ += lineEnd;
        if (text_.size() - told_ >= pieceSize) flush();
    }

    /// Appends whole lines, and tells the observer.
    void append(std::string_view lines) {
        text_ += lines;
        flush();
    }

    /// Tells the observer what it does not know yet.
    void flush();

    /// The text, which is told and given away.
    std::string take();

  private:
    static constexpr std::size_t pieceSize = std::size_t{64} * 1024;

    Pane pane_;
    AssemblyObserver& observer_;
    std::string text_;
    std::size_t told_ = 0;
};

}  // namespace tavinor
