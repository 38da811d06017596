// SPDX-License-Identifier: MIT
#include <algorithm>

#include "base/path.h"
#include "simulation/checked_names.h"
#include "simulation/checker.h"

namespace vantrell::test {

using vantrell::nameOf;

namespace {

bool isProtected(Where where) {
    return where == Where::destination || where == Where::done || where == Where::rejected;
}

}  // namespace

// What one call has changed

Checker::Broken Checker::judgeChanges(const State& now) {
    const std::vector<Found> found = find(now);
    std::size_t next = 0;
    const auto at = [&](const std::string& path, const State& state, std::size_t& from) -> const File* {
        for (std::size_t tried = 0; tried < state.size(); ++tried) {
            const File& file = state[(from + tried) % state.size()];
            if (file.path != path) continue;
            from += tried + 1;
            return &file;
        }
        return nullptr;
    };
    for (const File& file : before_) {
        const File* const after = at(file.path, now, next);
        if (after == nullptr && file.where == Where::source) leavesSource(file.content(), now);
        if (!isProtected(file.where) || (after != nullptr && after->bytes == file.bytes)) continue;
        if (after != nullptr && *after->bytes == *file.bytes) continue;
        if (Broken broken = judge(file, after, found)) return broken;
    }
    next = 0;
    for (const File& file : now) {
        const File* const earlier = at(file.path, before_, next);
        if (earlier != nullptr && (earlier->bytes == file.bytes || *earlier->bytes == *file.bytes)) continue;
        if (Broken broken = judgeNew(file, found)) return broken;
    }
    return std::nullopt;
}

// Where the old name goes last, that changes the file once more: the clock may have been set since its arrival.
void Checker::leavesSource(Id content, const State& now) {
    for (const File& file : now)
        if (file.where == Where::done && file.content() == content)
            arrivals_[file.path] = std::min(arrivals_[file.path], world_.clock.sinceEpoch());
}

// Something that stood in a protected folder stands there no more, or is another one.
Checker::Broken Checker::judge(const File& before, const File* after, const std::vector<Found>& found) {
    const Id id =
        before.where == Where::destination && before.original() != kUnknown ? before.original() : before.content();
    const Found none;
    const Found& places = id == kUnknown ? none : found[static_cast<std::size_t>(id)];
    if (after != nullptr) {
        const Id newer = before.where == Where::destination ? after->original() : after->content();
        // Where the disk would not let the old name go, what was rejected comes from Source once more.
        const bool isRejected = newer != kUnknown && isIn(found[static_cast<std::size_t>(newer)], Where::rejected);
        if (!mayReplace(before, *after, places) && !(isRejected && mayOverwrite_))
            return before.path + " was replaced, and nobody had allowed it";
        allowed_.erase(placeOf(before.path));
        if (before.content() != kUnknown && places.places == 0) excuse(at(id).excuse, Excuse::replacementAllowed);
        return std::nullopt;
    }
    // What the program has put there is taken back, as long as the original is where it was.
    const bool isOurs = id != kUnknown && at(id).where == Where::source;
    if (isOurs && (isIn(places, Where::source) || at(id).excuse == Excuse::writersOwn)) return std::nullopt;
    if (before.where == Where::done && id != kUnknown && isOldEnough(before)) {
        excuse(at(id).excuse, Excuse::weeklyDelete);
        return std::nullopt;
    }
    return before.path + " was removed, and nobody had allowed it";
}

Checker::Broken Checker::judgeNew(const File& file, const std::vector<Found>& found) {
    if (file.where == Where::source && file.content() != kUnknown) at(file.content()).names.insert(nameOf(file.path));
    if (file.where == Where::done) arrivals_[file.path] = world_.clock.sinceEpoch();
    const Id id = file.original();
    if (file.where != Where::destination || id == kUnknown) return std::nullopt;
    published_.push_back({folderOf(file.path), keyOf(withoutEnding(nameOf(file.path))), id, passes_});
    at(id).outputsExcuse = Excuse::none;
    if (isIn(found[static_cast<std::size_t>(id)], Where::source) || at(id).excuse == Excuse::writersOwn)
        return std::nullopt;
    return file.path + " was made of a content that is not in Source";
}

// Two files of a name that one pass has found are no older and newer version of each other. The name belongs to what
// has been carried, and to what was made in this pass.
bool Checker::mayReplace(const File& before, const File& after, const Found& older) const {
    if (before.where == Where::rejected) return false;
    if (allowed_.contains(placeOf(before.path))) return true;
    if (!mayOverwrite_) return false;
    const bool areOutputs = before.where == Where::destination;
    const Id old = areOutputs ? before.original() : before.content();
    const Id fresh = areOutputs ? after.original() : after.content();
    if (old == kUnknown || fresh == kUnknown || at(old).path == at(fresh).path) return true;
    const bool isOfThisPass = std::any_of(published_.begin(), published_.end(), [&](const Publication& one) {
        return one.original == old && one.pass == passes_ && one.key == keyOf(withoutEnding(nameOf(before.path)));
    });
    if (at(old).excuse == Excuse::writersOwn || isIn(older, Where::source)) return true;
    if (isIn(older, Where::rejected) && !isOfThisPass) return true;
    // What was found before the older one was carried may not be known any more, or its list could not be stored.
    const auto first =
        std::find_if(published_.begin(), published_.end(), [&](const Publication& one) { return one.original == old; });
    const unsigned since = first == published_.end() ? 0 : first->pass;
    const std::set<unsigned>& passes = at(fresh).passes;
    return std::none_of(at(old).passes.begin(), at(old).passes.end(),
                        [&](unsigned pass) { return pass >= since && passes.contains(pass); });
}

bool Checker::isOldEnough(const File& file) const {
    const auto arrived = arrivals_.find(file.path);
    const std::chrono::hours least(24 * inForce_.WeeklyDeleteDaysOld - 1);
    return arrived != arrivals_.end() && world_.clock.sinceEpoch() - arrived->second >= least;
}

}  // namespace vantrell::test
