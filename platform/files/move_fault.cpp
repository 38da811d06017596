// SPDX-License-Identifier: MIT
#include "platform/files/move_fault.h"

#include "platform/files/nameless_support.h"

#include "platform/files/posix_fault.h"
#include "platform/files/temporary_name.h"

namespace vantrell {

namespace {

bool takesFiles(const UniqueFd& folder) {
    if (openNameless(folder)) return true;
    const std::string name = makeTemporaryName(folder.kernel());
    const UniqueFd file = folder.open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
    return file && folder.unlink(name.c_str()) == 0;
}

}  // namespace

Fault moveFault(const Place& to, int error, std::string_view what) {
    Fault fault = outputFault(error, what);
    if ((error == EPERM || error == EACCES) && takesFiles(to.folder)) fault.kind = FaultKind::notPermitted;
    return fault;
}

}  // namespace vantrell
