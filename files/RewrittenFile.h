#pragma once

#include <string_view>

#include "files/File.h"

namespace tavinor {

/// Writes `bytes` over all of a file that is open for rewriting. Where that fails, the file has its old bytes
/// again; but a program that is killed meanwhile leaves a part of them.
bool rewrite(File& file, std::string_view bytes);

}  // namespace tavinor
