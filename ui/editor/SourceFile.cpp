#include "ui/editor/SourceFile.h"

#include <QFileInfo>
#include <QStringConverter>
#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <utility>

#include "files/File.h"
#include "files/ReplacedFile.h"
#include "ui/common/Paths.h"
#include "ui/editor/SourceCharacters.h"
#include "ui/editor/SourceLimits.h"

namespace tavinor {

namespace {

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

SourceFile tooLarge(const QString& reason) {
    return {.state = SourceFile::State::tooLarge, .encoding = {}, .text = reason};
}

}  // namespace

SourceFile decodeSource(const std::string& bytes) {
    if (bytes.empty()) return {.state = SourceFile::State::empty, .encoding = {}, .text = {}};
    const DecodedText decoded = decode(bytes);
    QString text = sourceCharacters(fromUtf8(decoded.text));
    const QString reason = whyTooLarge(extentOf(text));
    if (!reason.isEmpty()) return tooLarge(reason);
    return {SourceFile::State::read, decoded.encoding, std::move(text)};
}

SourceFile readSource(const QString& path) {
    const std::optional<std::string> bytes = readWholeFile(toPath(path), mostOfASource);
    if (bytes) return decodeSource(*bytes);
    const QFileInfo file(path);
    const QString reason = file.isFile() ? whyTooLarge({.size = file.size()}) : QString();
    return reason.isEmpty() ? SourceFile{} : tooLarge(reason);
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
