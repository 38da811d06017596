// SPDX-License-Identifier: MIT
#include "platform/files/file_attributes.h"

#include <fcntl.h>
#include <linux/limits.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <array>
#include <string>
#include <string_view>

#include "platform/files/file_stamp.h"
#include "platform/files/unique_fd.h"

namespace vantrell {

namespace {

constexpr mode_t kPermissions = 0777;
constexpr mode_t kAllModeBits = 07777;

bool isCarried(std::string_view name) { return name.starts_with("user.") || name == "system.posix_acl_access"; }

void copyAttribute(int from, int to, const char* name) {
    std::string value(static_cast<std::size_t>(XATTR_SIZE_MAX), '\0');
    const ssize_t size = ::fgetxattr(from, name, value.data(), value.size());
    // They are extras: not every file system has them.
    if (size >= 0) static_cast<void>(::fsetxattr(to, name, value.data(), static_cast<std::size_t>(size), 0));
}

void copyExtendedAttributes(int from, int to) {
    std::string names(static_cast<std::size_t>(XATTR_LIST_MAX), '\0');
    const ssize_t size = ::flistxattr(from, names.data(), names.size());
    names.resize(size < 0 ? 0 : static_cast<std::size_t>(size));
    for (std::size_t begin = 0; begin < names.size(); begin = names.find('\0', begin) + 1) {
        const char* name = names.c_str() + begin;
        if (isCarried(name)) copyAttribute(from, to, name);
    }
}

// Links are not followed: the mode is changed through a descriptor of what stands there.
void changeMode(const UniqueFd& file, mode_t mode) {
    const std::string self = "/proc/self/fd/" + std::to_string(file.get());
    static_cast<void>(::chmod(self.c_str(), mode));
}

}  // namespace

void copyAttributes(int from, const struct stat& status, int to) {
    const bool sameOwner = ::fchown(to, status.st_uid, status.st_gid) == 0;
    copyExtendedAttributes(from, to);
    // The bits that let a program act as its owner are for that owner alone.
    const mode_t mode = status.st_mode & (sameOwner ? kAllModeBits : kPermissions);
    static_cast<void>(::fchmod(to, mode));
    const std::array<timespec, 2> times{status.st_atim, status.st_mtim};
    static_cast<void>(::futimens(to, times.data()));
}

void renewChangeTime(int folder, const char* name, const struct stat& before) {
    const UniqueFd file(::openat(folder, name, O_PATH | O_NOFOLLOW | O_CLOEXEC));
    struct stat after {};
    if (!file || ::fstat(file.get(), &after) != 0 || identityOf(after) != identityOf(before)) return;
    if (timeOf(after.st_ctim) == timeOf(before.st_ctim)) changeMode(file, after.st_mode & kAllModeBits);
}

void allowOwnerToWrite(const char* path) {
    const UniqueFd file(::open(path, O_PATH | O_NOFOLLOW | O_CLOEXEC));
    struct stat status {};
    if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return;
    if ((status.st_mode & S_IWUSR) == 0) changeMode(file, (status.st_mode & kAllModeBits) | S_IWUSR);
}

}  // namespace vantrell
