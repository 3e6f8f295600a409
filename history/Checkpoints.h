#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <map>

#include "history/Moment.h"
#include "history/PagePool.h"

namespace tavinor {

/// Where one is in a history: so many instructions have been executed, and so many of the changes from
/// outside that it keeps have been made.
struct Position {
    std::uint64_t instructions = 0;
    std::uint64_t changes = 0;

    // clang-tidy 14 takes the 0 that it is compared with for a pointer.
    friend auto operator<=>(const Position&, const Position&) = default;  // NOLINT(modernize-use-nullptr)
};

/// Whole machines at some positions of a history, from which everything in between is executed again. They
/// share the pages of memory in which they do not differ. When they take more memory than they may, the older
/// ones thin out: of those some way behind the newest only the multiples of a distance stay, which doubles as
/// often as it has to. The first one always stays.
class Checkpoints {
  public:
    /// How far apart they are where they have not been thinned out.
    static constexpr std::uint64_t densest = 65'536;

    explicit Checkpoints(std::size_t mostBytes) : mostBytes_(mostBytes) {}
    Checkpoints(const Checkpoints&) = delete;
    Checkpoints& operator=(const Checkpoints&) = delete;
    Checkpoints(Checkpoints&&) = delete;
    Checkpoints& operator=(Checkpoints&&) = delete;
    ~Checkpoints() = default;

    /// Forgets all and keeps this one, at the beginning of a history. @throws std::bad_alloc: then there is
    ///     none.
    void begin(const Moment& moment);
    /// Keeps one more, if there is none at `at` yet.
    /// @throws std::bad_alloc: then there is one less, that is all.
    void add(const Position& at, const Moment& moment);
    /// Forgets those behind `last`.
    void cutBehind(const Position& last);

    [[nodiscard]] bool empty() const { return points_.empty(); }
    /// The position of the newest one at `at` or before it. There has to be one.
    [[nodiscard]] Position positionBefore(const Position& at) const { return pointBefore(at)->first; }
    /// The position of the newest one before `at`, which is not the beginning.
    [[nodiscard]] Position positionStrictlyBefore(const Position& at) const {
        return std::prev(points_.lower_bound(at))->first;
    }
    /// The machine at that one; its pairs and mirror cells agree.
    void restoreBefore(const Position& at, Moment& moment) const;

    [[nodiscard]] std::size_t count() const { return points_.size(); }
    /// The memory that they take.
    [[nodiscard]] std::size_t bytes() const;
    /// The same with what is reserved for more of them.
    [[nodiscard]] std::size_t reservedBytes() const { return bytesOfPoints() + pool_.reservedBytes(); }

  private:
    /// Those as near to the newest one as this are not thinned out.
    static constexpr std::uint64_t recent = 64 * densest;
    /// More of them would say little more.
    static constexpr std::size_t mostPoints = 8192;

    /// The pages of a machine, each held once.
    class Pages {
      public:
        /// Shared with `before`, which may be null, where they are equal.
        Pages(PagePool& pool, const MachineState& machine, const Pages* before);
        Pages(const Pages&) = delete;
        Pages& operator=(const Pages&) = delete;
        Pages(Pages&& other) noexcept;
        Pages& operator=(Pages&&) = delete;
        ~Pages();

        [[nodiscard]] PagePool::Id operator[](std::size_t page) const { return ids_[page]; }

      private:
        PagePool& pool_;
        std::size_t size_ = 0;
        std::array<PagePool::Id, cellPages> ids_;
    };

    struct Point {
        Processor processor;
        Counters counters;
        std::uint8_t shownM;
        Pages pages;
    };
    using Points = std::map<Position, Point>;

    [[nodiscard]] Points::const_iterator pointBefore(const Position& at) const;
    [[nodiscard]] std::size_t bytesOfPoints() const;
    [[nodiscard]] bool tooLarge(std::size_t eighths) const;
    void thinOut();
    std::size_t dropOld();

    std::size_t mostBytes_;
    PagePool pool_;
    Points points_;
    std::uint64_t distance_ = densest;  // of the old ones
};

}  // namespace tavinor
