#pragma once

#include <cstddef>

namespace tavinor {

/// Ends the work in hand: the user has cancelled it.
struct Cancelled {};

/// Watches work that may take long, and can end it.
class WorkObserver {
  public:
    /// The work has come this far, from 0 to 1. False when it is to end here. To be called every so often; it
    /// may take a moment.
    virtual bool goesOn(double /*done*/) { return true; }

    /// The same for work that ends by an exception. @throws Cancelled
    void report(double done) {
        if (!goesOn(done)) throw Cancelled{};
    }

    WorkObserver() = default;
    WorkObserver(const WorkObserver&) = delete;
    WorkObserver& operator=(const WorkObserver&) = delete;
    virtual ~WorkObserver() = default;
};

/// Has an observer look in at a loop over many bytes, each of which takes next to no time.
class ByteCount {
  public:
    explicit ByteCount(WorkObserver& observer) : observer_(observer) {}

    /// The loop has come to this byte; it never goes back. @throws Cancelled
    void at(std::size_t position) {
        if (position < next_) return;
        next_ = position + bytesBetween;
        observer_.report(0);
    }

  private:
    static constexpr std::size_t bytesBetween = std::size_t{256} * 1024;

    WorkObserver& observer_;
    std::size_t next_ = bytesBetween;
};

}  // namespace tavinor
