#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "machine/Batch.h"

namespace tavinor {

/// Pages of 256 bytes that several owners share. A page never changes; it is there as long as an owner holds
/// it. Pages that are given back are used again, not returned to the system.
class PagePool {
  public:
    using Id = std::uint32_t;

    /// A page with a copy of `bytes` (256 of them), held once. @throws std::bad_alloc when there is no memory
    ///     for it; then nothing has changed.
    [[nodiscard]] Id add(const std::uint8_t* bytes);
    /// Holds a page once more.
    void hold(Id page) noexcept { ++owners_[page]; }
    /// Gives one holding back.
    void release(Id page) noexcept;

    /// The 256 bytes of a page that is held.
    [[nodiscard]] const std::uint8_t* bytes(Id page) const noexcept;
    /// The pages that are held.
    [[nodiscard]] std::size_t held() const noexcept { return owners_.size() - free_.size(); }
    /// The memory that the pool takes, with room for more pages than are held.
    [[nodiscard]] std::size_t reservedBytes() const noexcept {
        return slabs_.size() * sizeof(Slab) + owners_.capacity() * sizeof(std::uint32_t) +
               free_.capacity() * sizeof(Id);
    }

  private:
    static constexpr std::size_t pagesOfASlab = 1024;
    using Slab = std::array<std::uint8_t, pagesOfASlab * pageSize>;

    void addSlab();
    [[nodiscard]] std::uint8_t* place(Id page) const noexcept;

    std::vector<std::unique_ptr<Slab>> slabs_;
    std::vector<std::uint32_t> owners_;
    std::vector<Id> free_;  // has room for all pages, so that giving one back needs no memory
};

}  // namespace tavinor
