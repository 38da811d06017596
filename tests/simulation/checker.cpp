// SPDX-License-Identifier: MIT
#include "simulation/checker.h"

#include <algorithm>
#include <utility>

#include "base/path.h"
#include "core/data_folder.h"
#include "core/settings_format.h"
#include "platform/files/temporary_name.h"
#include "simulation/checked_names.h"
#include "transport/namesakes.h"

namespace vantrell::test {

using vantrell::nameOf;

// Other programs and people

void Checker::put(const std::string& path, Where where) {
    const Bytes bytes = world_.others().contents(path);
    contents_.push_back({bytes, path, where, Excuse::none, Excuse::none, world_.kernel.calls(), {}, {nameOf(path)}});
    known_.clear();
    othersActed();
}

void Checker::othersAct(const std::string& path) {
    const Bytes bytes = world_.others().contents(path);
    if (!bytes) return;
    const Id id = identify(bytes, false).content;
    if (id != kUnknown) excuse(at(id).excuse, Excuse::writersOwn);
}

void Checker::pathsChange(const std::string& folder) {
    for (const File& file : before_)
        if (file.content() != kUnknown && file.path.starts_with(folder)) at(file.content()).passes.clear();
}

void Checker::othersActed() { adopt(stateOf(world_.disks)); }

Checker::Broken Checker::collects(const std::string& path) {
    const Bytes bytes = world_.others().contents(path);
    const Known& known = identify(bytes, true);
    if (known.content != kUnknown) excuse(at(known.content).excuse, Excuse::writersOwn);
    if (known.content == kUnknown && known.original == kUnknown) return path + " was collected, and is nobody's output";
    if (known.original == kUnknown) return std::nullopt;
    // With it goes what stands for those whose place it has rightly taken.
    const std::string key = keyOf(withoutEnding(nameOf(path)));
    for (Id id = 0; id < static_cast<Id>(contents_.size()); ++id)
        if (id == known.original || isLaterOutput(key, id, known.original))
            excuse(at(id).outputsExcuse, Excuse::collected);
    return std::nullopt;
}

bool Checker::isWithoutOutput(const Bytes& bytes) {
    const Id id = identify(bytes, false).content;
    return id != kUnknown && at(id).outputsExcuse != Excuse::none;
}

void Checker::settingsAre(const SettingsRecord& settings) {
    if (settings == inForce_) return;
    inForce_ = settings;
    settings_.insert(formatSettings(settings));
    mayOverwrite_ |= settings.OverwriteExistingFiles;
}

void Checker::passwordIs(const std::string& password) {
    isPasswordOfThePass_ = false;
    password_ = password;
    passwords_.insert(password);
    known_.clear();
    othersActed();
}

void Checker::passwordsMayBe(const std::string& text) {
    const Bytes live = world_.others().contents(world_.dataFile(kPasswordFileName));
    for (auto& [file, why] : passwordFiles_)
        if (live && file == *live) why = Excuse::writersOwn;
    passwordFiles_.emplace_back(text, Excuse::writersOwn);
}

void Checker::passwordsAreSaved() { passwordFiles_.back().second = Excuse::none; }

// Of a question: which file may be replaced.
void Checker::allowed(const std::string& question) {
    const std::size_t end = question.find(" already exists");
    if (end == std::string::npos) return;
    const std::string name = nameOf(question.substr(0, end));
    const bool isAboutDone = question.find("The orginal file") != std::string::npos;
    const std::string& folder = isAboutDone ? ofThePass_.DoneFolder : ofThePass_.DestinationFolder;
    allowed_.insert(lowered(displayText(folder) + "/" + name + (isAboutDone ? "" : std::string(kEnding))));
}

// The program

// A name that is shared is known to the next run, until it is settled; of another one that an interrupted pass has
// taken away nobody knows.
void Checker::passHasEnded() {
    if (std::exchange(hasFlushFailed_, false)) return;
    const std::vector<Found> found = find(before_);
    const bool isSettled = world_.others().at(world_.dataFile(kNamesakesName)).node == kNoNode;
    for (Content& content : contents_) {
        const bool isThere = isIn(found[static_cast<std::size_t>(&content - contents_.data())], Where::source);
        const bool isOfRun = !content.passes.empty() && *content.passes.rbegin() >= firstPassOfRun_;
        content.hasLeftForGood |=
            content.where == Where::source && !isThere && (isOfRun || (isSettled && hasNamesake(content)));
    }
}

bool Checker::hasNamesake(const Content& content) const {
    return std::any_of(contents_.begin(), contents_.end(), [&](const Content& other) {
        return &other != &content && keyOf(nameOf(other.path)) == keyOf(nameOf(content.path)) &&
               std::any_of(content.passes.begin(), content.passes.end(),
                           [&](unsigned pass) { return other.passes.contains(pass); });
    });
}

void Checker::passBegins() {
    if (++passes_ > firstPassOfRun_) passHasEnded();
    ofThePass_ = inForce_;
    isPasswordOfThePass_ = true;
    allowed_.clear();
    mayOverwrite_ = inForce_.OverwriteExistingFiles;
    for (const File& file : before_) {
        // What lies in a private folder may be in Done as well, and goes before the search then.
        const bool isFound = (inForce_.IncludeSubfolders && !isTemporaryName(nameOf(folderOf(file.path)))) ||
                             folderOf(file.path) == inForce_.SourceFolder;
        if (file.where == Where::source && file.content() != kUnknown && isFound && !isOutput(file.path))
            at(file.content()).passes.insert(passes_);
    }
}

// A flush that failed, or a search that could not see all.
void Checker::watchFaults(const CallRecord& call) {
    const bool isFlush = call.call == Call::fsync || call.call == Call::fdatasync || call.call == Call::startFlush;
    if (isFlush && call.answer != 0 && call.answer != EINVAL) flushFailedAt_ = call.number;
    hasFlushFailed_ |= flushFailedAt_ == call.number;
    if (isFlush && call.answer == EIO && call.path().ends_with(" Activity.Log")) unwrittenLogs_.insert(call.path());
    const auto loses = [](const PlannedFault& fault) { return fault.losesData; };
    const std::vector<PlannedFault>& faults = world_.kernel.faults;
    const bool isFolder = call.first.disk != nullptr && S_ISDIR(call.first.inode().mode);
    isNameLost_ |= isFlush && call.answer == EIO && isFolder && std::any_of(faults.begin(), faults.end(), loses);
    const bool isSearch = call.call == Call::openat || call.call == Call::openat2 || call.call == Call::getdents64 ||
                          call.call == Call::fstat || call.call == Call::fstatat || call.call == Call::fstatfs;
    const long error = call.answer < 0 ? -call.answer : call.answer;
    const bool isOpen = call.call <= Call::getdents64 && call.answer >= 0;
    constexpr std::array kCommon{0L, long{ENOENT}, long{EEXIST}, long{ELOOP}, long{ENOTDIR}, long{EOPNOTSUPP}};
    if (!isSearch || isOpen || std::find(kCommon.begin(), kCommon.end(), error) != kCommon.end()) return;
    if (!call.path().starts_with(world_.folder(Where::source))) return;
    ++excused_[static_cast<std::size_t>(Excuse::notSeenBySearch)];
    for (Content& content : contents_) content.passes.erase(passes_);
}

bool Checker::isFresh(const Content& content) const {
    constexpr std::uint64_t kCallsOfTheMove = 120;
    return content.madeAt != 0 && world_.kernel.calls() < content.madeAt + kCallsOfTheMove;
}

// The note of it is made at once.
bool Checker::isFlushFaultUnnoted() const {
    constexpr std::uint64_t kCallsOfTheNote = 60;
    return flushFailedAt_ != 0 && world_.kernel.calls() < flushFailedAt_ + kCallsOfTheNote;
}

Checker::Broken Checker::called(const CallRecord& call) {
    watchFaults(call);
    if (call.changed != Changed::names && call.call != Call::ftruncate) return std::nullopt;
    if (call.path().starts_with(world_.profile + "/")) {
        if (world_.others().at(world_.dataFile("Failed Flush.note")).node != kNoNode) flushFailedAt_ = 0;
        return checkData(world_.disks);
    }
    State now = stateOf(world_.disks);
    Broken broken = judgeChanges(now);
    if (!broken) broken = check(now);
    before_ = std::move(now);
    return isExcused_ ? std::nullopt : broken;
}

// Moments

Checker::Broken Checker::afterCut(Chance& chance) {
    if (isFlushFaultUnnoted() || isNameLost_ || isExcused_) return std::nullopt;
    const Copies copy = cutCopy(chance);
    Broken broken = check(stateOf(copy));
    if (!broken) broken = checkData(copy);
    return broken ? Broken("a cut here leaves this: " + *broken) : std::nullopt;
}

// What a cut has brought back stands there again like anything else.
void Checker::adopt(State state) {
    before_ = std::move(state);
    for (const File& file : before_) {
        if (file.where == Where::done) arrivals_.try_emplace(file.path, world_.clock.sinceEpoch());
        const bool isNamed = file.where == Where::source && file.content() != kUnknown;
        if (isNamed && nameOf(file.path) != nameOf(at(file.content()).path))
            at(file.content()).names.insert(nameOf(file.path));
    }
}

Checker::Broken Checker::afterEnd(bool wasKilled, bool isCut) {
    if (isCut && isNameLost_) {
        isExcused_ = true;
        ++excused_[static_cast<std::size_t>(Excuse::lostName)];
    }
    if (wasKilled && isFlushFaultUnnoted()) {
        isExcused_ = true;
        ++excused_[static_cast<std::size_t>(Excuse::killedBeforeTheNote)];
    }
    flushFailedAt_ = 0;
    hasFlushFailed_ = false;
    firstPassOfRun_ = passes_ + 1;
    return afterLoss();
}

void Checker::excuseFresh(const std::vector<Found>& found) {
    for (std::size_t i = 0; i < contents_.size(); ++i) {
        const bool isMoved = isIn(found[i], Where::done) && !isIn(found[i], Where::source);
        if (isFresh(contents_[i]) && contents_[i].where == Where::source && isMoved)
            excuse(contents_[i].outputsExcuse, Excuse::inTheMomentOfTheMove);
    }
}

Checker::Broken Checker::afterLoss() {
    known_.clear();
    othersActed();
    const std::vector<Found> found = find(before_);
    // What is not there any more, and whose original is where it was, was never made.
    std::erase_if(published_, [&](const Publication& one) {
        return isIn(found[static_cast<std::size_t>(one.original)], Where::source) &&
               std::none_of(before_.begin(), before_.end(), [&](const File& file) {
                   return file.where == Where::destination && file.original() == one.original;
               });
    });
    excuseFresh(found);
    for (Content& content : contents_)
        if (content.excuse == Excuse::none && isFresh(content) &&
            found[static_cast<std::size_t>(&content - contents_.data())].places == 0)
            excuse(content.excuse, Excuse::inTheMomentOfTheMove);
    for (std::size_t i = 0; i < contents_.size(); ++i)
        if (contents_[i].excuse == Excuse::replacementAllowed && found[i].places != 0)
            contents_[i].excuse = Excuse::none;
    if (Broken broken = check(before_)) return broken;
    return checkData(world_.disks);
}

// What could not be written because the disk was full stays in Source.
Checker::Broken Checker::afterFullDisk(const std::string& line) {
    const auto says = [&line](const char* words) { return line.find(words) != std::string::npos; };
    if (says("FAILED: The new file cannot be written: No space left on device")) {
        for (const File& file : before_)
            if (file.where == Where::source) withoutRoom_.insert(file.content());
        return std::nullopt;
    }
    if (!says(" did not encrypt!")) {
        withoutRoom_.clear();
        return std::nullopt;
    }
    const std::vector<Found> found = find(before_);
    for (const File& file : before_)
        if (file.where == Where::rejected && file.content() != kUnknown && withoutRoom_.contains(file.content()) &&
            !isIn(found[static_cast<std::size_t>(file.content())], Where::source))
            return isExcused_ ? std::nullopt : Broken(file.path + " was rejected although the disk was full");
    return std::nullopt;
}

Checker::Broken Checker::lineLogged(const std::string& line, Chance& chance) {
    ++lines_[line];
    // What it had replaced is gone, so that it cannot be put back.
    if (line.find("it stands in the target folder") != std::string::npos) excuseFresh(find(before_));
    if (Broken broken = afterFullDisk(line)) return broken;
    const std::size_t begin = line.find("Encryped:  ");
    const std::size_t end = line.find(" - Sucessful: ");
    if (begin == std::string::npos || end == std::string::npos || isFlushFaultUnnoted() || isNameLost_ || isExcused_)
        return std::nullopt;
    const std::string name = line.substr(begin + 11, end - begin - 11);
    const std::vector<Found> found = find(before_);
    const Copies copy = cutCopy(chance);
    for (const File& file : stateOf(copy)) {
        if (file.where != Where::destination || file.original() == kUnknown) continue;
        const Found& original = found[static_cast<std::size_t>(file.original())];
        const bool isItself = original.places != 0 || at(file.original()).excuse != Excuse::none;
        if (lowered(displayText(withoutEnding(nameOf(file.path)))) == lowered(name) && isItself) return std::nullopt;
    }
    for (const Content& content : contents_) {
        const bool boreIt = std::any_of(content.names.begin(), content.names.end(),
                                        [&](const std::string& borne) { return placeOf(borne) == lowered(name); });
        if (boreIt && content.outputsExcuse != Excuse::none) return std::nullopt;
    }
    return "the log says Sucessful of " + name + ", and a cut here leaves no output of it";
}

// A question about what equals the file, or its output, is one that only our own interrupted work can have raised.
Checker::Broken Checker::questionAsked(const std::string& text) {
    if (isExcused_) return std::nullopt;
    const State state = stateOf(world_.disks);
    const bool isAboutDone = text.find("The orginal file") != std::string::npos;
    for (const File& file : state) {
        if (file.where != Where::source || file.content() == kUnknown) continue;
        if (text.find(displayText(file.path) + " already exists") == std::string::npos) continue;
        const std::string target = isAboutDone
                                       ? ofThePass_.DoneFolder + "/" + nameOf(file.path)
                                       : ofThePass_.DestinationFolder + "/" + nameOf(file.path) + std::string(kEnding);
        for (const File& standing : state) {
            if (standing.path != target) continue;
            const bool isOutputNow =
                standing.original() == file.content() && standing.known->password == password_ && isPasswordOfThePass_;
            const bool isEqual = isAboutDone ? standing.content() == file.content() : isOutputNow;
            if (isEqual) return "it asks about what it has put there itself: " + standing.path;
        }
    }
    return std::nullopt;
}

Checker::Broken Checker::atRest() {
    othersActed();
    if (isExcused_) return std::nullopt;
    for (const File& file : before_) {
        if (file.where != Where::source) continue;
        if (isTemporaryName(nameOf(folderOf(file.path)))) return file.path + " was left in a private folder";
        const bool isSearched = inForce_.IncludeSubfolders || folderOf(file.path) == inForce_.SourceFolder;
        if (isSearched && !isOutput(file.path))
            return file.path + " is not carried, although nothing keeps it from that";
    }
    for (const std::string& folder : {inForce_.DestinationFolder, inForce_.DoneFolder, inForce_.RejectFolder})
        for (const std::string& path : world_.filesBelow(folder))
            if (isTemporaryName(nameOf(path))) return path + " was left behind";
    return checkLogs();
}

}  // namespace vantrell::test
