// SPDX-License-Identifier: MIT
#pragma once

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>
#include <memory>
#include <utility>

#include "platform/files/kernel.h"

namespace vantrell {

/// Owner of a descriptor, which `Close` closes.
template <class Close>
class DescriptorOwner {
public:
    DescriptorOwner() = default;
    explicit DescriptorOwner(int descriptor, Close close = {}) : descriptor_(descriptor), close_(std::move(close)) {}
    DescriptorOwner(DescriptorOwner&& other) noexcept
        : descriptor_(std::exchange(other.descriptor_, -EBADF)), close_(std::move(other.close_)) {}
    DescriptorOwner& operator=(DescriptorOwner&& other) noexcept {
        std::swap(descriptor_, other.descriptor_);
        std::swap(close_, other.close_);
        return *this;
    }
    DescriptorOwner(const DescriptorOwner&) = delete;
    DescriptorOwner& operator=(const DescriptorOwner&) = delete;
    ~DescriptorOwner() { reset(); }

    void reset() {
        if (descriptor_ >= 0) close_(std::exchange(descriptor_, -EBADF));
    }
    /// Negative when nothing is open.
    [[nodiscard]] int get() const { return descriptor_; }
    explicit operator bool() const { return descriptor_ >= 0; }

protected:
    [[nodiscard]] const Close& closer() const { return close_; }

private:
    int descriptor_ = -EBADF;
    Close close_{};
};

struct CloseByKernel {
    Kernel* kernel = nullptr;
    std::shared_ptr<const void> owner{};  ///< who closes it instead
    void operator()(int descriptor) const {
        if (!owner) kernel->close(descriptor);
    }
};

/// Owner of a file descriptor, and the way to the kernel by which it was opened; the kernel outlives it. What `openat`
/// gives may be handed over as it is: an error number is kept.
class UniqueFd : public DescriptorOwner<CloseByKernel> {
public:
    UniqueFd() = default;
    UniqueFd(Kernel& kernel, int descriptor) : DescriptorOwner(descriptor, CloseByKernel{&kernel}) {}
    /// The descriptor of another one, which stays open as long as this does.
    explicit UniqueFd(const std::shared_ptr<const UniqueFd>& owner)
        : DescriptorOwner(owner->get(), CloseByKernel{&owner->kernel(), owner}) {}

    /// Why it is not open.
    [[nodiscard]] int error() const { return -get(); }
    /// Not to be asked of one that was made empty.
    [[nodiscard]] Kernel& kernel() const { return *closer().kernel; }

    // What is asked of open files most often. 0 or the error number.
    [[nodiscard]] int status(struct stat& into) const { return kernel().fstat(get(), into); }
    /// What stands under a name in this folder, links not followed.
    [[nodiscard]] int statusOf(const char* name, struct stat& into) const {
        return kernel().fstatat(get(), name, into, AT_SYMLINK_NOFOLLOW);
    }
    /// Opens a name in this folder.
    [[nodiscard]] UniqueFd open(const char* name, int flags, mode_t mode = 0) const {
        return {kernel(), kernel().openat(get(), name, flags, mode)};
    }
    [[nodiscard]] int unlink(const char* name) const { return kernel().unlinkat(get(), name, 0); }
    /// Tells a later start, and a second running program, that this file or folder is being worked on. False when it
    /// is another's. Where the file system has no locks (NFS, for folders) nobody is told, and only a second program
    /// could mistake it.
    bool lock() const { return kernel().flock(get(), LOCK_EX | LOCK_NB) != EWOULDBLOCK; }
};

}  // namespace vantrell
