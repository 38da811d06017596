// SPDX-License-Identifier: MIT
#include "platform/files/folder_flush.h"

#include <cerrno>

#include "platform/files/posix_fault.h"

namespace vantrell {

Task<Result<>> flushFolder(EventLoop& loop, int folder) {
    const int error = co_await loop.flush(folder);
    const bool noSuchThing = error == EINVAL || error == ENOSYS || error == EOPNOTSUPP;
    co_return resultFromErrno(noSuchThing ? 0 : error, "The folder cannot be brought to stable storage");
}

}  // namespace vantrell
