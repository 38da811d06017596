// SPDX-License-Identifier: MIT
#include "transport/namesakes.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <utility>

#include "base/folded_name.h"

namespace vantrell {

namespace {

// In the place of a mark: no file has it.
constexpr char kHasLeft[] = "left";
constexpr char kUnknown[] = "unknown";

std::string foldedNameOf(const Path& file) { return foldedName(nameOf(file)); }

std::size_t markOf(const std::string& name) { return std::hash<std::string>()(name); }

// The marks of the names that occur more than once. Marks instead of names: there may be a million of them.
Task<std::vector<std::size_t>> repeatedMarks(EventLoop& loop, const std::vector<Path>& found) {
    std::vector<std::size_t> marks;
    marks.reserve(found.size());
    for (const Path& file : found) {
        marks.push_back(markOf(foldedNameOf(file)));
        co_await loop.breathe();
    }
    std::sort(marks.begin(), marks.end());
    std::vector<std::size_t> repeated;
    for (std::size_t i = 1; i < marks.size(); ++i)
        if (marks[i] == marks[i - 1] && (repeated.empty() || repeated.back() != marks[i])) repeated.push_back(marks[i]);
    co_return repeated;
}

}  // namespace

// For each file the Source folder, its path and its mark, each followed by a NUL, which no path can hold.
Result<> Namesakes::read() {
    const Result<std::string> text = files_.read(list_, std::numeric_limits<std::size_t>::max());
    isLoaded_ = text.ok() || text.failedWith(FaultKind::notThere);
    if (!isLoaded_) return text.fault();
    if (text.ok()) stored_ = text.value();
    std::vector<std::string> fields;
    for (std::size_t begin = 0, end = 0; (end = stored_.find('\0', begin)) != std::string::npos; begin = end + 1)
        fields.push_back(stored_.substr(begin, end - begin));
    for (std::size_t i = 0; i + 2 < fields.size(); i += 3)
        groups_[{fields[i], foldedNameOf(fields[i + 1])}][fields[i + 1]].mark = fields[i + 2];
    return {};
}

// An earlier run may have been killed after it took a file away and before that was on the disk. As long as a cut of
// the power can bring the file back, its name is not settled.
Task<Result<>> Namesakes::load(FileToolbox& toolbox) {
    if (isLoaded_) co_return Result<>();
    const Result<> done = read();
    const bool isEmpty = groups_.empty();
    if (!done.ok() || isEmpty) co_return done;
    Result<> flushed = co_await toolbox.flushFolders({source_});
    isLoaded_ = flushed.ok();
    if (!isLoaded_) groups_.clear();
    co_return flushed;
}

void Namesakes::compare(const Result<std::string>& mark, Member& with) {
    with.isInSource = !mark.ok() || !mark.value().empty();
    if (!mark.ok()) return;
    // Another file under the path means that the one before it has left.
    with.hasLeft |= mark.value() != with.mark;
    if (with.isInSource) with.mark = mark.value();
}

Task<void> Namesakes::lookForListed(EventLoop& loop, const FileToolbox& toolbox) {
    for (auto& [name, group] : groups_) {
        if (name.first != source_) continue;
        for (auto& [file, member] : group) {
            compare(toolbox.markOf(file), member);
            co_await loop.breathe();
        }
    }
}

Task<void> Namesakes::add(EventLoop& loop, const FileToolbox& toolbox, const std::vector<Path>& found) {
    const std::vector<std::size_t> repeated = co_await repeatedMarks(loop, found);
    const bool areAny = !groups_.empty() || !repeated.empty();
    for (std::size_t i = 0; areAny && i < found.size(); ++i) {
        const Name name = nameIn(found[i]);
        const bool isRepeated =
            std::binary_search(repeated.begin(), repeated.end(), markOf(name.second)) || groups_.contains(name);
        if (isRepeated) {
            Result<std::string> mark = toolbox.markOf(found[i]);
            groups_[name].try_emplace(found[i], Member{mark.ok() ? mark.take() : kUnknown});
        }
        co_await loop.breathe();
    }
}

Task<Result<>> Namesakes::begin(EventLoop& loop, FileToolbox& toolbox, Path source, const std::vector<Path>& found,
                                bool isSettled) {
    source_ = std::move(source);
    if (const Result<> loaded = co_await load(toolbox); !loaded.ok()) co_return loaded;
    co_await lookForListed(loop, toolbox);
    co_await add(loop, toolbox, found);
    if (isSettled) dropSettled();
    co_return store();
}

bool Namesakes::mustWait(const Path& file) const {
    return !isLoaded_ || (!isStored_ && groups_.contains(nameIn(file)));
}

Result<bool> Namesakes::isTaken(const FileToolbox& toolbox, const Path& file, const Path& folder,
                                const std::string& ending) const {
    const auto group = groups_.find(nameIn(file));
    if (group == groups_.end()) return false;
    const Path target = joinPath(folder, nameOf(file) + ending);
    for (const auto& [other, member] : group->second) {
        if (other == file || !member.hasLeft) continue;
        const Path place = joinPath(folder, nameOf(other) + ending);
        if (toolbox.kindOf(place) == EntryKind::missing) continue;
        if (place == target || toolbox.hasUncertainNames(folder)) return true;
        Result<bool> isSame = toolbox.isSameFile(place, target);
        if (!isSame.ok() || isSame.value()) return isSame;
    }
    return false;
}

Namesakes::Name Namesakes::nameIn(const Path& file) const { return {source_, foldedNameOf(file)}; }

Namesakes::Member* Namesakes::find(const Path& file) {
    const auto group = groups_.find(nameIn(file));
    if (group == groups_.end()) return nullptr;
    const auto member = group->second.find(file);
    return member == group->second.end() ? nullptr : &member->second;
}

void Namesakes::carried(const Path& file) {
    Member* const member = find(file);
    if (member == nullptr) return;
    member->isInSource = false;
    member->hasLeft = true;
}

void Namesakes::rejected(const Path& file) {
    if (Member* const member = find(file); member != nullptr) member->isInSource = false;
}

void Namesakes::end() {
    if (!isLoaded_) return;
    dropSettled();
    static_cast<void>(store());
}

// A name is settled when none of its files is left in Source, or one and no other was carried.
void Namesakes::dropSettled() {
    for (auto& [name, group] : groups_)
        std::erase_if(group, [](const auto& entry) { return !entry.second.isInSource && !entry.second.hasLeft; });
    std::erase_if(groups_, [this](const auto& entry) {
        const Group& group = entry.second;
        // What is known of another Source folder stays until that one is searched again.
        if (entry.first.first != source_) return false;
        const bool isAnyLeft =
            std::any_of(group.begin(), group.end(), [](const auto& one) { return one.second.isInSource; });
        return !isAnyLeft || group.size() == 1;
    });
}

Result<> Namesakes::store() {
    std::string text;
    for (const auto& [name, group] : groups_)
        for (const auto& [file, member] : group)
            text += name.first + '\0' + file + '\0' + (member.hasLeft ? kHasLeft : member.mark) + '\0';
    Result<> done;
    // One that was read may have got its name without being on the disk.
    const bool isDoubtful = !isSure_ && !text.empty();
    if (text != stored_ || isDoubtful) done = text.empty() ? files_.remove(list_) : files_.writeAtomically(list_, text);
    isStored_ = done.ok();
    isSure_ = isSure_ || done.ok();
    if (done.ok()) stored_ = std::move(text);
    return done;
}

}  // namespace vantrell
