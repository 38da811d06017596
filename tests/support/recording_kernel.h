// SPDX-License-Identifier: MIT
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include "platform/files/temporary_name.h"
#include "platform/linux/linux_kernel.h"

namespace vantrell::test {

/// The real kernel, whose flushes another one completes: the kernel that the event loop watches. A test's own one
/// overrides the calls that are to be different.
class KernelBesideLoop : public LinuxKernel {
public:
    explicit KernelBesideLoop(Kernel& watched) : watched_(watched) {}
    void startFlush(RunQueue& queue, Ticket<int> ticket, int file) override {
        watched_.startFlush(queue, ticket, file);
    }
    int openat(int folder, const char* path, int flags, mode_t mode) override {
        const bool isPlayed = !mountedAs.empty() && std::string_view(path) == "/proc/self/mountinfo";
        return isPlayed ? playedMounts() : LinuxKernel::openat(folder, path, flags, mode);
    }

    /// The type that all file systems have in the mount table ("ext2", "xfs"); empty: their own.
    std::string mountedAs;

private:
    [[nodiscard]] int playedMounts() const {
        std::ifstream mounts("/proc/self/mountinfo");
        std::string played;
        for (std::string line; std::getline(mounts, line);) {
            const std::size_t type = line.find(" - ") + 3;
            played += line.replace(type, line.find(' ', type) - type, mountedAs) + "\n";
        }
        const int file = ::memfd_create("mounts", MFD_CLOEXEC);
        return ::write(file, played.data(), played.size()) < 0 ? -EIO : file;
    }

    Kernel& watched_;
};

/// Notes, one after the other, the calls that change what is on the disk, and what they concern: paths below `root`,
/// "*" for a file without a name or with a temporary one.
class RecordingKernel final : public KernelBesideLoop {
public:
    RecordingKernel(Kernel& watched, std::string root) : KernelBesideLoop(watched), root_(std::move(root)) {}

    ssize_t write(int file, std::span<const std::byte> bytes) override {
        note("write", pathOf(file));
        return LinuxKernel::write(file, bytes);
    }
    int linkOpenFile(int file, int folder, const char* name) override {
        note("name", pathOf(folder, name));
        return LinuxKernel::linkOpenFile(file, folder, name);
    }
    int renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags) override {
        note("move", pathOf(fromFolder, from) + " > " + pathOf(toFolder, to));
        return LinuxKernel::renameat2(fromFolder, from, toFolder, to, flags);
    }
    int fsync(int file) override {
        note("flush", pathOf(file));
        return LinuxKernel::fsync(file);
    }
    int fdatasync(int file) override {
        note("flush", pathOf(file));
        return LinuxKernel::fdatasync(file);
    }
    void startFlush(RunQueue& queue, Ticket<int> ticket, int file) override {
        note("flush", pathOf(file));
        KernelBesideLoop::startFlush(queue, ticket, file);
    }

    /// What was noted since the last call.
    std::vector<std::string> taken() { return std::exchange(notes_, {}); }

private:
    void note(const std::string& what, const std::string& where) { notes_.push_back(what + " " + where); }
    [[nodiscard]] std::string shown(const std::string& path) const {
        const std::string inside = path.starts_with(root_ + "/") ? path.substr(root_.size() + 1) : path;
        const auto name = inside.rfind('/') + 1;
        // What lies in a private folder counts as that folder.
        const auto above = name < 2 ? std::string::npos : inside.rfind('/', name - 2);
        const auto outer = above == std::string::npos ? 0 : above + 1;
        if (name > 0 && isTemporaryName(inside.substr(outer, name - 1 - outer))) return inside.substr(0, outer) + "*";
        const bool isTemporary = inside.ends_with(" (deleted)") || isTemporaryName(inside.substr(name));
        return isTemporary ? inside.substr(0, name) + "*" : inside;
    }
    [[nodiscard]] std::string pathOf(int file) const { return shown(openPath(file)); }
    [[nodiscard]] std::string pathOf(int folder, const char* name) const {
        return *name == '/' ? shown(name) : shown(openPath(folder) + "/" + name);
    }
    [[nodiscard]] static std::string openPath(int file) {
        std::error_code gone;
        return std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(file), gone);
    }

    std::string root_;
    std::vector<std::string> notes_;
};

}  // namespace vantrell::test
