#pragma once

#include <QList>
#include <cstdint>
#include <utility>

#include "ui/main/RunPace.h"

namespace tavinor {

/// A pace without a clock: looks at the event queue after listed numbers of instructions, again from the
/// first one at the end of the list. Every look brings what `each` says.
class ListedPace final : public RunPace {
  public:
    explicit ListedPace(QList<std::int64_t> slices, Due each = Due::frame)
        : slices_(std::move(slices)), each_(each) {}

    [[nodiscard]] std::int64_t slice() override { return slices_[next_++ % slices_.size()]; }
    [[nodiscard]] Due due() override { return each_; }

  private:
    QList<std::int64_t> slices_;
    qsizetype next_ = 0;
    Due each_;
};

}  // namespace tavinor
