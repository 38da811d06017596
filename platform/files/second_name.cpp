// SPDX-License-Identifier: MIT
#include "platform/files/second_name.h"

#include <vector>

#include "platform/files/posix_fault.h"
#include "platform/files/posix_io.h"
#include "platform/files/safe_rename.h"
#include "platform/files/temporary_name.h"

namespace vantrell {

namespace {

constexpr std::size_t kPiece = std::size_t{256} << 10U;
constexpr int kReadFlags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
constexpr mode_t kPermissions = 07777;

// What is answered where there are no hard links, and for a file that may have no more of them.
bool hasNoLinks(int error) {
    return error == EPERM || error == EOPNOTSUPP || error == ENOSYS || error == EINVAL || error == EMLINK;
}

bool leadsTo(const Place& file, const std::string& name, const struct stat& status) {
    struct stat there {};
    return file.folder.statusOf(name.c_str(), there) == 0 && identityOf(there) == identityOf(status);
}

Result<> copyContents(const UniqueFd& from, const UniqueFd& to, const std::string& what) {
    std::vector<char> piece(kPiece);
    for (std::size_t done = 0;;) {
        const Result<std::size_t> got = readAt(from, piece, done, what);
        if (!got.ok()) return got.fault();
        if (got.value() == 0) return {};
        if (Result<> written = writeAll(to, {piece.data(), got.value()}, what); !written.ok()) return written.fault();
        done += got.value();
    }
}

// It never has wider permissions than the file, not even before they are set.
Result<> copyUnderTemporaryName(const UniqueFd& from, const struct stat& status, const UniqueFd& folder,
                                const std::string& temporary) {
    const UniqueFd to = folder.open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, status.st_mode & 0600);
    if (!to) return faultFromErrno(to.error(), temporary);
    if (Result<> copied = copyContents(from, to, temporary); !copied.ok()) return copied.fault();
    const int error = folder.kernel().fchmod(to.get(), status.st_mode & kPermissions);
    return resultFromErrno(error != 0 ? error : folder.kernel().fsync(to.get()), temporary);
}

Result<> copyTo(const UniqueFd& from, const struct stat& status, const UniqueFd& folder, const std::string& newName) {
    const std::string temporary = makeTemporaryName(folder.kernel());
    Result<> done = copyUnderTemporaryName(from, status, folder, temporary);
    if (done.ok()) done = resultFromErrno(renameNoReplace(folder, temporary, folder, newName), newName);
    // One that cannot be taken away is removed by the next start.
    if (!done.ok()) static_cast<void>(folder.unlink(temporary.c_str()));
    return done;
}

}  // namespace

Result<> keepSecondName(const Place& file, const std::string& newName) {
    const UniqueFd open = file.folder.open(file.name.c_str(), kReadFlags);
    struct stat status {};
    int error = open ? open.status(status) : open.error();
    if (error != 0) return faultFromErrno(error, file.name);
    if (!S_ISREG(status.st_mode)) return Fault{FaultKind::other, file.name + ": is no regular file"};
    Kernel& kernel = file.folder.kernel();
    if (error = kernel.fsync(open.get()); error != 0) return faultFromErrno(error, file.name);
    error = kernel.linkat(file.folder.get(), file.name.c_str(), file.folder.get(), newName.c_str());
    if (hasNoLinks(error)) return copyTo(open, status, file.folder, newName);
    // After a crash in between, the next try within the same second finds its name.
    if (error == EEXIST && leadsTo(file, newName, status)) return {};
    return resultFromErrno(error, newName);
}

}  // namespace vantrell
