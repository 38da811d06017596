// SPDX-License-Identifier: MIT
#include "platform/files/posix_io.h"

#include "platform/files/folder_flush.h"
#include "platform/files/place.h"
#include "platform/files/posix_fault.h"
#include "platform/files/safe_rename.h"
#include "platform/files/temporary_name.h"

namespace vantrell {

namespace {

template <class Write>
Result<> writeRest(std::string_view bytes, std::string_view what, Write write) {
    while (!bytes.empty()) {
        const ssize_t written = write(std::as_bytes(std::span(bytes)));
        if (written > 0) {
            bytes.remove_prefix(static_cast<std::size_t>(written));
        } else if (written != -EINTR) {
            return faultFromErrno(written == 0 ? EIO : static_cast<int>(-written), what);
        }
    }
    return {};
}

Result<> fillNewFile(const UniqueFd& file, std::string_view bytes, mode_t permissions, const Path& path) {
    // What the umask left is not what was asked for.
    if (const int error = file.kernel().fchmod(file.get(), permissions); error != 0) return faultFromErrno(error, path);
    if (Result<> done = writeAll(file, bytes, path); !done.ok()) return done.fault();
    return resultFromErrno(file.kernel().fsync(file.get()), path);
}

/// Fills a file under a temporary name, then lets `giveName` give it its own.
template <class GiveName>
Result<> writeThenName(Kernel& kernel, const Path& path, std::string_view bytes, mode_t permissions,
                       GiveName giveName) {
    const UniqueFd folder = openFolder(kernel, folderOf(path));
    if (!folder) return faultFromErrno(folder.error(), folderOf(path));
    const std::string temporary = makeTemporaryName(kernel);
    const UniqueFd file = folder.open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, permissions);
    if (!file) return faultFromErrno(file.error(), joinPath(folderOf(path), temporary));
    Result<> done = fillNewFile(file, bytes, permissions, path);
    if (done.ok()) done = resultFromErrno(giveName(folder, temporary, nameOf(path)), path);
    if (done.ok()) return flushFolderNow(kernel, folderOf(path));
    Fault fault = done.fault();
    const int error = folder.unlink(temporary.c_str());
    if (error != 0 && error != ENOENT) fault.text += "; " + temporary + " was left behind";
    return fault;
}

int renameOver(const UniqueFd& folder, const std::string& from, const std::string& to) {
    return folder.kernel().renameat2(folder.get(), from.c_str(), folder.get(), to.c_str(), 0);
}

int renameToNew(const UniqueFd& folder, const std::string& from, const std::string& to) {
    return renameNoReplace(folder, from, folder, to);
}

}  // namespace

Result<> writeAll(const UniqueFd& file, std::string_view bytes, std::string_view what) {
    return writeRest(bytes, what,
                     [&](std::span<const std::byte> rest) { return file.kernel().write(file.get(), rest); });
}

Result<> writeAllAt(const UniqueFd& file, std::string_view bytes, std::size_t offset, std::string_view what) {
    const std::size_t end = offset + bytes.size();
    return writeRest(bytes, what, [&](std::span<const std::byte> rest) {
        return file.kernel().pwrite(file.get(), rest, static_cast<off_t>(end - rest.size()));
    });
}

Result<std::size_t> readAt(const UniqueFd& file, std::span<char> into, std::size_t offset, std::string_view what) {
    const std::span<std::byte> bytes = std::as_writable_bytes(into);
    std::size_t got = 0;
    while (got < bytes.size()) {
        const ssize_t count = file.kernel().pread(file.get(), bytes.subspan(got), static_cast<off_t>(offset + got));
        if (count == 0) break;
        if (count > 0) {
            got += static_cast<std::size_t>(count);
        } else if (count != -EINTR) {
            return faultFromErrno(static_cast<int>(-count), what);
        }
    }
    return got;
}

Result<> writeAtomically(Kernel& kernel, const Path& path, std::string_view bytes, mode_t permissions) {
    return writeThenName(kernel, path, bytes, permissions, renameOver);
}

Result<> writeNew(Kernel& kernel, const Path& path, std::string_view bytes, mode_t permissions) {
    return writeThenName(kernel, path, bytes, permissions, renameToNew);
}

}  // namespace vantrell
