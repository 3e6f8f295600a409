#include "ui/editor/RescueCopy.h"

#include <filesystem>
#include <system_error>

#include "files/ReplacedFile.h"
#include "ui/common/Paths.h"
#include "ui/editor/SourceEncoder.h"

namespace tavinor {

namespace {

namespace fs = std::filesystem;

constexpr qsizetype writtenChunk = qsizetype{64} * 1024;  // characters

bool canEncodeAll(const RescueCopy::Text& text, TextEncoding encoding) {
    bool all = true;
    text([&](const QString& piece) { all = all && canEncode(piece.toStdString(), encoding); });
    return all;
}

/// Writes a text that comes line by line.
class Writer {
  public:
    Writer(ReplacedFile& file, TextEncoding encoding) : file_(file), encoder_(encoding) {}

    void add(const QString& line) {
        chunk_ += line;
        if (chunk_.size() >= writtenChunk) write();
    }

    /// False when any of it could not be written.
    bool finish() {
        write();
        return good_;
    }

  private:
    void write() {
        good_ = good_ && file_.write(encoder_.encode(chunk_));
        chunk_.clear();
    }

    ReplacedFile& file_;
    SourceEncoder encoder_;
    QString chunk_;
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
