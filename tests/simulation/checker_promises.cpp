// SPDX-License-Identifier: MIT
#include <algorithm>

#include "base/date_text.h"
#include "base/path.h"
#include "core/data_folder.h"
#include "simulation/checked_names.h"
#include "simulation/checker.h"

namespace vantrell::test {

using vantrell::nameOf;

namespace {

constexpr char kUntouched[] = "nobody touches this";

}  // namespace

// What holds at every moment and after every cut

Checker::Broken Checker::check(const State& state) {
    if (isExcused_) return std::nullopt;
    const std::vector<Found> found = find(state);
    if (Broken broken = checkContents(found)) return broken;
    if (Broken broken = checkOutputs(state, found)) return broken;
    return checkOriginals(state, found);
}

Checker::Broken Checker::checkContents(const std::vector<Found>& found) const {
    for (std::size_t i = 0; i < contents_.size(); ++i) {
        const Content& content = contents_[i];
        if (content.hasLeftForGood && isIn(found[i], Where::source))
            return content.path + " is in Source again, although the pass that took it from there has ended";
        if (content.excuse != Excuse::none || isFresh(content)) continue;
        if (content.where != Where::source) {
            if (!found[i].isInPlace) return content.path + ", which others had put there, is not there any more";
        } else if (!isIn(found[i], Where::source) && !isIn(found[i], Where::done) && !isIn(found[i], Where::rejected)) {
            return "the content of " + content.path + " is nowhere";
        }
    }
    return std::nullopt;
}

bool Checker::hasBorne(const Content& content, const std::string& name) {
    return std::any_of(content.names.begin(), content.names.end(),
                       [&](const std::string& one) { return lowered(one) == lowered(name); });
}

// Whether the one was made under the name after the other one.
bool Checker::isLaterOutput(const std::string& key, Id earlier, Id later) const {
    bool isMade = false;
    bool isLater = false;
    for (const Publication& one : published_) {
        if (one.key != key) continue;
        isMade |= one.original == earlier;
        isLater = one.original != earlier && (isLater || (isMade && one.original == later));
    }
    return isLater;
}

// What stands under an output's name is whole, and of what was carried last under that name.
Checker::Broken Checker::checkOutputs(const State& state, const std::vector<Found>& found) const {
    std::size_t outside = 0;
    for (const File& file : state) {
        outside += file.where == Where::outside;
        if (file.where == Where::outside && *file.bytes != kUntouched)
            return file.path + " lies outside and was changed";
        if (file.where != Where::destination || file.content() != kUnknown) continue;
        const std::string key = keyOf(withoutEnding(nameOf(file.path)));
        if (file.original() == kUnknown) return file.path + " is partial, or of no content that ever was";
        // What a disk takes for the same name may be written in another way.
        if (!hasBorne(at(file.original()), withoutEnding(nameOf(file.path))))
            return file.path + " holds " + at(file.original()).path;
        for (const Publication& other : published_) {
            if (other.folder != folderOf(file.path) || other.key != key || other.original == file.original()) continue;
            const Content& content = at(other.original);
            const bool isExcused = content.excuse != Excuse::none || content.outputsExcuse != Excuse::none;
            const bool isThere = isIn(found[static_cast<std::size_t>(other.original)], Where::source);
            if (!isExcused && !isThere && isLaterOutput(key, file.original(), other.original))
                return file.path + " is older than " + content.path + ", which has left Source";
        }
    }
    return outside == outside_ ? std::nullopt : Broken("outside the folders something was made or removed");
}

// Whatever has left Source for Done has an output.
Checker::Broken Checker::checkOriginals(const State& state, const std::vector<Found>& found) const {
    for (std::size_t i = 0; i < contents_.size(); ++i) {
        const Content& content = contents_[i];
        if (content.where != Where::source || content.excuse != Excuse::none) continue;
        if (content.outputsExcuse != Excuse::none || isFresh(content)) continue;
        // What is in the rejected folder as well was not carried.
        if (!isIn(found[i], Where::done) || isIn(found[i], Where::source) || isIn(found[i], Where::rejected)) continue;
        const std::string key = keyOf(nameOf(content.path));
        const bool stands = std::any_of(state.begin(), state.end(), [&](const File& file) {
            if (file.where != Where::destination || file.original() == kUnknown) return false;
            return file.original() == static_cast<Id>(i) || isLaterOutput(key, static_cast<Id>(i), file.original());
        });
        if (!stands) return content.path + " has left Source for Done, and there is no output of it";
    }
    return std::nullopt;
}

Checker::Broken Checker::checkData(const Copies& disks) const {
    if (isExcused_) return std::nullopt;
    std::vector<std::pair<std::string, const std::string*>> files;
    const Region& region = world_.regions()[static_cast<std::size_t>(Where::data)];
    const auto walk = [&](const auto& self, Node folder, const std::string& path) -> void {
        for (const auto& [name, node] : disks[region.disk].at(folder).names) {
            const Inode& inode = disks[region.disk].at(node);
            if (S_ISREG(inode.mode)) files.emplace_back(path + "/" + name, inode.bytes.get());
            if (S_ISDIR(inode.mode)) self(self, node, path + "/" + name);
        }
    };
    walk(walk, region.node, region.path);
    const auto isHeld = [&](const std::string& bytes) {
        return std::any_of(files.begin(), files.end(), [&](const auto& file) { return *file.second == bytes; });
    };
    unsigned live = 0;
    for (const auto& [path, bytes] : files) {
        const std::string name = nameOf(path);
        live +=
            folderOf(path) == world_.folder(Where::data) && (name == kSettingsFileName || name == kPasswordFileName);
        if (name == kSettingsFileName && !settings_.contains(*bytes)) return path + " is neither old nor new";
        const auto isIt = [&bytes = bytes](const auto& one) { return one.first == *bytes; };
        if (name == kPasswordFileName && std::none_of(passwordFiles_.begin(), passwordFiles_.end(), isIt))
            return path + " is neither old nor new";
    }
    if (live != 2) return "the settings or the passwords are gone";
    if (!isHeld(world_.firstSettings) && !world_.firstSettings.ends_with("\r\n"))
        return "what was left of the first settings was not kept";
    for (const auto& [bytes, why] : passwordFiles_)
        if (why == Excuse::none && !isHeld(bytes)) return bytes + " were lost in a restore";
    return std::nullopt;
}

// Whole lines, and each as often as it was said.
Checker::Broken Checker::checkLogs() {
    std::map<std::string, std::uint64_t> left = lines_;
    std::vector<std::string> logs;
    for (const std::string& path : world_.filesBelow(world_.folder(Where::data)))
        if (path.ends_with(" Activity.Log")) logs.push_back(path);
    for (const std::string& path : logs) {
        const Bytes text = world_.others().contents(path);
        // A start has looked at these two.
        const std::string day = nameOf(path).substr(0, 8);
        const bool isToday = day == dayStamp(world_.clock.now());
        const auto next = std::upper_bound(logs.begin(), logs.end(), path);
        const bool isMended =
            isToday || (next != logs.end() && nameOf(*next).substr(0, 8) == dayStamp(world_.clock.now()));
        for (std::size_t begin = 0; begin < text->size();) {
            const std::size_t end = std::min(text->find("\r\n", begin), text->size());
            std::uint64_t& count = left[text->substr(begin, end - begin)];
            const bool isTorn = count == 0 || end == text->size();
            const bool isUnwritten = unwrittenLogs_.contains(path);
            const Excuse why = begin == 0    ? Excuse::beforeTheFirstLine
                               : isUnwritten ? Excuse::logNotWritten
                                             : Excuse::notTheNewestLogs;
            if (isTorn && begin != 0 && isMended && !isUnwritten)
                return path + " holds a line twice, or a torn one: " + text->substr(begin, end - begin);
            if (isTorn) ++excused_[static_cast<std::size_t>(why)];
            count -= isTorn ? 0 : 1;
            begin = end + 2;
        }
    }
    return std::nullopt;
}

}  // namespace vantrell::test
