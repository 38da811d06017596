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

int renameInOneStep(const UniqueFd& fromFolder, const std::string& from, const UniqueFd& toFolder,
                    const std::string& to) {
    return fromFolder.kernel().renameat2(fromFolder.get(), from.c_str(), toFolder.get(), to.c_str(), RENAME_NOREPLACE);
}

bool needsTwoSteps(int error) { return error == EINVAL || error == ENOSYS; }

int renameNoReplace(const UniqueFd& fromFolder, const std::string& from, const UniqueFd& toFolder,
                    const std::string& to) {
    const int error = renameInOneStep(fromFolder, from, toFolder, to);
    return needsTwoSteps(error) ? linkAndUnlink(fromFolder, from.c_str(), toFolder, to.c_str()) : error;
}

}  // namespace vantrell
