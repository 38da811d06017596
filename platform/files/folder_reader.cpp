// SPDX-License-Identifier: MIT
#include "platform/files/folder_reader.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <memory>
#include <string_view>
#include <utility>

#include "base/path.h"
#include "platform/files/posix_fault.h"
#include "platform/files/unique_fd.h"

namespace vantrell {

namespace {

// So many entries are dealt with between two looks at the clock: well below a millisecond.
constexpr std::size_t kBatch = 512;

struct CloseFolder {
    void operator()(DIR* folder) const { ::closedir(folder); }
};
using OpenFolder = std::unique_ptr<DIR, CloseFolder>;

OpenFolder openStream(int folder) {
    UniqueFd own(::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    OpenFolder stream(own ? ::fdopendir(own.get()) : nullptr);
    if (stream) static_cast<void>(own.release());
    return stream;
}

mode_t kindOf(int folder, const dirent& entry) {
    if (entry.d_type != DT_UNKNOWN) return static_cast<mode_t>(DTTOIF(entry.d_type));
    struct stat status {};
    return ::fstatat(folder, entry.d_name, &status, AT_SYMLINK_NOFOLLOW) == 0 ? status.st_mode & S_IFMT : 0;
}

void append(std::vector<FolderEntry>& into, int folder, const dirent& entry) {
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

Task<Result<>> readFolder(EventLoop& loop, int folder, Entries& into, const IsStopped& isStopped) {
    const OpenFolder stream = openStream(folder);
    if (!stream) co_return faultFromErrno(errno, kFolderCannotBeRead);
    for (std::size_t count = 1;; ++count) {
        errno = 0;  // the only thing that tells a failure from the end
        const dirent* entry = ::readdir(stream.get());
        if (entry == nullptr) co_return resultFromErrno(errno, kFolderCannotBeRead);
        append(into, folder, *entry);
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
