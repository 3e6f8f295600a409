#include "ui/editor/SourceFile.h"

#include <QStringConverter>
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "files/File.h"
#include "files/ReplacedFile.h"
#include "ui/common/Paths.h"

namespace tavinor {

namespace {

/// No source for 64 KiB of memory is that long, and the text box could not hold much more.
constexpr std::uint64_t mostBytes = 64 * 1024 * 1024;
/// The text box lays out a line as a whole: this much takes it half a second, and a program of one line
/// minutes.
constexpr std::size_t mostBytesOfALine = std::size_t{1024} * 1024;

bool linesFitTheBox(std::string_view bytes) {
    std::size_t start = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (bytes[i] == '\n' || bytes[i] == '\r') start = i + 1;
        if (i >= start + mostBytesOfALine) return false;
    }
    return true;
}

/// One pass: replacing in place moves the rest of the text again and again, which a source of a million lines
/// feels.
std::string withLineEndPairs(const std::string& text) {
    std::string pairs;
    pairs.reserve(text.size() + static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')));
    for (const char c : text) {
        if (c == '\n') pairs += '\r';
        pairs += c;
    }
    return pairs;
}

/// The core has skipped the byte-order mark; another one behind it belongs to the text.
QString fromUtf8(const std::string& text) {
    using Flag = QStringConverter::Flag;
    QStringDecoder decoder(QStringConverter::Utf8, Flag::Stateless | Flag::ConvertInitialBom);
    return decoder.decode(QByteArrayView(text.data(), static_cast<qsizetype>(text.size())));
}

}  // namespace

SourceFile decodeSource(const std::string& bytes) {
    if (bytes.empty()) return {.state = SourceFile::State::empty, .encoding = {}, .text = {}};
    const DecodedText decoded = decode(bytes);
    return {SourceFile::State::read, decoded.encoding, fromUtf8(decoded.text)};
}

SourceFile readSource(const QString& path) {
    const std::optional<std::string> bytes = readWholeFile(toPath(path), mostBytes);
    if (!bytes || !linesFitTheBox(*bytes)) return {};
    return decodeSource(*bytes);
}

bool canEncodeSource(const QString& text, TextEncoding encoding) {
    return canEncode(text.toStdString(), encoding);
}

std::optional<std::string> writeSource(const QString& path, const QString& text, TextEncoding encoding) {
    std::string bytes = encode(withLineEndPairs(text.toStdString()), encoding);
    ReplacedFile file(toPath(path));
    if (!file.write(bytes) || !file.commit()) return std::nullopt;
    return bytes;
}

}  // namespace tavinor
