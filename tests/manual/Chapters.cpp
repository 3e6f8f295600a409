#include "tests/manual/Chapters.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <sstream>

namespace tavinor::manual {

namespace {

std::string trimmed(const std::string& text) {
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string::npos) return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

}  // namespace

std::vector<std::filesystem::path> chapters() {
    std::vector<std::filesystem::path> paths;
    for (const auto& entry : std::filesystem::directory_iterator(TAVINOR_MANUAL)) {
        if (entry.path().extension() == ".md") paths.push_back(entry.path());
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

std::vector<Block> blocksOf(const std::filesystem::path& path) {
    constexpr std::string_view fence = "```";
    std::vector<Block> blocks;
    std::ifstream file(path);
    EXPECT_TRUE(file) << path;
    bool inside = false;
    int number = 0;
    for (std::string line; std::getline(file, line);) {
        ++number;
        if (line.starts_with(fence)) {
            inside = !inside;
            if (inside) {
                const std::string place = path.filename().string() + ":" + std::to_string(number);
                blocks.push_back({place, line.substr(fence.size()), {}});
            }
        } else if (inside) {
            blocks.back().text += line + '\n';
        }
    }
    EXPECT_FALSE(inside) << path << ": a block without an end";
    return blocks;
}

std::vector<std::vector<std::string>> tableRowsOf(const std::filesystem::path& path) {
    std::vector<std::vector<std::string>> rows;
    std::ifstream file(path);
    EXPECT_TRUE(file) << path;
    for (std::string line; std::getline(file, line);) {
        if (!line.starts_with('|') || line.starts_with("|---")) continue;
        std::istringstream rest(line.substr(1));
        std::vector<std::string>& cells = rows.emplace_back();
        for (std::string cell; std::getline(rest, cell, '|');) cells.push_back(trimmed(cell));
    }
    return rows;
}

std::vector<std::string> codeIn(std::string_view text) {
    std::vector<std::string> found;
    std::istringstream rest{std::string(text)};
    std::string part;
    for (bool inside = false; std::getline(rest, part, '`'); inside = !inside) {
        if (inside) found.push_back(part);
    }
    return found;
}

}  // namespace tavinor::manual
