#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

namespace tavinor::test {

/// A folder of its own for a test, gone with all its files when the test ends. All users may read it.
class TemporaryFolder {
  public:
    TemporaryFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "tavinor-XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("cannot make a temporary folder");
        path_ = name;
        using std::filesystem::perms;
        std::filesystem::permissions(path_, perms::owner_all | perms::group_read | perms::group_exec |
                                                perms::others_read | perms::others_exec);
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }
    [[nodiscard]] std::filesystem::path operator/(std::string_view name) const { return path_ / name; }

    /// Writes a file, byte by byte as given, and returns its path.
    std::filesystem::path write(const std::string& name, std::string_view content) const {
        const std::filesystem::path file = path_ / name;
        std::ofstream out(file, std::ios::binary);
        out.write(content.data(), static_cast<std::streamsize>(content.size()));
        out.close();
        if (!out) throw std::runtime_error("cannot write a test file");
        return file;
    }

  private:
    std::filesystem::path path_;
};

}  // namespace tavinor::test
