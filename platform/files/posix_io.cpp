// SPDX-License-Identifier: MIT
#include "platform/files/posix_io.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

#include "platform/files/posix_fault.h"
#include "platform/files/unique_fd.h"

namespace vantrell {

namespace {

template <class Write>
Result<> writeRest(std::string_view bytes, std::string_view what, Write write) {
    while (!bytes.empty()) {
        const ssize_t written = write(bytes);
        if (written > 0) {
            bytes.remove_prefix(static_cast<std::size_t>(written));
        } else if (written == 0 || errno != EINTR) {
            return faultFromErrno(written == 0 ? EIO : errno, what);
        }
    }
    return {};
}

}  // namespace

Result<> writeAll(int descriptor, std::string_view bytes, std::string_view what) {
    return writeRest(bytes, what, [&](std::string_view rest) { return ::write(descriptor, rest.data(), rest.size()); });
}

Result<> writeAllAt(int descriptor, std::string_view bytes, std::size_t offset, std::string_view what) {
    const std::size_t end = offset + bytes.size();
    return writeRest(bytes, what, [&](std::string_view rest) {
        return ::pwrite(descriptor, rest.data(), rest.size(), static_cast<off_t>(end - rest.size()));
    });
}

Result<std::size_t> readAt(int descriptor, std::span<char> into, std::size_t offset, std::string_view what) {
    std::size_t got = 0;
    while (got < into.size()) {
        const ssize_t count =
            ::pread(descriptor, into.data() + got, into.size() - got, static_cast<off_t>(offset + got));
        if (count == 0) break;
        if (count > 0) {
            got += static_cast<std::size_t>(count);
        } else if (errno != EINTR) {
            return faultFromErrno(errno, what);
        }
    }
    return got;
}

Result<> flushFolder(const Path& folder) {
    const UniqueFd descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!descriptor || ::fsync(descriptor.get()) != 0) return faultFromErrno(errno, folder);
    return {};
}

}  // namespace vantrell
