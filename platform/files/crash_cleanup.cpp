// SPDX-License-Identifier: MIT
#include "platform/files/crash_cleanup.h"

#include <algorithm>
#include <climits>
#include <utility>

#include "base/date_text.h"
#include "platform/files/disposer.h"
#include "platform/files/file_stamp.h"
#include "platform/files/folder_descent.h"
#include "platform/files/folder_flush.h"
#include "platform/files/folder_reader.h"
#include "platform/files/place.h"
#include "platform/files/safe_rename.h"
#include "platform/files/temporary_name.h"

namespace vantrell {

namespace {

bool isTheFolderAt(const UniqueFd& folder, const Path& path) {
    struct stat status {};
    return folder.status(status) == 0 && folderAt(folder.kernel(), path) == identityOf(status);
}

// Open and locked; empty when it is somebody's, or no file any more.
UniqueFd openLeftOutput(const UniqueFd& folder, const std::string& name) {
    constexpr int kFlags = O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    UniqueFd file = folder.open(name.c_str(), O_RDWR | kFlags);
    if (!file) file = folder.open(name.c_str(), O_RDONLY | kFlags);
    struct stat status {};
    const bool isOurs = file && file.lock() && file.status(status) == 0 && S_ISREG(status.st_mode);
    return isOurs ? std::move(file) : UniqueFd();
}

// `number` tells files of one name and one second apart; the first has none.
std::string datedName(const Clock& clock, const std::string& name, unsigned number) {
    const std::string date = secondStamp(clock.now()) + (number == 1 ? "" : " " + std::to_string(number)) + "_";
    // A name that is as long as names can be loses its beginning and keeps what it ends with.
    return date + name.substr(name.size() - std::min(name.size(), NAME_MAX - date.size()));
}

constexpr unsigned kMostNumbers = 1000;

class Restorer {
public:
    Restorer(OutputParts& parts, const Clock& clock, const Path& folder, std::function<bool()> isStopped)
        : parts_(parts),
          loop_(parts.loop),
          clock_(clock),
          isStopped_(std::move(isStopped)),
          descent_(parts.kernel, folder) {}

    Task<void> run() {
        levels_.push_back(co_await foldersHere());
        while (!levels_.empty() && !isStopped_()) {
            co_await loop_.breathe();
            if (levels_.back().empty()) {
                levels_.pop_back();
                if (!levels_.empty()) descent_.leave();
                continue;
            }
            const std::string name = std::move(levels_.back().back());
            levels_.back().pop_back();
            if (isTemporaryName(name)) {
                co_await restore(name);
            } else if (descent_.enter(name).ok()) {
                levels_.push_back(co_await foldersHere());
            }
        }
    }

private:
    using Names = std::vector<std::string>;

    Task<Names> foldersHere() {
        std::vector<FolderEntry> entries;
        static_cast<void>(co_await readFolder(loop_, descent_.current(), entries, {}));
        Names names;
        for (FolderEntry& entry : entries) {
            if (!entry.isFolder) continue;
            entry.key.pop_back();
            names.push_back(std::move(entry.key));
        }
        co_await release(loop_, std::move(entries));
        co_return std::move(names);
    }

    Task<void> restore(std::string folderName) {
        const UniqueFd& parent = descent_.current();
        const UniqueFd folder = parent.open(folderName.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
        if (!folder || !folder.lock()) co_return;
        std::vector<FolderEntry> entries;
        static_cast<void>(co_await readFolder(loop_, folder, entries, {}));
        bool isChanged = false;
        std::vector<std::string> linked;
        for (const FolderEntry& entry : entries) {
            if (entry.isFolder) continue;
            isChanged = true;
            if (linkBeside(folder, entry.key, parent)) linked.push_back(entry.key);
        }
        // The new names first, then the old ones go, and the folder, which stays while anything is left in it.
        if (isChanged) {
            const Result<> flushed = co_await flushFolder(parts_, parent);
            if (!flushed.ok()) co_return;
        }
        for (const std::string& name : linked) static_cast<void>(folder.unlink(name.c_str()));
        static_cast<void>(parent.kernel().unlinkat(parent.get(), folderName.c_str(), AT_REMOVEDIR));
    }

    // True when both names stand. A rename alone is enough where the file system orders its changes of names, and all
    // there is where it knows no second names.
    bool linkBeside(const UniqueFd& folder, const std::string& name, const UniqueFd& parent) {
        if (isSecondName(folder, name, parent)) return true;
        if (!parts_.systems.of(parent).ordersRenames) {
            int error = linkAt(folder, name, parent, name);
            for (unsigned number = 1; error == EEXIST && number < kMostNumbers; ++number)
                error = linkAt(folder, name, parent, datedName(clock_, name, number));
            if (error == 0) return true;
        }
        int error = renameNoReplace(folder, name, parent, name);
        for (unsigned number = 1; error == EEXIST && number < kMostNumbers; ++number)
            error = renameNoReplace(folder, name, parent, datedName(clock_, name, number));
        return false;
    }
    static int linkAt(const UniqueFd& folder, const std::string& name, const UniqueFd& parent, const std::string& to) {
        return parent.kernel().linkat(folder.get(), name.c_str(), parent.get(), to.c_str());
    }
    static bool isSecondName(const UniqueFd& folder, const std::string& name, const UniqueFd& parent) {
        struct stat one {};
        struct stat other {};
        return folder.statusOf(name.c_str(), one) == 0 && parent.statusOf(name.c_str(), other) == 0 &&
               identityOf(one) == identityOf(other);
    }

    OutputParts& parts_;
    EventLoop& loop_;
    const Clock& clock_;
    const std::function<bool()> isStopped_;
    FolderDescent descent_;
    std::vector<Names> levels_;
};

}  // namespace

Task<void> removeLeftOutputs(OutputParts& parts, Path folderPath, Path neverHere, std::function<bool()> isStopped) {
    EventLoop& loop = parts.loop;
    const UniqueFd folder = openFolder(parts.kernel, folderPath);
    if (!folder || isTheFolderAt(folder, neverHere)) co_return;
    std::vector<FolderEntry> entries;
    static_cast<void>(co_await readFolder(loop, folder, entries, {}));
    for (const FolderEntry& entry : entries) {
        co_await loop.breathe();
        if (isStopped()) break;
        if (entry.isFolder || !isTemporaryName(entry.key)) continue;
        const UniqueFd file = openLeftOutput(folder, entry.key);
        // What cannot be removed now is tried again by the next start.
        if (!file || folder.unlink(entry.key.c_str()) != 0) continue;
        co_await shrink(loop, file);
    }
    co_await release(loop, std::move(entries));
}

Task<void> restoreSources(OutputParts& parts, const Clock& clock, Path folder, std::function<bool()> isStopped) {
    Restorer restorer(parts, clock, folder, std::move(isStopped));
    co_await restorer.run();
}

}  // namespace vantrell
