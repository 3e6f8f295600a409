#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "files/WorkObserver.h"

namespace tavinor {

/// The bytes of the line end at `position` (inside UTF-8 `text`): CR LF, LF, CR, or one of the three that
/// come with texts copied from elsewhere (next line, line separator, paragraph separator). 0 for none.
std::size_t lineEndAt(std::string_view text, std::size_t position);

/// The lines of UTF-8 `text` without their ends. The last line needs no end, and an end at the very end
/// begins no further line. The views point into `text`.
/// @throws Cancelled by `observer`
std::vector<std::string_view> splitLines(std::string_view text, WorkObserver& observer);

/// How many lines `splitLines` gives.
/// @throws Cancelled by `observer`
std::size_t countLines(std::string_view text, WorkObserver& observer);

}  // namespace tavinor
