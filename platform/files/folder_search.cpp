// SPDX-License-Identifier: MIT
#include "platform/files/folder_search.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "platform/files/file_stamp.h"
#include "platform/files/folder_descent.h"
#include "platform/files/folder_reader.h"
#include "platform/files/posix_fault.h"
#include "platform/files/temporary_name.h"

namespace vantrell {

namespace {

constexpr std::size_t kBatch = 256;

// Folders that are not there are not met either. A fault: whether one of them lies in the way cannot be told.
Result<std::vector<FileIdentity>> identitiesOf(Kernel& kernel, const std::vector<Path>& folders) {
    std::vector<FileIdentity> identities;
    for (const Path& folder : folders) {
        struct stat status {};
        const int error = kernel.fstatat(AT_FDCWD, folder.c_str(), status, 0);
        if (error != 0 && error != ENOENT && error != ENOTDIR)
            return outputFault(error, "The folder cannot be looked at");
        if (error == 0 && S_ISDIR(status.st_mode)) identities.push_back(identityOf(status));
    }
    return identities;
}

bool isOurTemporary(const FolderEntry& entry) {
    std::string_view name = entry.key;
    if (entry.isFolder) name.remove_suffix(1);
    return isTemporaryName(name);
}

class Search {
public:
    Search(OutputParts& parts, UseProbe& probe, SearchOrder order)
        : loop_(parts.loop),
          probe_(probe),
          order_(std::move(order)),
          notEntered_(identitiesOf(parts.kernel, order_.notEntered)),
          descent_(parts.source.openFolder(parts.kernel, order_.folder)),
          path_(order_.folder) {
        if (!path_.ends_with(kPathSeparator)) path_ += kPathSeparator;
    }

    Task<std::vector<Path>> run() {
        reportUnread(path_, descent_.topOpened());
        // Originals that lie in Done would be found and encrypted again.
        if (!notEntered_.ok()) order_.notRead(order_.folder, notEntered_.fault());
        if (descent_.topOpened().ok() && notEntered_.ok()) co_await openLevel();
        for (std::size_t count = 1; !levels_.empty(); ++count) {
            Level& level = levels_.back();
            if (level.next == level.entries.size()) {
                co_await leaveLevel();
            } else {
                const FolderEntry entry = std::move(level.entries[level.next++]);
                if (!entry.isFolder) add(entry.key);
                if (entry.isFolder && canEnter(entry)) co_await openLevel();
            }
            if (count % kBatch != 0 && (levels_.empty() || !levels_.back().isLookedAt)) continue;
            if (order_.isStopped && order_.isStopped()) break;
            co_await loop_.breathe();
        }
        co_return std::move(found_);
    }

private:
    struct Level {
        std::vector<FolderEntry> entries;
        std::size_t next = 0;
        std::size_t pathSize = 0;
        bool isLookedAt = false;  ///< nobody tells of writers here
    };

    void add(const std::string& name) {
        Path path = path_ + name;
        const bool isHeldLater = !order_.willBeHeld || order_.willBeHeld(path);
        if (levels_.back().isLookedAt && isHeldLater) probe_.lookAhead(descent_.current(), name.c_str());
        found_.push_back(std::move(path));
    }

    Task<void> openLevel() {
        Level level;
        level.pathSize = path_.size();
        level.isLookedAt = !probe_.isLocal(descent_.current());
        reportUnread(path_, co_await readFolder(loop_, descent_.current(), level.entries, order_.isStopped));
        std::erase_if(level.entries, isOurTemporary);
        co_await sortByKey(loop_, level.entries);
        levels_.push_back(std::move(level));
    }

    Task<void> leaveLevel() {
        co_await release(loop_, std::move(levels_.back().entries));
        levels_.pop_back();
        if (levels_.empty()) co_return;
        descent_.leave();
        path_.resize(levels_.back().pathSize);
    }

    bool canEnter(const FolderEntry& entry) {
        if (!order_.recurse) return false;
        const std::string name = entry.key.substr(0, entry.key.size() - 1);
        struct stat status {};
        if (descent_.current().statusOf(name.c_str(), status) != 0 || isLeftOut(status)) return false;
        if (const Result<> entered = descent_.enter(name); !entered.ok()) {
            reportUnread(path_ + name, entered);
            return false;
        }
        path_ += entry.key;
        // Another folder may have come under the name.
        if (descent_.current().status(status) == 0 && !isLeftOut(status)) return true;
        descent_.leave();
        path_.resize(levels_.back().pathSize);
        return false;
    }
    [[nodiscard]] bool isLeftOut(const struct stat& status) const {
        const std::vector<FileIdentity>& folders = notEntered_.value();
        return std::find(folders.begin(), folders.end(), identityOf(status)) != folders.end();
    }
    void reportUnread(Path folder, const Result<>& read) const {
        if (read.ok() || read.failedWith(FaultKind::notThere)) return;
        if (folder.size() > 1 && folder.ends_with(kPathSeparator)) folder.pop_back();
        order_.notRead(folder, read.fault());
    }

    EventLoop& loop_;
    UseProbe& probe_;
    SearchOrder order_;
    Result<std::vector<FileIdentity>> notEntered_;
    FolderDescent descent_;
    Path path_;
    std::vector<Level> levels_;
    std::vector<Path> found_;
};

}  // namespace

Task<std::vector<Path>> searchFolder(OutputParts& parts, UseProbe& probe, SearchOrder order) {
    Search search(parts, probe, std::move(order));
    co_return co_await search.run();
}

}  // namespace vantrell
