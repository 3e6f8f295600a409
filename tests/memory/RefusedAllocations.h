#pragma once

#include "tests/support/FailingAllocation.h"

namespace tavinor::test {

/// Does `work` again and again, with another one of its allocations refused each time, until it asks for no
/// more: each of the first `few`, later ones at growing distances. `work` is given the number to arm with,
/// and tells whether all was as it should be. Returns how many allocations were refused; -1 where something
/// was not as it should be.
template <typename Work>
int refuseEach(const Work& work, int few = 300) {
    constexpr int growth = 20;
    int times = 0;
    for (int number = 0;; number += number < few ? 1 : 1 + (number - few) / growth) {
        if (!work(number)) return -1;
        if (!FailingAllocation::happened()) return times;
        ++times;
    }
}

}  // namespace tavinor::test
