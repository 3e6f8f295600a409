#pragma once

#include <cstdint>
#include <filesystem>

namespace tavinor {

/// The bytes that the control groups of this process (Linux) still let it have: the least that the limits of
/// its own group and of all those around it leave, in either version of control groups. Files that are only
/// kept in memory for speed do not count as used. The greatest number where nothing limits it.
///
/// `root` is where the files of the system are: another folder than "/" in a test.
std::uint64_t roomInControlGroups(const std::filesystem::path& root = "/");

}  // namespace tavinor
