#pragma once

#include <QString>
#include <QStringView>
#include <cstdint>

class QTextCursor;

/// How much the editor takes, from a file, the clipboard or a drop.
namespace tavinor {

/// No source for 64 KiB of memory is that long. Bytes of a file, characters of a text.
inline constexpr qsizetype mostOfASource = qsizetype{64} * 1024 * 1024;
/// Characters. Qt lays out a line as a whole, at every key that is pressed in it: this much takes it 0.17 s.
inline constexpr qsizetype mostOfALine = qsizetype{128} * 1024;
/// They take 270 MB.
inline constexpr qsizetype mostLines = 2'000'000;

struct SourceExtent {
    qsizetype size = 0;  ///< In bytes or characters.
    qsizetype lines = 0;
    qsizetype longestLine = 0;
};

/// Of a text whose lines end in LF.
SourceExtent extentOf(QStringView text);
/// Of the cursor's document when `text` has taken the place of what is selected. Of the lines, only those
/// that change are looked at for the longest.
SourceExtent extentWith(QStringView text, const QTextCursor& cursor);

/// The bytes that the text box takes for so much text, its history included: measured at the limits, with
/// lines of 0, 32 and 100,000 characters.
std::uint64_t memoryOf(const SourceExtent& extent);

/// The bytes that reading a file of so many takes, beside what its text takes in the box.
std::uint64_t memoryOfReading(qsizetype size);
/// The bytes that saving so many characters takes.
std::uint64_t memoryOfSaving(qsizetype size);
/// Up to so many characters, saving takes hardly anything, and does not ask: where memory is short, it is
/// what still has to work.
inline constexpr qsizetype smallSource = qsizetype{1024} * 1024;

/// What the user is told when that is more than the editor takes; empty when it is not.
QString whyTooLarge(const SourceExtent& extent);

}  // namespace tavinor
