#include "ui/trace/TraceFile.h"

#include <algorithm>
#include <string_view>

#include "ui/common/Paths.h"
#include "ui/trace/TraceStore.h"
#include "ui/trace/TraceText.h"

namespace tavinor {

namespace {

constexpr std::string_view lineEnd = "\r\n";
/// A whole block: reading one always begins at its first row.
constexpr std::uint64_t portion = TraceBlock::capacity;

}  // namespace

TraceFile::TraceFile(const TraceStore& store, const QString& path)
    : store_(store), rows_(store.size()), path_(toPath(path)) {}

bool TraceFile::open() {
    file_ = File::forWriting(path_);
    if (!file_.isOpen()) return false;
    appendHeaderLine(text_);
    text_ += lineEnd;
    return write();
}

bool TraceFile::writeMore() {
    const std::uint64_t count = std::min(portion, rows_ - next_);
    store_.read(next_, count, [this](const TraceRow& row, const RowTexts* texts) {
        appendLine(text_, row, texts);
        text_ += lineEnd;
    });
    next_ += count;
    return write();
}

bool TraceFile::write() {
    const bool written = file_.write(text_);
    text_.clear();
    return written;
}

bool TraceFile::close() {
    return file_.close();
}

double TraceFile::fractionWritten() const {
    return rows_ == 0 ? 1.0 : static_cast<double>(next_) / static_cast<double>(rows_);
}

}  // namespace tavinor
