#pragma once

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <optional>
#include <string_view>

namespace tavinor {

/// What the editor knows to be on disk: what it has read or written there last. Contents are compared, not
/// times, which say neither that they have changed nor that they have not.
class KnownContents {
  public:
    /// Notes what is there now. To be called before the file is read: whatever changes after that is found.
    void note(const QString& path) { known_ = look(path); }
    void noteWritten(std::string_view bytes);

    /// Whether there is something else now. A file that has gone is nothing that could be lost.
    [[nodiscard]] bool differFrom(const QString& path) const;

  private:
    struct Contents {
        std::uintmax_t size = 0;
        QByteArray digest;  ///< Empty for one that cannot be read, or is larger than any source.
        bool operator==(const Contents&) const = default;
    };

    /// Nothing when there is no file. A digest is not needed where the size is none of `wanted`.
    static std::optional<Contents> look(const QString& path,
                                        std::optional<std::uintmax_t> wanted = std::nullopt);

    std::optional<Contents> known_;
};

}  // namespace tavinor
