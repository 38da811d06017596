// SPDX-License-Identifier: MIT
#include "platform/files/nameless_support.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "platform/files/temporary_name.h"
#include "platform/files/unique_fd.h"

namespace vantrell {

namespace {

constexpr mode_t kOrdinaryMode = 0666;

bool tryOut(int folder) {
    const UniqueFd file(openNameless(folder));
    const std::string name = makeTemporaryName();
    return file && nameTheNameless(file.get(), folder, name) == 0 && ::unlinkat(folder, name.c_str(), 0) == 0;
}

}  // namespace

int openNameless(int folder) { return ::openat(folder, ".", O_TMPFILE | O_RDWR | O_CLOEXEC, kOrdinaryMode); }

int nameTheNameless(int file, int folder, const std::string& name) {
    const std::string self = "/proc/self/fd/" + std::to_string(file);
    return ::linkat(AT_FDCWD, self.c_str(), folder, name.c_str(), AT_SYMLINK_FOLLOW) == 0 ? 0 : errno;
}

bool NamelessSupport::worksIn(int folder) {
    struct stat status {};
    if (!allowed_ || ::fstat(folder, &status) != 0) return false;
    const auto found = known_.find(status.st_dev);
    if (found != known_.end()) return found->second;
    return known_[status.st_dev] = tryOut(folder);
}

}  // namespace vantrell
