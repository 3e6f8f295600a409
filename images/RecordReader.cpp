#include "images/RecordReader.h"

#include <ios>

namespace tavinor {

namespace {

constexpr std::size_t chunkSize = std::size_t{64} * 1024;
constexpr int endOfFile = -1;

/// A line under construction: no blanks around it, and of a long one only the characters that count.
class TrimmedLine {
  public:
    void add(char c) {
        if (c == ' ') {
            if (length_ > 0) ++pendingBlanks_;
            return;
        }
        for (; pendingBlanks_ > 0; --pendingBlanks_) append(' ');
        append(c);
    }

    [[nodiscard]] std::string text() const {
        if (length_ <= RecordReader::maximumLength) return head_;
        std::string kept = head_.substr(0, RecordReader::maximumLength - 2);
        return kept + beforeLast_ + last_;
    }

  private:
    void append(char c) {
        ++length_;
        if (head_.size() < RecordReader::maximumLength) head_ += c;
        beforeLast_ = last_;
        last_ = c;
    }

    std::string head_;
    std::size_t length_ = 0;
    std::size_t pendingBlanks_ = 0;
    char beforeLast_ = '\0';
    char last_ = '\0';
};

}  // namespace

RecordReader::RecordReader(const std::filesystem::path& path)
    : file_(File::forReading(path)), buffer_(chunkSize) {
    if (!file_.isOpen()) throw std::ios_base::failure("cannot open");
}

int RecordReader::nextCharacter() {
    if (position_ == filled_) {
        const std::optional<std::size_t> count = file_.read(buffer_);
        if (!count) throw std::ios_base::failure("cannot read");
        filled_ = *count;
        position_ = 0;
        if (filled_ == 0) return endOfFile;
    }
    return static_cast<unsigned char>(buffer_[position_++]);
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
