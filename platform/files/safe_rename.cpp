// SPDX-License-Identifier: MIT
#include "platform/files/safe_rename.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "platform/files/file_stamp.h"

namespace vantrell {

namespace {

bool areOneFile(int oneFolder, const std::string& one, int otherFolder, const std::string& other) {
    struct stat a {};
    struct stat b {};
    return ::fstatat(oneFolder, one.c_str(), &a, AT_SYMLINK_NOFOLLOW) == 0 &&
           ::fstatat(otherFolder, other.c_str(), &b, AT_SYMLINK_NOFOLLOW) == 0 && identityOf(a) == identityOf(b);
}

int linkAndUnlink(int fromFolder, const std::string& from, int toFolder, const std::string& to) {
    if (::linkat(fromFolder, from.c_str(), toFolder, to.c_str(), 0) != 0) return errno;
    if (!areOneFile(fromFolder, from, toFolder, to)) {
        // Another file took the old name in between; neither may be lost.
        return ::unlinkat(toFolder, to.c_str(), 0) == 0 ? EBUSY : errno;
    }
    if (::unlinkat(fromFolder, from.c_str(), 0) == 0) return 0;
    const int error = errno;
    return ::unlinkat(toFolder, to.c_str(), 0) == 0 ? error : errno;
}

}  // namespace

int renameNoReplace(int fromFolder, const std::string& from, int toFolder, const std::string& to) {
    if (::renameat2(fromFolder, from.c_str(), toFolder, to.c_str(), RENAME_NOREPLACE) == 0) return 0;
    if (errno != EINVAL && errno != ENOSYS) return errno;
    return linkAndUnlink(fromFolder, from, toFolder, to);
}

}  // namespace vantrell
