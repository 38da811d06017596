// SPDX-License-Identifier: MIT
#include "platform/files/move_fault.h"

#include "platform/files/posix_fault.h"
#include "platform/files/safe_rename.h"
#include "platform/files/temporary_name.h"

namespace vantrell {

namespace {

// Makes a file and gives it another name, as a move does.
bool takesFiles(const UniqueFd& folder) {
    const std::string name = makeTemporaryName(folder.kernel());
    const std::string other = makeTemporaryName(folder.kernel());
    const UniqueFd file = folder.open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (!file) return false;
    const bool isTaken = renameNoReplace(folder, name, folder, other) == 0;
    static_cast<void>(folder.unlink((isTaken ? other : name).c_str()));
    return isTaken;
}

}  // namespace

Fault moveFault(const Place& to, int error, std::string_view what) {
    Fault fault = namingFault(error, what);
    if ((error == EPERM || error == EACCES) && takesFiles(to.folder)) fault.kind = FaultKind::notPermitted;
    return fault;
}

}  // namespace vantrell
