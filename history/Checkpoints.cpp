#include "history/Checkpoints.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace tavinor {

Checkpoints::Pages::Pages(PagePool& pool, const MachineState& machine, const Pages* before) : pool_(pool) {
    const auto sameAsBefore = [&](std::size_t page) {
        return before != nullptr &&
               std::memcmp(pool.bytes((*before)[page]), bytesOf(machine, page), pageSize) == 0;
    };
    try {
        for (; size_ < ids_.size(); ++size_) {
            if (sameAsBefore(size_)) {
                ids_[size_] = (*before)[size_];
                pool_.hold(ids_[size_]);
            } else {
                ids_[size_] = pool_.add(bytesOf(machine, size_));
            }
        }
    } catch (...) {
        while (size_ > 0) pool_.release(ids_[--size_]);
        throw;
    }
}

Checkpoints::Pages::Pages(Pages&& other) noexcept
    : pool_(other.pool_), size_(std::exchange(other.size_, 0)), ids_(other.ids_) {}

Checkpoints::Pages::~Pages() {
    while (size_ > 0) pool_.release(ids_[--size_]);
}

void Checkpoints::begin(const Moment& moment) {
    points_.clear();
    distance_ = densest;
    add({}, moment);
}

void Checkpoints::add(const Position& at, const Moment& moment) {
    if (points_.contains(at)) return;
    const Pages* before = points_.empty() ? nullptr : &pointBefore(at)->second.pages;
    points_.emplace(at, Point{Processor(moment.machine), moment.counters, moment.shownM,
                              Pages(pool_, moment.machine, before)});
    if (tooLarge(8)) thinOut();
}

void Checkpoints::cutBehind(const Position& last) {
    points_.erase(points_.upper_bound(last), points_.end());
}

Checkpoints::Points::const_iterator Checkpoints::pointBefore(const Position& at) const {
    return std::prev(points_.upper_bound(at));
}

void Checkpoints::restoreBefore(const Position& at, Moment& moment) const {
    const Point& point = pointBefore(at)->second;
    for (std::size_t page = 0; page < cellPages; ++page) {
        std::copy_n(pool_.bytes(point.pages[page]), pageSize, bytesOf(moment.machine, page));
    }
    moment.machine.synmem();
    point.processor.putInto(moment.machine);
    moment.counters = point.counters;
    moment.shownM = point.shownM;
}

std::size_t Checkpoints::bytes() const {
    constexpr std::size_t bytesOfAPage = pageSize + 2 * sizeof(PagePool::Id);
    return pool_.held() * bytesOfAPage + bytesOfPoints();
}

std::size_t Checkpoints::bytesOfPoints() const {
    constexpr std::size_t bytesOfANode = sizeof(Points::value_type) + 4 * sizeof(void*);
    return points_.size() * bytesOfANode;
}

bool Checkpoints::tooLarge(std::size_t eighths) const {
    return bytes() > mostBytes_ / 8 * eighths || points_.size() > mostPoints / 8 * eighths;
}

/// Thinned out further than it has to be: else every new one would have to look through all of them again.
void Checkpoints::thinOut() {
    constexpr std::uint64_t farthest = std::uint64_t{1} << 62;
    while (tooLarge(7)) {
        if (dropOld() > 0) continue;
        if (distance_ >= farthest) return;  // none is old: there is nothing more to gain
        distance_ *= 2;
    }
}

/// Drops the old ones that are no multiples of the distance; how many they were.
std::size_t Checkpoints::dropOld() {
    const std::uint64_t newest = points_.rbegin()->first.instructions;
    std::size_t dropped = 0;
    for (auto point = std::next(points_.begin()); point != points_.end();) {
        const std::uint64_t instructions = point->first.instructions;
        if (instructions + recent >= newest) break;
        if (instructions % distance_ == 0) {
            ++point;
        } else {
            point = points_.erase(point);
            ++dropped;
        }
    }
    return dropped;
}

}  // namespace tavinor
