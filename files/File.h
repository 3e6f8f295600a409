#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace tavinor {

/// A file that the user chose, open for reading or for writing. There is no other way to its bytes.
///
/// A name may turn out to be a folder, a pipe whose other end is not open, a socket or a device: opening
/// never waits, and what is no regular file is not opened. Symbolic links are followed.
class File {
  public:
    static File forReading(const std::filesystem::path& path);
    /// Creates the file, or empties the one that is there.
    static File forWriting(const std::filesystem::path& path);
    /// Opens a file that must be there, and leaves its bytes alone.
    static File forChanging(const std::filesystem::path& path);
    /// The same, and its bytes can be read, too.
    static File forRewriting(const std::filesystem::path& path);
    /// Creates a file that must not be there. Only its owner may read it when it is `secret`.
    static File createNew(const std::filesystem::path& path, bool secret);

    File() = default;
    File(File&& other) noexcept;
    File& operator=(File&& other) noexcept;
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    ~File();

    /// False when it could not be opened, and once it is closed.
    [[nodiscard]] bool isOpen() const { return handle_ != none; }

    /// Reads up to `buffer.size()` bytes: how many came, 0 at the end of the file, nothing on an error.
    std::optional<std::size_t> read(std::span<char> buffer);
    /// Writes all of `bytes`. After an error some of them may have arrived.
    bool write(std::string_view bytes);
    /// Where the next bytes are read or written.
    bool seek(std::uint64_t position);
    [[nodiscard]] std::optional<std::uint64_t> size() const;
    bool resize(std::uint64_t size);
    /// Gives this file the owner, the group and the permissions of another one. False when it may not.
    bool takeAfter(const File& other);
    /// Waits until what was written is safe from a power failure.
    bool flush();
    /// False when what was written did not all arrive, or the file was not open.
    bool close();

  private:
    static constexpr int none = -1;

    explicit File(int handle) : handle_(handle) {}
    static File open(const std::filesystem::path& path, int flags, int permissions = 0);

    int handle_ = none;
};

/// All bytes of a file, or nothing when it cannot be read or has more than `most`.
std::optional<std::string> readWholeFile(const std::filesystem::path& path, std::uint64_t most);

}  // namespace tavinor
