#pragma once

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>

#include "tests/support/OrdinaryUser.h"
#include "tests/support/TemporaryFolder.h"

namespace tavinor::test {

/// Names that a user may type, and that are no file to read from or write to.
class OddFiles {
  public:
    OddFiles() {
        namespace fs = std::filesystem;
        fs::create_directory(paths_["folder"]);
        if (mkfifo(paths_["pipe"].c_str(), 0666) != 0) throw std::runtime_error("cannot make a pipe");
        makeSocket(paths_["socket"]);
        fs::create_symlink(folder_.path() / "none/none", paths_["dangling link"]);
        fs::create_symlink(paths_["link in a circle"], paths_["link in a circle"]);
        folder_.write("locked.odd", "HLT\n");
        fs::permissions(paths_["no permission"], fs::perms::none);
        fs::permissions(folder_.path(), fs::perms::all);  // it is not the folder that refuses
    }

    [[nodiscard]] const std::filesystem::path& path(const std::string& what) const { return paths_.at(what); }

    /// Calls `act` with each of them and what it is. An ordinary user does it where the superuser would not
    /// be kept out, or might do harm to the system.
    void each(const std::function<void(const std::string& what, const std::filesystem::path&)>& act) const {
        for (const auto& [what, path] : paths_) {
            std::optional<OrdinaryUser> user;
            if (what.ends_with("device") || what == "no permission") user.emplace();
            if (!user || user->is()) act(what, path);
        }
    }

  private:
    static void makeSocket(const std::filesystem::path& path) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
        const int handle = ::socket(AF_UNIX, SOCK_STREAM, 0);
        const int bound = ::bind(handle, reinterpret_cast<const sockaddr*>(&address), sizeof address);
        ::close(handle);
        if (bound != 0) throw std::runtime_error("cannot make a socket");
    }

    TemporaryFolder folder_;
    std::map<std::string, std::filesystem::path> paths_{
        {"folder", folder_.path() / "folder.odd"},
        {"pipe", folder_.path() / "pipe.odd"},
        {"socket", folder_.path() / "socket.odd"},
        {"endless device", "/dev/zero"},
        {"full device", "/dev/full"},
        {"dangling link", folder_.path() / "dangling.odd"},
        {"link in a circle", folder_.path() / "circle.odd"},
        {"no permission", folder_.path() / "locked.odd"},
        {"vanished folder", folder_.path() / "none/file.odd"},
    };
};

}  // namespace tavinor::test
