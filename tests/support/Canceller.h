#pragma once

#include "files/WorkObserver.h"

namespace tavinor {

/// Ends the work that it watches at its `reports`-th report, counted from 1.
class Canceller : public WorkObserver {
  public:
    explicit Canceller(int reports) : left_(reports) {}
    bool goesOn(double done) override {
        sane_ = sane_ && done >= 0 && done <= 1;
        return --left_ > 0;
    }

    /// Whether the work was always between none and all of it.
    [[nodiscard]] bool sane() const { return sane_; }

  private:
    int left_;
    bool sane_ = true;
};

}  // namespace tavinor
