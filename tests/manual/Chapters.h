#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

/// The chapters of the manual, as the tests read them.
namespace tavinor::manual {

struct Block {
    std::string place;  ///< File and line.
    std::string kind;
    std::string text;
};

/// The files in the order of their numbers.
std::vector<std::filesystem::path> chapters();

/// Everything between "```kind" and "```".
std::vector<Block> blocksOf(const std::filesystem::path& path);

/// The rows of all tables, without the rules below their headings; each as its cells, without the blanks
/// around them.
std::vector<std::vector<std::string>> tableRowsOf(const std::filesystem::path& path);

/// Everything between two backticks.
std::vector<std::string> codeIn(std::string_view text);

}  // namespace tavinor::manual
