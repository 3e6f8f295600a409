#include "ui/common/RequiredMemory.h"

#include <algorithm>
#include <limits>
#include <new>

#include "ui/common/ControlGroups.h"

#if defined(_WIN32)
#include <windows.h>
#elif defined(__linux__)
#include <sys/resource.h>
#include <unistd.h>

#include <fstream>
#include <string>
#endif

namespace tavinor {

namespace {

constexpr std::uint64_t unlimited = std::numeric_limits<std::uint64_t>::max();

/// For the windows, a message, the views that are painted.
constexpr std::uint64_t reserve = 32 * 1024 * 1024;

#if defined(_WIN32)

/// The address space counts too: a program of 32 bits runs out of it first.
std::uint64_t room() {
    MEMORYSTATUSEX status{};
    status.dwLength = sizeof status;
    if (GlobalMemoryStatusEx(&status) == 0) return unlimited;
    return std::min({status.ullAvailPhys, status.ullAvailPageFile, status.ullAvailVirtual});
}

#elif defined(__linux__)

std::uint64_t freeInSystem() {
    std::ifstream meminfo("/proc/meminfo");
    std::string name;
    std::uint64_t kilobytes = 0;
    std::string unit;
    while (meminfo >> name >> kilobytes) {
        if (name == "MemAvailable:") return kilobytes * 1024;
        std::getline(meminfo, unit);
    }
    return unlimited;
}

std::uint64_t leftOf(decltype(RLIMIT_AS) resource, std::uint64_t used) {
    rlimit limit{};
    if (getrlimit(resource, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY) return unlimited;
    return limit.rlim_cur - std::min<std::uint64_t>(limit.rlim_cur, used);
}

/// What the limits on the process's address space and on its data leave.
std::uint64_t roomInProcess() {
    std::ifstream statm("/proc/self/statm");
    std::uint64_t size = 0;
    std::uint64_t data = 0;
    std::uint64_t other = 0;
    if (!(statm >> size >> other >> other >> other >> other >> data)) return unlimited;
    const auto page = static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
    return std::min(leftOf(RLIMIT_AS, size * page), leftOf(RLIMIT_DATA, data * page));
}

std::uint64_t room() {
    return std::min({freeInSystem(), roomInProcess(), roomInControlGroups()});
}

#else

std::uint64_t room() {
    return unlimited;
}

#endif

}  // namespace

std::uint64_t memoryLeft() {
    return room();
}

void requireMemory(std::uint64_t bytes) {
    const std::uint64_t available = memoryLeft();
    if (available < reserve || available - reserve < bytes) throw std::bad_alloc();
}

}  // namespace tavinor
