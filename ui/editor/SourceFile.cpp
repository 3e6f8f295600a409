#include "ui/editor/SourceFile.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStringConverter>
#include <algorithm>
#include <cstddef>
#include <string>

namespace tavinor {

namespace {

/// No source for 64 KiB of memory is that long, and the text box could not hold much more.
constexpr qint64 mostBytes = 64 * 1024 * 1024;
/// The text box lays out a line as a whole: this much takes it half a second, and a program of one line
/// minutes.
constexpr qsizetype mostBytesOfALine = qsizetype{1024} * 1024;

bool linesFitTheBox(const QByteArray& bytes) {
    qsizetype start = 0;
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        if (bytes[i] == '\n' || bytes[i] == '\r') start = i + 1;
        if (i - start >= mostBytesOfALine) return false;
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

SourceFile decodeSource(const QByteArray& bytes) {
    if (bytes.isEmpty()) return {.state = SourceFile::State::empty, .encoding = {}, .text = {}};
    const DecodedText decoded = decode(bytes.toStdString());
    return {SourceFile::State::read, decoded.encoding, fromUtf8(decoded.text)};
}

SourceFile readSource(const QString& path) {
    QFile file(path);
    // A folder, a pipe or a device is no source, and reading some of them would never end.
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) return {};
    const QByteArray bytes = file.read(mostBytes + 1);
    if (file.error() != QFileDevice::NoError || bytes.size() > mostBytes || !linesFitTheBox(bytes)) {
        return {};
    }
    return decodeSource(bytes);
}

bool canEncodeSource(const QString& text, TextEncoding encoding) {
    return canEncode(text.toStdString(), encoding);
}

bool writeSource(const QString& path, const QString& text, TextEncoding encoding) {
    const QFileInfo existing(path);
    if (existing.exists() && !existing.isFile()) return false;
    // Written beside the file behind a link, however many links lead there, and then put in its place.
    QSaveFile file(existing.exists() ? existing.canonicalFilePath() : path);
    // Unbuffered: a disk that fills up takes a part and reports no error, which only the count of `write`
    // tells.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) return false;
    const std::string bytes = encode(withLineEndPairs(text.toStdString()), encoding);
    const auto size = static_cast<qint64>(bytes.size());
    return file.write(bytes.data(), size) == size && file.commit();
}

}  // namespace tavinor
