#include "ui/editor/SourceFile.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStringConverter>
#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>

namespace tavinor {

namespace {

constexpr char16_t firstSpecial = 0x80;

/// Windows-1252 where it is not Latin-1: bytes 80 to 9F. The five undefined ones stand for themselves.
constexpr std::array<char16_t, 32> specials{
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,  //
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,  //
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,  //
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

bool isSpecial(char16_t code) {
    return code >= firstSpecial && code < firstSpecial + specials.size();
}

QString fromWindows1252(const QByteArray& bytes) {
    QString text = QString::fromLatin1(bytes);
    for (QChar& c : text) {
        if (isSpecial(c.unicode())) c = QChar(specials[static_cast<std::size_t>(c.unicode() - firstSpecial)]);
    }
    return text;
}

std::optional<char> toWindows1252(QChar c) {
    const char16_t code = c.unicode();
    if (code <= 0xFF && !isSpecial(code)) return static_cast<char>(code);
    const auto* const found = std::find(specials.begin(), specials.end(), code);
    if (found == specials.end()) return std::nullopt;
    return static_cast<char>(firstSpecial + (found - specials.begin()));
}

QByteArray encodeSource(const QString& text, SourceEncoding encoding) {
    if (encoding == SourceEncoding::utf8) return text.toUtf8();
    QByteArray bytes;
    bytes.reserve(text.size());
    for (const QChar c : text) bytes.append(toWindows1252(c).value_or('?'));
    return bytes;
}

}  // namespace

SourceFile decodeSource(const QByteArray& bytes) {
    if (bytes.isEmpty()) return {.state = SourceFile::State::empty, .encoding = {}, .text = {}};
    QStringDecoder decoder(QStringConverter::Utf8, QStringConverter::Flag::Stateless);
    QString text = decoder.decode(bytes);
    if (!decoder.hasError()) return {SourceFile::State::read, SourceEncoding::utf8, std::move(text)};
    const QByteArray unmarked = bytes.startsWith("\xEF\xBB\xBF") ? bytes.mid(3) : bytes;
    return {SourceFile::State::read, SourceEncoding::windows1252, fromWindows1252(unmarked)};
}

SourceFile readSource(const QString& path) {
    QFile file(path);
    // A folder, a pipe or a device is no source, and reading some of them would never end.
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) return {};
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError) return {};
    return decodeSource(bytes);
}

bool canEncode(const QString& text, SourceEncoding encoding) {
    return encoding == SourceEncoding::utf8 ||
           std::all_of(text.begin(), text.end(), [](QChar c) { return toWindows1252(c).has_value(); });
}

bool writeSource(const QString& path, const QString& text, SourceEncoding encoding) {
    const QFileInfo existing(path);
    if (existing.exists() && !existing.isFile()) return false;
    QString lines = text;
    lines.replace('\n', QStringLiteral("\r\n"));
    // Written beside the file behind a link, however many links lead there, and then put in its place.
    QSaveFile file(existing.exists() ? existing.canonicalFilePath() : path);
    // Unbuffered: a disk that fills up takes a part and reports no error, which only the count of `write`
    // tells.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) return false;
    const QByteArray bytes = encodeSource(lines, encoding);
    return file.write(bytes) == bytes.size() && file.commit();
}

}  // namespace tavinor
