// SPDX-License-Identifier: MIT
#include "platform/files/file_attributes.h"

#include <linux/limits.h>

#include <array>
#include <string>
#include <string_view>

#include "platform/files/file_stamp.h"
#include "platform/files/place.h"

namespace vantrell {

namespace {

constexpr mode_t kPermissions = 0777;
constexpr mode_t kAllModeBits = 07777;

bool isCarried(std::string_view name) { return name.starts_with("user.") || name == "system.posix_acl_access"; }

void copyAttribute(const UniqueFd& from, const UniqueFd& to, const char* name) {
    std::string value(static_cast<std::size_t>(XATTR_SIZE_MAX), '\0');
    const ssize_t size = from.kernel().fgetxattr(from.get(), name, value);
    // They are extras: not every file system has them.
    if (size < 0) return;
    value.resize(static_cast<std::size_t>(size));
    static_cast<void>(to.kernel().fsetxattr(to.get(), name, value));
}

void copyExtendedAttributes(const UniqueFd& from, const UniqueFd& to) {
    std::string names(static_cast<std::size_t>(XATTR_LIST_MAX), '\0');
    const ssize_t size = from.kernel().flistxattr(from.get(), names);
    names.resize(size < 0 ? 0 : static_cast<std::size_t>(size));
    for (std::size_t begin = 0; begin < names.size(); begin = names.find('\0', begin) + 1) {
        const char* name = names.c_str() + begin;
        if (isCarried(name)) copyAttribute(from, to, name);
    }
}

// Links are not followed: the mode is changed through a descriptor of what stands there.
void changeMode(const UniqueFd& file, mode_t mode) { static_cast<void>(file.kernel().chmodOpenFile(file.get(), mode)); }

}  // namespace

void copyAttributes(const UniqueFd& from, const struct stat& status, const UniqueFd& to) {
    Kernel& kernel = to.kernel();
    const bool sameOwner = kernel.fchown(to.get(), status.st_uid, status.st_gid) == 0;
    copyExtendedAttributes(from, to);
    // The bits that let a program act as its owner are for that owner alone.
    const mode_t mode = status.st_mode & (sameOwner ? kAllModeBits : kPermissions);
    static_cast<void>(kernel.fchmod(to.get(), mode));
    const std::array<timespec, 2> times{status.st_atim, status.st_mtim};
    static_cast<void>(kernel.futimens(to.get(), times));
}

void renewChangeTime(const UniqueFd& folder, const char* name, const struct stat& before) {
    struct stat after {};
    const auto isRenewed = [&] { return timeOf(after.st_ctim) != timeOf(before.st_ctim); };
    if (folder.statusOf(name, after) != 0 || isRenewed()) return;
    const UniqueFd file = folder.open(name, O_PATH | O_NOFOLLOW | O_CLOEXEC);
    if (!file || file.status(after) != 0 || identityOf(after) != identityOf(before)) return;
    if (!isRenewed()) changeMode(file, after.st_mode & kAllModeBits);
}

void allowOwnerToWrite(const UniqueFd& folder, const char* name) {
    const UniqueFd file = folder.open(name, O_PATH | O_NOFOLLOW | O_CLOEXEC);
    struct stat status {};
    if (!file || file.status(status) != 0 || !S_ISREG(status.st_mode)) return;
    if ((status.st_mode & S_IWUSR) == 0) changeMode(file, (status.st_mode & kAllModeBits) | S_IWUSR);
}

}  // namespace vantrell
