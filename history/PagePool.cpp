#include "history/PagePool.h"

#include <algorithm>

namespace tavinor {

void PagePool::addSlab() {
    const std::size_t before = owners_.size();
    const std::size_t after = before + pagesOfASlab;
    free_.reserve(after);
    owners_.reserve(after);
    slabs_.push_back(std::make_unique<Slab>());
    owners_.resize(after);
    // The lowest numbers last: they are taken first.
    for (std::size_t page = after; page > before; --page) free_.push_back(static_cast<Id>(page - 1));
}

PagePool::Id PagePool::add(const std::uint8_t* bytes) {
    if (free_.empty()) addSlab();
    const Id page = free_.back();
    free_.pop_back();
    owners_[page] = 1;
    std::copy_n(bytes, pageSize, place(page));
    return page;
}

void PagePool::release(Id page) noexcept {
    if (--owners_[page] == 0) free_.push_back(page);
}

std::uint8_t* PagePool::place(Id page) const noexcept {
    return slabs_[page / pagesOfASlab]->data() + page % pagesOfASlab * pageSize;
}

const std::uint8_t* PagePool::bytes(Id page) const noexcept {
    return place(page);
}

}  // namespace tavinor
