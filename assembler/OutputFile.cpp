#include "assembler/OutputFile.h"

#include <ios>
#include <system_error>

namespace tavinor {

/// Opening a pipe would wait for a reader, maybe for ever.
OutputFile::OutputFile(const std::filesystem::path& path) {
    std::error_code error;
    if (!std::filesystem::is_fifo(path, error)) file_.open(path, std::ios::binary | std::ios::trunc);
}

bool OutputFile::finish(std::string_view contents) {
    file_.write(contents.data(), static_cast<std::streamsize>(contents.size()));
    file_.close();
    return file_.good();
}

}  // namespace tavinor
