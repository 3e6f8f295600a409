#pragma once

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

}  // namespace tavinor
