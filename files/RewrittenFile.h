#pragma once

#include <string_view>

#include "files/File.h"
#include "files/WorkObserver.h"

namespace tavinor {

/// Writes `bytes` over all of a file that is open for rewriting. Where that fails, the file has its old bytes
/// again; but a program that is killed meanwhile leaves a part of them. Where `observer` ends it, too.
/// @throws Cancelled
bool rewrite(File& file, std::string_view bytes, WorkObserver& observer);

}  // namespace tavinor
