#pragma once

#include <functional>
#include <memory>

namespace tavinor {

/// Does what can still be done when the process ends in the middle of its work: the display has gone, for
/// which Qt calls `exit`, memory is out, for which it throws what no event loop can catch, or the process
/// crashes. One object at a time.
class LastResort {
  public:
    /// `rescue` is called at most once, with some memory set free for it. It may be called at any place, so
    /// it must only read what the program has.
    explicit LastResort(std::function<void()> rescue);
    LastResort(const LastResort&) = delete;
    LastResort& operator=(const LastResort&) = delete;
    ~LastResort();

    void act();

  private:
    std::function<void()> rescue_;
    std::unique_ptr<char[]> reserve_;
};

}  // namespace tavinor
