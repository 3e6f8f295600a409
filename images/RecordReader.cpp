#include "images/RecordReader.h"

#include <algorithm>
#include <ios>
#include <system_error>

#include "images/HexRecord.h"

namespace tavinor {

namespace {

constexpr std::size_t bufferSize = std::size_t{64} * 1024;
constexpr int endOfFile = -1;

/// A line under construction: no blanks around it, and of a long one only the characters that count.
class TrimmedLine {
  public:
    void add(char c) {
        if (c == ' ') {
            if (length_ > 0) ++pendingBlanks_;
            return;
        }
        appendBlanks();
        append(c);
    }

    [[nodiscard]] std::string text() const {
        if (length_ <= record::maximumLength) return head_;
        std::string kept = head_.substr(0, record::maximumLength - 2);
        return kept + beforeLast_ + last_;
    }

  private:
    /// There may be as many of them as a file holds.
    void appendBlanks() {
        const std::size_t needed = std::min(pendingBlanks_, record::maximumLength);
        length_ += pendingBlanks_ - needed;
        for (std::size_t i = 0; i < needed; ++i) append(' ');
        pendingBlanks_ = 0;
    }

    void append(char c) {
        ++length_;
        if (head_.size() < record::maximumLength) head_ += c;
        beforeLast_ = last_;
        last_ = c;
    }

    std::string head_;
    std::size_t length_ = 0;
    std::size_t pendingBlanks_ = 0;
    char beforeLast_ = '\0';
    char last_ = '\0';
};

/// Never 0, so that it can be divided by.
double sizeOf(const std::filesystem::path& path) {
    std::error_code unknown;
    const std::uintmax_t size = std::filesystem::file_size(path, unknown);
    return unknown ? 1.0 : static_cast<double>(std::max<std::uintmax_t>(size, 1));
}

}  // namespace

RecordReader::RecordReader(const std::filesystem::path& path, WorkObserver& observer)
    : file_(File::forReading(path)), observer_(observer), fileSize_(sizeOf(path)), buffer_(bufferSize) {
    if (!file_.isOpen()) throw std::ios_base::failure("cannot open");
}

int RecordReader::nextCharacter() {
    if (position_ == filled_) fillBuffer();
    if (filled_ == 0) return endOfFile;
    return static_cast<unsigned char>(buffer_[position_++]);
}

void RecordReader::fillBuffer() {
    observer_.report(std::min(bytesRead_ / fileSize_, 1.0));  // a file can grow while it is read
    const std::optional<std::size_t> count = file_.read(buffer_);
    if (!count) throw std::ios_base::failure("cannot read");
    filled_ = *count;
    bytesRead_ += static_cast<double>(filled_);
    position_ = 0;
}

std::optional<std::string> RecordReader::next() {
    TrimmedLine line;
    int c = nextCharacter();
    if (afterCarriageReturn_ && c == '\n') c = nextCharacter();  // the second half of a CR LF
    afterCarriageReturn_ = false;
    if (c == endOfFile) return std::nullopt;
    while (c != endOfFile && c != '\n' && c != '\r') {
        line.add(static_cast<char>(c));
        c = nextCharacter();
    }
    afterCarriageReturn_ = c == '\r';
    return line.text();
}

}  // namespace tavinor
