// SPDX-License-Identifier: MIT
#include "platform/files/safe_rename.h"

#include <cstdio>

#include "platform/files/file_stamp.h"

namespace vantrell {

namespace {

bool areOneFile(const UniqueFd& oneFolder, const char* one, const UniqueFd& otherFolder, const char* other) {
    struct stat a {};
    struct stat b {};
    return oneFolder.statusOf(one, a) == 0 && otherFolder.statusOf(other, b) == 0 && identityOf(a) == identityOf(b);
}

int linkAndUnlink(const UniqueFd& fromFolder, const char* from, const UniqueFd& toFolder, const char* to) {
    if (const int error = fromFolder.kernel().linkat(fromFolder.get(), from, toFolder.get(), to); error != 0)
        return error;
    // Another file took the old name in between; neither may be lost.
    const int error = areOneFile(fromFolder, from, toFolder, to) ? fromFolder.unlink(from) : EBUSY;
    if (error == 0) return 0;
    const int notUndone = toFolder.unlink(to);
    return notUndone == 0 ? error : notUndone;
}

}  // namespace

int renameNoReplace(const UniqueFd& fromFolder, const std::string& from, const UniqueFd& toFolder,
                    const std::string& to) {
    const int error =
        fromFolder.kernel().renameat2(fromFolder.get(), from.c_str(), toFolder.get(), to.c_str(), RENAME_NOREPLACE);
    if (error != EINVAL && error != ENOSYS) return error;
    return linkAndUnlink(fromFolder, from.c_str(), toFolder, to.c_str());
}

}  // namespace vantrell
