// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "platform/files/kernel.h"
#include "platform/files/temporary_name.h"

namespace vantrell::test {

/// Hands every call on to another kernel.
class ForwardingKernel : public Kernel {
public:
    explicit ForwardingKernel(Kernel& real) : real_(real) {}

    int openat(int folder, const char* path, int flags, mode_t mode) override {
        return real_.openat(folder, path, flags, mode);
    }
    ssize_t read(int file, std::span<std::byte> into) override { return real_.read(file, into); }
    ssize_t pread(int file, std::span<std::byte> into, off_t at) override { return real_.pread(file, into, at); }
    ssize_t write(int file, std::span<const std::byte> bytes) override { return real_.write(file, bytes); }
    ssize_t pwrite(int file, std::span<const std::byte> bytes, off_t at) override {
        return real_.pwrite(file, bytes, at);
    }
    ssize_t getdents64(int folder, std::span<std::byte> into) override { return real_.getdents64(folder, into); }
    ssize_t flistxattr(int file, std::span<char> names) override { return real_.flistxattr(file, names); }
    ssize_t fgetxattr(int file, const char* name, std::span<char> value) override {
        return real_.fgetxattr(file, name, value);
    }
    ssize_t getrandom(std::span<std::byte> into) override { return real_.getrandom(into); }
    int fstat(int file, struct stat& into) override { return real_.fstat(file, into); }
    int fstatat(int folder, const char* path, struct stat& into, int flags) override {
        return real_.fstatat(folder, path, into, flags);
    }
    int statx(int folder, const char* path, int flags, unsigned mask, struct statx& into) override {
        return real_.statx(folder, path, flags, mask, into);
    }
    int fstatfs(int file, struct statfs& into) override { return real_.fstatfs(file, into); }
    int faccessat(int folder, const char* path, int mode, int flags) override {
        return real_.faccessat(folder, path, mode, flags);
    }
    int linkat(int fromFolder, const char* from, int toFolder, const char* to) override {
        return real_.linkat(fromFolder, from, toFolder, to);
    }
    int linkOpenFile(int file, int folder, const char* name) override { return real_.linkOpenFile(file, folder, name); }
    int renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags) override {
        return real_.renameat2(fromFolder, from, toFolder, to, flags);
    }
    int unlinkat(int folder, const char* path, int flags) override { return real_.unlinkat(folder, path, flags); }
    int mkdirat(int folder, const char* path, mode_t mode) override { return real_.mkdirat(folder, path, mode); }
    int fsync(int file) override { return real_.fsync(file); }
    int fdatasync(int file) override { return real_.fdatasync(file); }
    int ftruncate(int file, off_t size) override { return real_.ftruncate(file, size); }
    int futimens(int file, const std::array<timespec, 2>& times) override { return real_.futimens(file, times); }
    int fchmod(int file, mode_t mode) override { return real_.fchmod(file, mode); }
    int chmodOpenFile(int file, mode_t mode) override { return real_.chmodOpenFile(file, mode); }
    int fchown(int file, uid_t owner, gid_t group) override { return real_.fchown(file, owner, group); }
    int fsetxattr(int file, const char* name, std::span<const char> value) override {
        return real_.fsetxattr(file, name, value);
    }
    int flock(int file, int operation) override { return real_.flock(file, operation); }
    int setLeaseSignal(int file, int signal) override { return real_.setLeaseSignal(file, signal); }
    int setLease(int file, int kind) override { return real_.setLease(file, kind); }
    void close(int file) noexcept override { real_.close(file); }
    void startFlush(RunQueue& queue, Ticket<int> ticket, int file) override { real_.startFlush(queue, ticket, file); }

private:
    Kernel& real_;
};

/// Notes, one after the other, the calls that change what is on the disk, and what they concern: paths below `root`,
/// "*" for a file without a name or with a temporary one.
class RecordingKernel final : public ForwardingKernel {
public:
    RecordingKernel(Kernel& real, std::string root) : ForwardingKernel(real), root_(std::move(root)) {}

    ssize_t write(int file, std::span<const std::byte> bytes) override {
        note("write", pathOf(file));
        return ForwardingKernel::write(file, bytes);
    }
    int linkOpenFile(int file, int folder, const char* name) override {
        note("name", pathOf(folder, name));
        return ForwardingKernel::linkOpenFile(file, folder, name);
    }
    int renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags) override {
        note("move", pathOf(fromFolder, from) + " > " + pathOf(toFolder, to));
        return ForwardingKernel::renameat2(fromFolder, from, toFolder, to, flags);
    }
    int fsync(int file) override {
        note("flush", pathOf(file));
        return ForwardingKernel::fsync(file);
    }
    int fdatasync(int file) override {
        note("flush", pathOf(file));
        return ForwardingKernel::fdatasync(file);
    }
    void startFlush(RunQueue& queue, Ticket<int> ticket, int file) override {
        note("flush", pathOf(file));
        ForwardingKernel::startFlush(queue, ticket, file);
    }

    /// What was noted since the last call.
    std::vector<std::string> taken() { return std::exchange(notes_, {}); }

private:
    void note(const std::string& what, const std::string& where) { notes_.push_back(what + " " + where); }
    [[nodiscard]] std::string shown(const std::string& path) const {
        const std::string inside = path.starts_with(root_ + "/") ? path.substr(root_.size() + 1) : path;
        const auto name = inside.rfind('/') + 1;
        const bool isTemporary = inside.ends_with(" (deleted)") || isTemporaryName(inside.substr(name));
        return isTemporary ? inside.substr(0, name) + "*" : inside;
    }
    [[nodiscard]] std::string pathOf(int file) const {
        std::error_code gone;
        return shown(std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(file), gone));
    }
    [[nodiscard]] std::string pathOf(int folder, const char* name) const {
        return *name == '/' ? shown(name) : shown(pathWithin(folder) + "/" + name);
    }
    [[nodiscard]] static std::string pathWithin(int folder) {
        std::error_code gone;
        return std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(folder), gone);
    }

    std::string root_;
    std::vector<std::string> notes_;
};

}  // namespace vantrell::test
