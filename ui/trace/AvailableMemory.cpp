#include "ui/trace/AvailableMemory.h"

#include <limits>

#if defined(_WIN32)
#include <windows.h>
#elif defined(__linux__)
#include <fstream>
#include <string>
#endif

namespace tavinor {

#if defined(_WIN32)

std::uint64_t availableMemory() {
    MEMORYSTATUSEX status{};
    status.dwLength = sizeof status;
    return GlobalMemoryStatusEx(&status) != 0 ? status.ullAvailPhys
                                              : std::numeric_limits<std::uint64_t>::max();
}

#elif defined(__linux__)

std::uint64_t availableMemory() {
    std::ifstream meminfo("/proc/meminfo");
    std::string name;
    std::uint64_t kilobytes = 0;
    std::string unit;
    while (meminfo >> name >> kilobytes) {
        if (name == "MemAvailable:") return kilobytes * 1024;
        std::getline(meminfo, unit);
    }
    return std::numeric_limits<std::uint64_t>::max();
}

#else

std::uint64_t availableMemory() {
    return std::numeric_limits<std::uint64_t>::max();
}

#endif

}  // namespace tavinor
