#pragma once

#include <cstdint>

namespace tavinor {

/// The bytes of memory that the system can still give without driving anybody else out; the greatest number
/// where the system does not tell.
std::uint64_t availableMemory();

}  // namespace tavinor
