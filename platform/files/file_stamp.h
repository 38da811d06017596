// SPDX-License-Identifier: MIT
#pragma once

#include <sys/stat.h>

#include <compare>
#include <cstdint>

namespace vantrell {

/// Which file it is, whatever its names are.
struct FileIdentity {
    dev_t device = 0;
    ino_t inode = 0;
    auto operator<=>(const FileIdentity&) const = default;
};

/// A file's time: seconds since the epoch and nanoseconds.
struct FileTime {
    std::int64_t seconds = 0;
    std::int64_t nanoseconds = 0;
    auto operator<=>(const FileTime&) const = default;
};

/// What a file was at one moment. Equal stamps: nothing was written and nothing about the file was changed meanwhile.
struct FileStamp {
    FileIdentity identity;
    std::uint64_t size = 0;
    FileTime modified;
    FileTime changed;
    bool operator==(const FileStamp&) const = default;
};

inline FileIdentity identityOf(const struct stat& status) { return {status.st_dev, status.st_ino}; }
inline FileTime timeOf(const timespec& time) { return {time.tv_sec, time.tv_nsec}; }
inline FileStamp stampOf(const struct stat& status) {
    return {identityOf(status), static_cast<std::uint64_t>(status.st_size), timeOf(status.st_mtim),
            timeOf(status.st_ctim)};
}

/// Giving and taking names renews the change time only; a write also moves the modification time or the size.
inline bool isUnwritten(const struct stat& now, const FileStamp& then) {
    const FileStamp stamp = stampOf(now);
    return stamp.identity == then.identity && stamp.size == then.size && stamp.modified == then.modified;
}

}  // namespace vantrell
