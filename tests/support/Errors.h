#pragma once

#include "machine/RuntimeError.h"

namespace tavinor::test {

constexpr int noError = 0;
constexpr int overflowError = 6;
constexpr int subscriptError = 9;

/// The number of the run-time error that `action` ends in, or `noError`.
template <typename Action>
int errorOf(Action&& action) {
    try {
        action();
    } catch (const RuntimeError& error) {
        return static_cast<int>(error.number());
    }
    return noError;
}

}  // namespace tavinor::test
