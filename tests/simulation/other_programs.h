// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "simulation/simulated_tree.h"

namespace vantrell::test {

/// What other programs, people and the checker do with the files of a machine. Full paths; links on the way are
/// followed, and the last one by what opens a file. False, null or nothing: it could not be done. Nothing here is
/// counted, told of or hit by planned faults; what is written is as volatile as anything.
class OtherPrograms {
public:
    explicit OtherPrograms(SimulatedTree& tree) : tree_(tree) {}

    /// A new file, or new contents in the one that stands there.
    bool makeFile(const std::string& path, std::string_view bytes);
    bool append(const std::string& path, std::string_view bytes);
    /// In place, from an offset on.
    bool overwrite(const std::string& path, std::size_t offset, std::string_view bytes);
    bool truncate(const std::string& path, std::size_t size);
    /// Replaces what stands at the target.
    bool rename(const std::string& from, const std::string& to);
    bool link(const std::string& from, const std::string& to);
    /// A file, a link or an empty folder.
    bool remove(const std::string& path);
    bool makeFolder(const std::string& path) { return make(path, S_IFDIR | 0755U, {}); }
    bool makeLink(const std::string& to, const std::string& path) { return make(path, S_IFLNK | 0777U, to); }
    /// Brings the file's contents and its name (of a folder: what is in it, too) to the disk.
    bool flush(const std::string& path);

    /// What stands there, links not followed; no node when nothing does. Its mode, times and names may be read and,
    /// but for the names, changed.
    [[nodiscard]] Spot at(const std::string& path) const { return target(path, false).file; }
    /// Contents of a regular file, links not followed; null for anything else. Shared, not copied.
    [[nodiscard]] Bytes contents(const std::string& path) const;

    /// Keeps a file open, which leases show: the number to `writeTo` and `close` by; nothing when there is no file.
    std::optional<std::size_t> open(const std::string& path, bool forWriting);
    /// At the end of an open file, whatever its name is meanwhile.
    bool writeTo(std::size_t held, std::string_view bytes);
    void close(std::size_t held);
    /// Closes everything, as a cut of the power does it, or what lies on a disk that was pulled out.
    void forgetAll() { held_.clear(); }
    void forgetOn(const SimulatedDisk& disk);

private:
    struct Held {
        Spot file;
        int flags = 0;
    };
    [[nodiscard]] Target target(const std::string& path, bool follow) const;
    [[nodiscard]] Spot regular(const std::string& path) const;
    bool make(const std::string& path, mode_t mode, std::string_view bytes);
    bool write(const Spot& file, std::size_t offset, std::string_view bytes) const;

    SimulatedTree& tree_;
    std::vector<Held> held_;
};

}  // namespace vantrell::test
