// SPDX-License-Identifier: MIT
#include "platform/files/folder_flush.h"

#include "platform/files/place.h"
#include "platform/files/posix_fault.h"

namespace vantrell {

namespace {

int folderError(int error) {
    const bool hasNoSuchThing = error == EINVAL || error == ENOSYS || error == EOPNOTSUPP;
    return hasNoSuchThing ? 0 : error;
}

}  // namespace

Pending<int> beginFlush(EventLoop& loop, const UniqueFd& file) {
    return {loop.queue(), [&](Ticket<int> ticket) { file.kernel().startFlush(loop.queue(), ticket, file.get()); }};
}

Task<Result<>> flushFile(OutputParts& parts, const UniqueFd& file) {
    const int error = parts.flushed(co_await beginFlush(parts.loop, file));
    if (error == 0) co_return Result<>();
    co_return outputFault(error, "The file cannot be brought to stable storage");
}

Task<Result<>> flushFolder(OutputParts& parts, const UniqueFd& folder) {
    const int error = parts.flushed(folderError(co_await beginFlush(parts.loop, folder)));
    if (error == 0) co_return Result<>();
    co_return outputFault(error, "The folder cannot be brought to stable storage");
}

Result<> flushFolderNow(Kernel& kernel, const Path& folder) {
    const UniqueFd opened = openFolder(kernel, folder);
    if (!opened) return faultFromErrno(opened.error(), folder);
    return resultFromErrno(folderError(kernel.fsync(opened.get())), folder);
}

}  // namespace vantrell
