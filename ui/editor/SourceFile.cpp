#include "ui/editor/SourceFile.h"

#include <QFileInfo>
#include <QStringConverter>
#include <optional>
#include <string>
#include <utility>

#include "files/File.h"
#include "files/ReplacedFile.h"
#include "ui/common/Paths.h"
#include "ui/common/RequiredMemory.h"
#include "ui/editor/SourceCharacters.h"
#include "ui/editor/SourceEncoder.h"
#include "ui/editor/SourceLimits.h"
#include "ui/editor/TextPieces.h"

namespace tavinor {

namespace {

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

SourceFile decodeSource(std::string bytes) {
    if (bytes.empty()) return {.state = SourceFile::State::empty, .encoding = {}, .text = {}};
    WorkObserver patient;
    const bool utf16 = hasUtf16Mark(bytes);
    const DecodedText decoded = decode(std::move(bytes), patient);
    if (utf16 && decoded.encoding == TextEncoding::windows1252) return {};
    QString text = sourceCharacters(fromUtf8(decoded.text));
    const SourceExtent extent = extentOf(text);
    const QString reason = whyTooLarge(extent);
    if (!reason.isEmpty()) return tooLarge(reason);
    requireMemory(memoryOf(extent));
    return {SourceFile::State::read, decoded.encoding, std::move(text)};
}

SourceFile readSource(const QString& path) {
    const QFileInfo file(path);
    if (file.isFile() && file.size() <= mostOfASource) requireMemory(memoryOfReading(file.size()));
    std::optional<std::string> bytes = readWholeFile(toPath(path), mostOfASource);
    if (bytes) return decodeSource(std::move(*bytes));
    const QString reason = file.isFile() ? whyTooLarge({.size = file.size()}) : QString();
    return reason.isEmpty() ? SourceFile{} : tooLarge(reason);
}

bool canEncodeSource(const QString& text, TextEncoding encoding, WorkObserver& observer) {
    if (encoding != TextEncoding::windows1252) return true;
    for (TextPieces pieces(text); !pieces.areAllTaken();) {
        if (!canEncode(pieces.next().toStdString(), encoding)) return false;
        observer.report(0);
    }
    return true;
}

/// What has been written is brought to the disk now and then: all of it together would take long, and could
/// not be cancelled.
std::optional<std::string> writeSource(const QString& path, const QString& text, TextEncoding encoding,
                                       WorkObserver& observer) {
    ReplacedFile file(toPath(path));
    SourceEncoder encoder(encoding);
    std::string bytes;
    for (TextPieces pieces(text); !pieces.areAllTaken();) {
        observer.report(1 - static_cast<double>(pieces.left()) / static_cast<double>(text.size()));
        const std::string piece = encoder.encode(pieces.next());
        if (!file.write(piece) || !file.flush()) return std::nullopt;
        bytes += piece;
    }
    observer.report(1);
    if (!file.commit(observer)) return std::nullopt;
    return bytes;
}

}  // namespace tavinor
