#pragma once

#include <QString>
#include <optional>

namespace tavinor {

/// Upper case letter by letter, accented letters too, by the assembler's rule. The length never changes: a
/// letter whose upper case would be two letters stays as it is.
QString upperCased(QString text);

/// The position, counted from 1, of the first occurrence of `pattern` at `start` or later; occurrences may
/// overlap. An empty pattern occurs nowhere.
std::optional<qsizetype> findText(const QString& text, const QString& pattern, qsizetype start,
                                  bool matchCase);

}  // namespace tavinor
