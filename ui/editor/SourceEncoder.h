#pragma once

#include <QString>
#include <string>

#include "text/TextEncoding.h"

namespace tavinor {

/// Encodes a source that is written piece by piece.
class SourceEncoder {
  public:
    explicit SourceEncoder(TextEncoding encoding) : encoding_(encoding) {}

    /// The bytes of the next piece, which is of whole characters: every LF as CR LF, and in front of the
    /// first one the byte-order mark that belongs to the encoding.
    std::string encode(const QString& piece);

  private:
    TextEncoding encoding_;
    bool first_ = true;
};

}  // namespace tavinor
