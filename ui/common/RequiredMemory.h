#pragma once

#include <cstdint>

namespace tavinor {

/// The bytes of memory that the program can still get without driving other programs out: what the system has
/// left, or less where the limits of this process or of its control groups leave less. The greatest number
/// where the system does not tell.
std::uint64_t memoryLeft();

/// To be called before large work. @throws std::bad_alloc unless `bytes` of memory are to be had, and a
/// reserve beyond them for everything else.
void requireMemory(std::uint64_t bytes);

}  // namespace tavinor
