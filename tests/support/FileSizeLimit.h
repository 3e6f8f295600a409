#pragma once

#include <sys/resource.h>

#include <csignal>

namespace tavinor::test {

/// Stands in for a disk that is full after `bytes` of a file: while it lives, writes beyond that fail.
class FileSizeLimit {
  public:
    explicit FileSizeLimit(rlim_t bytes) {
        getrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit small{bytes, before_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &small);
    }
    ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &before_); }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

  private:
    rlimit before_{};
};

}  // namespace tavinor::test
