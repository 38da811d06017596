// SPDX-License-Identifier: MIT
#include "platform/files/folder_reader.h"

#include <dirent.h>

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

#include "base/path.h"
#include "platform/files/posix_fault.h"

namespace vantrell {

namespace {

// So many entries are dealt with between two looks at the clock: well below a millisecond.
constexpr std::size_t kBatch = 512;

// The entries of a folder one after the other, in no order, from a position of its own.
class EntryStream {
public:
    explicit EntryStream(const UniqueFd& folder)
        : folder_(folder.open(".", O_RDONLY | O_DIRECTORY | O_CLOEXEC)), buffer_(kBufferBytes) {}

    /// Null at the end; valid until the next call.
    Result<const dirent64*> next() {
        if (!folder_) return faultFromErrno(folder_.error(), kFolderCannotBeRead);
        if (at_ == end_) {
            const ssize_t count = folder_.kernel().getdents64(folder_.get(), buffer_);
            if (count < 0) return faultFromErrno(static_cast<int>(-count), kFolderCannotBeRead);
            at_ = 0;
            end_ = static_cast<std::size_t>(count);
        }
        if (at_ == end_) return nullptr;
        // The kernel aligns entries within a buffer that is aligned, as what `new` gives is.
        const void* const bytes = buffer_.data() + at_;
        const auto* const entry = static_cast<const dirent64*>(bytes);
        at_ += entry->d_reclen;
        return entry;
    }

private:
    static constexpr std::size_t kBufferBytes = std::size_t{32} << 10U;

    UniqueFd folder_;
    std::vector<std::byte> buffer_;
    std::size_t at_ = 0;
    std::size_t end_ = 0;
};

mode_t kindOf(const UniqueFd& folder, const dirent64& entry) {
    if (entry.d_type != DT_UNKNOWN) return static_cast<mode_t>(DTTOIF(entry.d_type));
    struct stat status {};
    return folder.statusOf(entry.d_name, status) == 0 ? status.st_mode & S_IFMT : 0;
}

void append(std::vector<FolderEntry>& into, const UniqueFd& folder, const dirent64& entry) {
    std::string name = entry.d_name;
    if (name == "." || name == "..") return;
    const mode_t kind = kindOf(folder, entry);
    if (kind == S_IFDIR) {
        into.push_back({std::move(name) + kPathSeparator, true});
    } else if (kind == S_IFREG) {
        into.push_back({std::move(name), false});
    }
}

bool before(const FolderEntry& one, const FolderEntry& other) { return one.key < other.key; }

using Entries = std::vector<FolderEntry>;

// Merges the neighbouring sorted stretches [begin, middle) and [middle, end) into `into`.
Task<void> merge(EventLoop& loop, Entries& from, std::size_t begin, std::size_t middle, std::size_t end,
                 Entries& into) {
    std::size_t left = begin;
    std::size_t right = middle;
    while (left < middle || right < end) {
        for (std::size_t i = 0; i < kBatch && (left < middle || right < end); ++i) {
            const bool takesRight = left == middle || (right < end && before(from[right], from[left]));
            into.push_back(std::move(from[takesRight ? right++ : left++]));
        }
        co_await loop.breathe();
    }
}

}  // namespace

Task<Result<>> readFolder(EventLoop& loop, const UniqueFd& folder, Entries& into, const IsStopped& isStopped) {
    EntryStream stream(folder);
    for (std::size_t count = 1;; ++count) {
        const Result<const dirent64*> entry = stream.next();
        if (!entry.ok()) co_return entry.fault();
        if (entry.value() == nullptr) co_return Result<>();
        append(into, folder, *entry.value());
        if (count % kBatch != 0) continue;
        if (isStopped && isStopped()) co_return Result<>();
        co_await loop.breathe();
    }
}

Task<void> sortByKey(EventLoop& loop, Entries& entries) {
    const auto at = [&entries](std::size_t i) { return entries.begin() + static_cast<std::ptrdiff_t>(i); };
    for (std::size_t begin = 0; begin < entries.size(); begin += kBatch) {
        std::sort(at(begin), at(std::min(begin + kBatch, entries.size())), before);
        co_await loop.breathe();
    }
    for (std::size_t width = kBatch; width < entries.size(); width *= 2) {
        Entries merged;
        merged.reserve(entries.size());
        for (std::size_t begin = 0; begin < entries.size(); begin += 2 * width) {
            const std::size_t middle = std::min(begin + width, entries.size());
            const std::size_t end = std::min(begin + 2 * width, entries.size());
            co_await merge(loop, entries, begin, middle, end, merged);
        }
        entries.swap(merged);
    }
}

Task<void> release(EventLoop& loop, Entries entries) {
    while (entries.size() > kBatch) {
        entries.erase(entries.end() - static_cast<std::ptrdiff_t>(kBatch), entries.end());
        co_await loop.breathe();
    }
}

}  // namespace vantrell
