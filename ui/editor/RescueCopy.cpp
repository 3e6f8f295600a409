#include "ui/editor/RescueCopy.h"

#include <cstddef>
#include <filesystem>
#include <string>
#include <system_error>

#include "files/ReplacedFile.h"
#include "ui/common/Paths.h"

namespace tavinor {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t chunkSize = std::size_t{64} * 1024;

bool canEncodeAll(const RescueCopy::Text& text, TextEncoding encoding) {
    bool all = true;
    text([&](const QString& piece) { all = all && canEncode(piece.toStdString(), encoding); });
    return all;
}

/// Writes pieces of a text, with CR LF for every LF, as one text in one encoding.
class Writer {
  public:
    Writer(ReplacedFile& file, TextEncoding encoding)
        : file_(file), encoding_(encoding), markSize_(encode({}, encoding).size()) {}

    void add(const QString& piece) {
        for (const char c : piece.toStdString()) {
            if (c == '\n') chunk_ += '\r';
            chunk_ += c;
        }
        if (chunk_.size() >= chunkSize) write();
    }

    /// False when any of it could not be written.
    bool finish() {
        write();
        return good_;
    }

  private:
    /// Each chunk is encoded as a text of its own, but only the first one begins with the mark.
    void write() {
        const std::string bytes = encode(chunk_, encoding_);
        chunk_.clear();
        good_ = good_ && file_.write(std::string_view(bytes).substr(first_ ? 0 : markSize_));
        first_ = false;
    }

    ReplacedFile& file_;
    TextEncoding encoding_;
    std::size_t markSize_;
    std::string chunk_;
    bool first_ = true;
    bool good_ = true;
};

}  // namespace

RescueCopy::RescueCopy(const QString& source) : source_(source), path_(source + QStringLiteral(".rescate")) {}

bool RescueCopy::isNewer() const {
    std::error_code error;
    if (!fs::is_regular_file(toPath(path_), error)) return false;
    const fs::file_time_type written = fs::last_write_time(toPath(path_), error);
    if (error) return false;
    const fs::file_time_type saved = fs::last_write_time(toPath(source_), error);
    return error || written >= saved;
}

bool RescueCopy::write(const Text& text, TextEncoding encoding, Earlier earlier) const {
    if (!canEncodeAll(text, encoding)) encoding = TextEncoding::utf8;
    ReplacedFile file(toPath(path_), toPath(source_));
    Writer writer(file, encoding);
    text([&writer](const QString& piece) { writer.add(piece); });
    if (!writer.finish()) return false;
    if (earlier == Earlier::kept) setAside();
    return file.commit();
}

void RescueCopy::setAside() const {
    constexpr int most = 1000;
    std::error_code error;
    for (int number = 1; number <= most; ++number) {
        const fs::path name = toPath(path_ + '.' + QString::number(number));
        if (fs::exists(fs::symlink_status(name, error))) continue;
        fs::rename(toPath(path_), name, error);
        return;
    }
}

void RescueCopy::remove() const {
    std::error_code ignored;
    if (fs::is_regular_file(toPath(path_), ignored)) fs::remove(toPath(path_), ignored);
}

}  // namespace tavinor
