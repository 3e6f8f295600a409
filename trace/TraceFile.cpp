#include "trace/TraceFile.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "trace/TraceText.h"

namespace tavinor {

namespace {

constexpr std::string_view rowEnd = "\r\n";
constexpr std::uint64_t portion = 65'536;

}  // namespace

TraceFile::TraceFile(const Trace& trace, std::filesystem::path path)
    : reader_(trace), rows_(trace.size()), path_(std::move(path)) {}

bool TraceFile::open() {
    file_ = File::forWriting(path_);
    if (!file_.isOpen()) return false;
    appendHeaderLine(text_);
    text_ += rowEnd;
    return write();
}

bool TraceFile::writeMore() {
    const std::uint64_t count = std::min(portion, rows_ - next_);
    reader_.read(next_, count, [this](const TraceRow& row, const RowTexts* texts) {
        appendLine(text_, row, texts);
        text_ += rowEnd;
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
