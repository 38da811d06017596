// SPDX-License-Identifier: MIT
#include "platform/files/folder_flush.h"

#include "platform/files/place.h"
#include "platform/files/posix_fault.h"

namespace vantrell {

namespace {

Result<> resultOfFlush(int error, std::string_view what) {
    const bool hasNoSuchThing = error == EINVAL || error == ENOSYS || error == EOPNOTSUPP;
    return resultFromErrno(hasNoSuchThing ? 0 : error, what);
}

}  // namespace

Pending<int> beginFlush(EventLoop& loop, const UniqueFd& file) {
    return {loop.queue(), [&](Ticket<int> ticket) { file.kernel().startFlush(loop.queue(), ticket, file.get()); }};
}

Task<Result<>> flushFolder(EventLoop& loop, const UniqueFd& folder) {
    const int error = co_await beginFlush(loop, folder);
    co_return resultOfFlush(error, "The folder cannot be brought to stable storage");
}

Result<> flushFolderNow(Kernel& kernel, const Path& folder) {
    const UniqueFd opened = openFolder(kernel, folder);
    return opened ? resultOfFlush(kernel.fsync(opened.get()), folder) : faultFromErrno(opened.error(), folder);
}

}  // namespace vantrell
