// SPDX-License-Identifier: MIT
#pragma once

#include <sys/resource.h>

#include <csignal>

namespace vantrell::test {

/// While it lives, no file grows beyond this size: the system writes what fits and refuses the rest, as on a full disk.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
        ::getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit limit{bytes, before_.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;
    ~FileSizeLimit() {
        ::setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, handler_);
    }

private:
    void (*handler_)(int);
    rlimit before_{};
};

}  // namespace vantrell::test
