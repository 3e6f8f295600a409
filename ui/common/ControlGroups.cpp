#include "ui/common/ControlGroups.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace tavinor {

namespace {

constexpr std::uint64_t noLimit = std::numeric_limits<std::uint64_t>::max();

/// How a version of control groups calls its files.
struct GroupVersion {
    std::vector<std::string_view> mounts;  // below `root`, where the groups are folders
    std::vector<std::string_view> limits;
    std::string_view used;
    std::array<std::string_view, 2> kept;  // lines of memory.stat: what is given back when it is needed
};

const GroupVersion& first() {
    static const GroupVersion names{{"sys/fs/cgroup/memory"},
                                    {"memory.limit_in_bytes"},
                                    "memory.usage_in_bytes",
                                    {"total_inactive_file", "total_active_file"}};
    return names;
}

const GroupVersion& second() {
    static const GroupVersion names{{"sys/fs/cgroup", "sys/fs/cgroup/unified"},
                                    {"memory.max", "memory.high"},
                                    "memory.current",
                                    {"inactive_file", "active_file"}};
    return names;
}

/// Not by `std::filesystem::path`: libstdc++ 12 crashes where there is no memory for the second part.
std::string joined(const std::string& folder, std::string_view name) {
    return (folder + '/').append(name);
}

/// The number in a file; the greatest one for "max", and for a file that is not there.
std::uint64_t numberIn(const std::string& file) {
    std::ifstream stream(file);
    std::uint64_t number = 0;
    return stream >> number ? number : noLimit;
}

std::uint64_t keptIn(const std::string& group, const GroupVersion& names) {
    std::ifstream stream(joined(group, "memory.stat"));
    std::string line;
    std::uint64_t bytes = 0;
    std::uint64_t sum = 0;
    while (stream >> line >> bytes) {
        if (std::find(names.kept.begin(), names.kept.end(), line) != names.kept.end()) sum += bytes;
    }
    return sum;
}

std::uint64_t roomIn(const std::string& group, const GroupVersion& names) {
    std::uint64_t limit = noLimit;
    for (const std::string_view name : names.limits) limit = std::min(limit, numberIn(joined(group, name)));
    const std::uint64_t used = numberIn(joined(group, names.used));
    if (limit == noLimit || used == noLimit) return noLimit;
    const std::uint64_t needed = used - std::min(used, keptIn(group, names));
    return limit - std::min(limit, needed);
}

/// The least room of a group, which is a path such as "/user.slice/x", and of all those around it. Inside a
/// container some of them may not be there.
std::uint64_t roomUpFrom(const std::string& root, std::string group, const GroupVersion& names) {
    std::uint64_t room = noLimit;
    while (true) {
        for (const std::string_view mount : names.mounts) {
            room = std::min(room, roomIn(joined(root, mount) + group, names));
        }
        if (group.size() <= 1) return room;
        group.resize(std::max<std::size_t>(group.rfind('/'), 1));
    }
}

/// Whether the controllers of a line of the list of groups, such as "cpu,memory", have this one among them.
bool listed(std::string_view controllers, std::string_view controller) {
    while (!controllers.empty()) {
        const std::size_t comma = std::min(controllers.find(','), controllers.size());
        if (controllers.substr(0, comma) == controller) return true;
        controllers.remove_prefix(std::min(comma + 1, controllers.size()));
    }
    return false;
}

}  // namespace

/// Each line of the list is "number:controllers:group", without controllers in the second version.
std::uint64_t roomInControlGroups(const std::filesystem::path& place) {
    const std::string root = place.string();
    std::ifstream list(joined(root, "proc/self/cgroup"));
    std::uint64_t room = noLimit;
    for (std::string line; std::getline(list, line);) {
        const std::size_t colon = std::min(line.find(':'), line.size());
        const std::size_t slash = line.find(":/", std::min(colon + 1, line.size()));
        if (slash == std::string::npos) continue;
        const std::string controllers = line.substr(colon + 1, slash - std::min(colon + 1, slash));
        const std::string group = line.substr(slash + 1);
        if (controllers.empty()) room = std::min(room, roomUpFrom(root, group, second()));
        if (listed(controllers, "memory")) room = std::min(room, roomUpFrom(root, group, first()));
    }
    return room;
}

}  // namespace tavinor
