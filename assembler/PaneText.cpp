#include "assembler/PaneText.h"

namespace tavinor {

void PaneText::clear() {
    flush();
    text_.clear();
    told_ = 0;
    observer_.cleared(pane_);
}

void PaneText::flush() {
    if (told_ == text_.size()) return;
    const std::size_t from = std::exchange(told_, text_.size());
    observer_.appended(pane_, std::string_view(text_).substr(from));
}

std::string PaneText::take() {
    flush();
    told_ = 0;
    return std::exchange(text_, {});
}

}  // namespace tavinor
