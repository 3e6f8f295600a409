#include "ui/editor/KnownContents.h"

#include <QCryptographicHash>
#include <array>
#include <cstddef>
#include <filesystem>
#include <system_error>

#include "files/File.h"
#include "ui/common/Paths.h"

namespace tavinor {

namespace {

constexpr std::uintmax_t largest =
    std::uintmax_t{128} * 1024 * 1024;  // of what the editor could have written
constexpr std::size_t hashedChunk = std::size_t{64} * 1024;
constexpr auto algorithm = QCryptographicHash::Blake2b_256;

QByteArray digestOf(const QString& path) {
    File file = File::forReading(toPath(path));
    QCryptographicHash hash(algorithm);
    std::array<char, hashedChunk> chunk{};
    while (const std::optional<std::size_t> count = file.read(chunk)) {
        if (*count == 0) return hash.result();
        hash.addData(QByteArrayView(chunk.data(), static_cast<qsizetype>(*count)));
    }
    return {};
}

}  // namespace

void KnownContents::noteWritten(std::string_view bytes) {
    QCryptographicHash hash(algorithm);
    hash.addData(QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())));
    known_ = Contents{bytes.size(), hash.result()};
}

bool KnownContents::differFrom(const QString& path) const {
    const auto wanted = known_ ? std::optional(known_->size) : std::nullopt;
    const std::optional<Contents> now = look(path, wanted);
    return now && now != known_;
}

std::optional<KnownContents::Contents> KnownContents::look(const QString& path,
                                                           std::optional<std::uintmax_t> wanted) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(toPath(path), error)) return std::nullopt;
    const std::uintmax_t size = std::filesystem::file_size(toPath(path), error);
    if (error) return std::nullopt;
    const bool read = size <= largest && (!wanted || size == *wanted);
    return Contents{size, read ? digestOf(path) : QByteArray()};
}

}  // namespace tavinor
