#pragma once

#include <QString>
#include <cstdint>
#include <functional>

#include "text/TextEncoding.h"

namespace tavinor {

/// The copy of unsaved text that is left beside its source where the program ends and cannot ask. It stays
/// until the source is saved.
class RescueCopy {
  public:
    /// Hands out a text piece by piece, each of whole characters.
    using Text = std::function<void(const std::function<void(const QString&)>&)>;

    /// What becomes of a copy that is there already.
    enum class Earlier : std::uint8_t {
        replaced,
        kept,  ///< It gets another name: the first free one of NAME.asm.rescate.1, .2 and so on.
    };

    explicit RescueCopy(const QString& source);

    [[nodiscard]] const QString& path() const { return path_; }
    /// Whether there is a copy that is not older than the source, or one without a source.
    [[nodiscard]] bool isNewer() const;

    /// Writes the copy in the source's encoding, or in UTF-8 where that lacks a character. It is whole or it
    /// is not there. Needs hardly any memory, however long the text is. Where an earlier copy can get no
    /// other name, it is replaced.
    [[nodiscard]] bool write(const Text& text, TextEncoding encoding,
                             Earlier earlier = Earlier::replaced) const;
    void remove() const;

  private:
    void setAside() const;

    QString source_, path_;
};

}  // namespace tavinor
