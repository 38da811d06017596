// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/data_files.h"
#include "platform/event_loop.h"
#include "platform/file_toolbox.h"

namespace vantrell {

/// Files of Source that bear the same name, or names that some file systems take for the same. In Destination and Done
/// they need the same place, and the second is no newer version of the first. Which there are is kept in the data
/// folder from the search on, since after a crash nobody could tell that what stands in Done was one of them.
///
/// For each pass: `begin`, then `carried` and `rejected` for its files, then `end`.
class Namesakes {
public:
    /// `files` outlives it.
    Namesakes(DataFiles& files, Path list) : files_(files), list_(std::move(list)) {}

    /// `found` are the files that this pass would carry from the folder `source`; what is left from earlier passes over
    /// it is merged with them. When the list could not be stored, the fault says why, and these files must wait.
    /// While a failed flush is noted, nothing `isSettled`: a file that has left may come back. `toolbox` and `found`
    /// outlive the task.
    Task<Result<>> begin(EventLoop& loop, FileToolbox& toolbox, Path source, const std::vector<Path>& found,
                         bool isSettled);
    [[nodiscard]] bool mustWait(const Path& file) const;
    /// Whether the name that the file would get in the folder, its own and then `ending`, belongs to another one that
    /// has left Source before it.
    [[nodiscard]] Result<bool> isTaken(const FileToolbox& toolbox, const Path& file, const Path& folder,
                                       const std::string& ending) const;
    void carried(const Path& file);
    void rejected(const Path& file);
    /// Forgets the names of which nothing is left to be carried. The list may stay longer than needed, which loses
    /// nothing.
    void end();

private:
    struct Member {
        std::string mark;  ///< which file stood under the path (FileToolbox::markOf)
        bool isInSource = true;
        bool hasLeft = false;  ///< a file of this path was carried, or went while nobody looked
    };
    using Group = std::map<Path, Member>;
    using Name = std::pair<Path, std::string>;  // of a Source folder; folded

    Task<Result<>> load(FileToolbox& toolbox);
    Result<> read();
    static void compare(const Result<std::string>& mark, Member& with);
    Task<void> lookForListed(EventLoop& loop, const FileToolbox& toolbox);
    Task<void> add(EventLoop& loop, const FileToolbox& toolbox, const std::vector<Path>& found);
    [[nodiscard]] Name nameIn(const Path& file) const;
    [[nodiscard]] Member* find(const Path& file);
    void dropSettled();
    Result<> store();

    DataFiles& files_;
    const Path list_;
    Path source_;  ///< of this pass
    std::map<Name, Group> groups_;
    std::string stored_;  ///< what the file holds
    bool isLoaded_ = false;
    bool isSure_ = false;  ///< that the file is on the disk as it was read
    bool isStored_ = true;
};

inline constexpr char kNamesakesName[] = "Same Names.list";

}  // namespace vantrell
