#include "files/File.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <utility>

#if defined(_WIN32)
#include <io.h>
#else
#include <unistd.h>
#endif

namespace tavinor {

namespace {

constexpr int allUsers = 0666;  // less what the user's mask takes away
constexpr int ownerOnly = 0600;
constexpr std::size_t readingChunk = std::size_t{64} * 1024;

// What the two families of systems call differently.
#if defined(_WIN32)

constexpr int always = _O_BINARY | _O_NOINHERIT;

int openFile(const std::filesystem::path& path, int flags, int permissions) {
    return ::_wopen(path.c_str(), flags, permissions & (_S_IREAD | _S_IWRITE));
}

bool isRegular(int handle) {
    struct _stat64 status {};
    return ::_fstat64(handle, &status) == 0 && (status.st_mode & _S_IFMT) == _S_IFREG;
}

bool resizeHandle(int handle, std::uint64_t size) {
    return ::_chsize_s(handle, static_cast<__int64>(size)) == 0;
}

bool seekHandle(int handle, std::uint64_t position) {
    return ::_lseeki64(handle, static_cast<__int64>(position), SEEK_SET) >= 0;
}

std::int64_t sizeOf(int handle) {
    return ::_filelengthi64(handle);
}

/// They come with the folder.
bool copyOwner(int /*from*/, int /*to*/) {
    return true;
}

auto readSome(int handle, std::span<char> buffer) {
    return ::_read(handle, buffer.data(),
                   static_cast<unsigned>(std::min<std::size_t>(buffer.size(), INT_MAX)));
}

auto writeSome(int handle, std::string_view bytes) {
    return ::_write(handle, bytes.data(),
                    static_cast<unsigned>(std::min<std::size_t>(bytes.size(), INT_MAX)));
}

bool flushHandle(int handle) {
    return ::_commit(handle) == 0;
}

int closeHandle(int handle) {
    return ::_close(handle);
}

#else

/// Without O_NONBLOCK, opening a pipe waits for its other end; without O_NOCTTY, a terminal may take over.
constexpr int always = O_NONBLOCK | O_NOCTTY | O_CLOEXEC;

int openFile(const std::filesystem::path& path, int flags, int permissions) {
    return ::open(path.c_str(), flags, permissions);
}

bool isRegular(int handle) {
    struct stat status {};
    return ::fstat(handle, &status) == 0 && S_ISREG(status.st_mode);
}

bool resizeHandle(int handle, std::uint64_t size) {
    return ::ftruncate(handle, static_cast<off_t>(size)) == 0;
}

bool seekHandle(int handle, std::uint64_t position) {
    return ::lseek(handle, static_cast<off_t>(position), SEEK_SET) >= 0;
}

std::int64_t sizeOf(int handle) {
    struct stat status {};
    return ::fstat(handle, &status) == 0 ? status.st_size : -1;
}

bool copyOwner(int from, int to) {
    constexpr mode_t permissions = 07777;
    struct stat theirs {};
    struct stat own {};
    if (::fstat(from, &theirs) != 0 || ::fstat(to, &own) != 0) return false;
    const bool same = own.st_uid == theirs.st_uid && own.st_gid == theirs.st_gid;
    if (!same && ::fchown(to, theirs.st_uid, theirs.st_gid) != 0) return false;
    return ::fchmod(to, theirs.st_mode & permissions) == 0;
}

auto readSome(int handle, std::span<char> buffer) {
    return ::read(handle, buffer.data(), buffer.size());
}

auto writeSome(int handle, std::string_view bytes) {
    return ::write(handle, bytes.data(), bytes.size());
}

/// Some file systems have nothing to wait for, and say so by an error.
bool flushHandle(int handle) {
    return ::fsync(handle) == 0 || errno == EINVAL || errno == ENOSYS || errno == ENOTSUP;
}

int closeHandle(int handle) {
    return ::close(handle);
}

#endif

/// Calls `transfer` again where a signal has interrupted it.
template <typename Transfer>
auto uninterrupted(const Transfer& transfer) {
    auto result = transfer();
    while (result < 0 && errno == EINTR) result = transfer();
    return result;
}

}  // namespace

File File::open(const std::filesystem::path& path, int flags, int permissions) {
    File file(uninterrupted([&] { return openFile(path, flags | always, permissions); }));
    // What a name stands for may change at any time, so what is open is looked at.
    if (file.isOpen() && !isRegular(file.handle_)) file.close();
    return file;
}

File File::forReading(const std::filesystem::path& path) {
    return open(path, O_RDONLY);
}

File File::forWriting(const std::filesystem::path& path) {
    File file = open(path, O_WRONLY | O_CREAT, allUsers);
    if (file.isOpen() && !file.resize(0)) file.close();
    return file;
}

File File::forChanging(const std::filesystem::path& path) {
    return open(path, O_WRONLY);
}

File File::forRewriting(const std::filesystem::path& path) {
    return open(path, O_RDWR);
}

File File::createNew(const std::filesystem::path& path, bool secret) {
    return open(path, O_WRONLY | O_CREAT | O_EXCL, secret ? ownerOnly : allUsers);
}

File::File(File&& other) noexcept : handle_(std::exchange(other.handle_, none)) {}

File& File::operator=(File&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
}

File::~File() {
    close();
}

std::optional<std::size_t> File::read(std::span<char> buffer) {
    if (!isOpen()) return std::nullopt;
    const auto count = uninterrupted([&] { return readSome(handle_, buffer); });
    if (count < 0) return std::nullopt;
    return static_cast<std::size_t>(count);
}

bool File::write(std::string_view bytes) {
    while (isOpen() && !bytes.empty()) {
        const auto count = uninterrupted([&] { return writeSome(handle_, bytes); });
        if (count <= 0) return false;
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return isOpen();
}

bool File::seek(std::uint64_t position) {
    return isOpen() && seekHandle(handle_, position);
}

std::optional<std::uint64_t> File::size() const {
    const std::int64_t size = isOpen() ? sizeOf(handle_) : -1;
    if (size < 0) return std::nullopt;
    return static_cast<std::uint64_t>(size);
}

bool File::resize(std::uint64_t size) {
    return isOpen() && resizeHandle(handle_, size);
}

bool File::takeAfter(const File& other) {
    return isOpen() && other.isOpen() && copyOwner(other.handle_, handle_);
}

bool File::flush() {
    return isOpen() && flushHandle(handle_);
}

bool File::close() {
    const int handle = std::exchange(handle_, none);
    return handle != none && closeHandle(handle) == 0;
}

std::optional<std::string> readWholeFile(const std::filesystem::path& path, std::uint64_t most) {
    File file = File::forReading(path);
    if (!file.isOpen()) return std::nullopt;
    std::error_code unknown;
    const std::uintmax_t size = std::filesystem::file_size(path, unknown);
    if (!unknown && size > most) return std::nullopt;
    std::string bytes;
    if (!unknown) bytes.reserve(static_cast<std::size_t>(size));
    std::array<char, readingChunk> chunk{};
    while (const std::optional<std::size_t> count = file.read(chunk)) {
        if (*count == 0) return bytes;
        if (*count > most - bytes.size()) return std::nullopt;
        bytes.append(chunk.data(), *count);
    }
    return std::nullopt;
}

}  // namespace tavinor
