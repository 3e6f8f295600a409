#include "assembler/OutputFile.h"

namespace tavinor {

bool OutputFile::finish(std::string_view contents) {
    const bool written = file_.write(contents);
    return file_.close() && written;
}

}  // namespace tavinor
