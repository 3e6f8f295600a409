#pragma once

#include <chrono>

class QWidget;

namespace tavinor {

class TraceFile;

enum class SaveResult { saved, cancelled, failed };

/// Writes all of `file`. Once it has taken longer than `patience`, a modal dialog shows how far it is and
/// offers to end it.
SaveResult saveWithProgress(TraceFile& file, QWidget* parent, std::chrono::milliseconds patience);

}  // namespace tavinor
