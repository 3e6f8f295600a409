#include "assembler/OutputFile.h"

#include <ios>

namespace tavinor {

OutputFile::OutputFile(const std::filesystem::path& path) : file_(path, std::ios::binary | std::ios::trunc) {}

bool OutputFile::finish(std::string_view contents) {
    file_.write(contents.data(), static_cast<std::streamsize>(contents.size()));
    file_.close();
    return file_.good();
}

}  // namespace tavinor
