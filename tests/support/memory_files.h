// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstring>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

#include "platform/file_toolbox.h"

namespace vantrell::test {

/// A device in memory on which outputs are published, and which fails when the test says so.
struct MemoryDevice {
    std::map<Path, std::string> files;
    std::optional<std::size_t> room;  ///< bytes that can still be written before noSpace; none: no limit
    FileFault flushFault;
    FileFault publishFault;
    int discarded = 0;
};

class MemoryHeldFile final : public HeldFile {
public:
    explicit MemoryHeldFile(std::string bytes) : size_(bytes.size()), bytes_(std::move(bytes)) {}

    [[nodiscard]] std::uint64_t size() const override { return size_; }
    FileFault read(std::span<std::byte> into, std::size_t& got) override {
        got = std::min({into.size(), bytes_.size() - place_, mostAtOnce});
        std::memcpy(into.data(), bytes_.data() + place_, got);
        place_ += got;
        return readFault;
    }
    FileFault verify() override { return verifyFault; }

    /// What the file holds by now, while its size was taken earlier.
    void becomes(std::string bytes) { bytes_ = std::move(bytes); }

    std::size_t mostAtOnce = SIZE_MAX;
    FileFault readFault;
    FileFault verifyFault;

private:
    std::uint64_t size_;
    std::string bytes_;
    std::size_t place_ = 0;
};

class MemoryOutput final : public OutputFile {
public:
    MemoryOutput(MemoryDevice& device, Path folder) : device_(device), folder_(std::move(folder)) {}

    Task<FileFault> write(std::span<const std::byte> bytes) override {
        if (device_.room && *device_.room < bytes.size()) co_return FileFault{FaultKind::noSpace, "memory is full"};
        if (device_.room) *device_.room -= bytes.size();
        bytes_.append(reinterpret_cast<const char*>(bytes.data()), bytes.size());
        flushed_ = false;
        co_return FileFault{};
    }
    Task<FileFault> flush() override {
        flushed_ = !device_.flushFault;
        co_return device_.flushFault;
    }
    Task<FileFault> publish(Path target, Replace replace) override {
        if (!flushed_) throw std::logic_error("published without a flush");
        if (!target.starts_with(folder_ + "/")) throw std::logic_error("published in another folder");
        if (device_.publishFault) co_return device_.publishFault;
        if (replace == Replace::never && device_.files.contains(target))
            co_return FileFault{FaultKind::nameTaken, target + " exists"};
        device_.files[target] = bytes_;
        co_return FileFault{};
    }
    Task<void> discard() override {
        ++device_.discarded;
        co_return;
    }

private:
    MemoryDevice& device_;
    Path folder_;
    std::string bytes_;
    bool flushed_ = false;
};

/// Makes outputs on a device in memory; it offers nothing else.
class MemoryToolbox final : public FileToolbox {
public:
    explicit MemoryToolbox(MemoryDevice& device) : device_(device) {}

    OutputResult createOutput(const Path& folder) override {
        if (createFault) return {nullptr, createFault};
        return {std::make_unique<MemoryOutput>(device_, folder), {}};
    }

    [[nodiscard]] EntryKind kindOf(const Path&) const override { return notOffered<EntryKind>(); }
    [[nodiscard]] bool isFolder(const Path&) const override { return notOffered<bool>(); }
    [[nodiscard]] bool isSameFolder(const Path&, const Path&) const override { return notOffered<bool>(); }
    bool makeFolder(const Path&) override { return notOffered<bool>(); }
    void clearReadOnly(const Path&) override { notOffered<bool>(); }
    Task<std::vector<Path>> search(SearchOrder) override { return notOffered<Task<std::vector<Path>>>(); }
    HoldResult hold(const Path&) override { return notOffered<HoldResult>(); }
    Task<FileFault> rename(Path, Path) override { return notOffered<Task<FileFault>>(); }
    Task<FileFault> move(MoveOrder) override { return notOffered<Task<FileFault>>(); }
    Task<FileFault> flushMoves() override { return notOffered<Task<FileFault>>(); }
    Task<FileFault> copy(Path, Path, unsigned) override { return notOffered<Task<FileFault>>(); }
    [[nodiscard]] std::chrono::system_clock::time_point fileDate(const Path&) const override {
        return notOffered<std::chrono::system_clock::time_point>();
    }
    Task<void> cleanUpAfterCrash(std::vector<Path>, Path) override { return notOffered<Task<void>>(); }

    FileFault createFault;

private:
    template <class T>
    static T notOffered() {
        throw std::logic_error("not offered in memory");
    }

    MemoryDevice& device_;
};

}  // namespace vantrell::test
