#pragma once

#include <sys/resource.h>
#include <unistd.h>

#include <fstream>

namespace tavinor::test {

/// While it is there, no large work may begin: the process has so little memory left that the program takes
/// it for its reserve. What is small still gets what it needs.
class MemoryLimit {
  public:
    MemoryLimit() {
        constexpr rlim_t room = 16 * 1024 * 1024;
        std::ifstream statm("/proc/self/statm");
        rlim_t pages = 0;
        for (int column = 0; column <= dataColumn; ++column) statm >> pages;
        getrlimit(RLIMIT_DATA, &before_);
        const rlimit little{pages * static_cast<rlim_t>(sysconf(_SC_PAGESIZE)) + room, before_.rlim_max};
        setrlimit(RLIMIT_DATA, &little);
    }
    MemoryLimit(const MemoryLimit&) = delete;
    MemoryLimit& operator=(const MemoryLimit&) = delete;
    ~MemoryLimit() { setrlimit(RLIMIT_DATA, &before_); }

  private:
    static constexpr int dataColumn = 5;

    rlimit before_{};
};

}  // namespace tavinor::test
