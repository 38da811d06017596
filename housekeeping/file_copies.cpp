// SPDX-License-Identifier: MIT
#include "housekeeping/file_copies.h"

#include <utility>

#include "base/date_text.h"
#include "core/data_folder.h"
#include "core/settings_format.h"

namespace vantrell {

namespace {

// Fifteen items never need this much, and it is small enough to be read at once.
constexpr std::size_t kMostSettingsBytes = std::size_t{1} << 20;
// So many copies of replaced passwords may bear one date.
constexpr int kMostInASecond = 9;

CopyResult resultOf(DatabaseFault fault) {
    if (fault == DatabaseFault::none) return CopyResult::copied;
    return fault == DatabaseFault::inUse ? CopyResult::locked : CopyResult::failed;
}

/// Files that were given other names get their names back unless `keep` is called.
class SetAside {
public:
    explicit SetAside(DataFiles& files) : files_(files) {}
    SetAside(const SetAside&) = delete;
    SetAside& operator=(const SetAside&) = delete;
    ~SetAside() {
        // If the old name has been taken by another file meanwhile, that file is left alone; ours still exists under
        // its dated name.
        for (const auto& [from, to] : moved_) (void)files_.setAside(to, from);
    }

    [[nodiscard]] bool move(const Path& from, const Path& to) {
        if (!files_.setAside(from, to).ok()) return false;
        moved_.emplace(moved_.begin(), from, to);
        return true;
    }
    void keep() { moved_.clear(); }

private:
    DataFiles& files_;
    std::vector<std::pair<Path, Path>> moved_;  // the last one first
};

}  // namespace

CopyResult FileCopies::copySettings(const Path& source, const Path& target, Unchanged unchanged) {
    const Result<std::string> file = files_.read(source, kMostSettingsBytes + 1);
    if (!file.ok() || file.value().size() > kMostSettingsBytes) return CopyResult::failed;
    SettingsRecord record;
    if (parseSettings(file.value(), record) != kSettingsItems) return CopyResult::failed;
    return write(target, file.value(), unchanged);
}

CopyResult FileCopies::backUpPasswords(const Path& live, const Path& backup, Unchanged unchanged) {
    const DatabaseCopier::Contents contents = readPasswords(live);
    if (contents.fault != DatabaseFault::none) return resultOf(contents.fault);
    const CopyResult settled = settleCompanions(backup);
    return settled == CopyResult::copied ? write(backup, contents.bytes, unchanged) : settled;
}

CopyResult FileCopies::restorePasswords(const Path& backup, const Path& live, Path& kept) {
    const DatabaseCopier::Contents contents = readPasswords(backup);
    if (contents.fault != DatabaseFault::none) return resultOf(contents.fault);
    if (!stands(live)) return putInPlaceOf(live, contents.bytes);
    const auto keep = [&](const std::string& old) { return keepCopyOf(old, live, kept); };
    const DatabaseFault fault = databases_.replace(live, contents.bytes, keep);
    return fault == DatabaseFault::notADatabase ? putInPlaceOf(live, contents.bytes) : resultOf(fault);
}

// A file of its own: the live one is written into, so a second name of it would lead to the new contents.
bool FileCopies::keepCopyOf(const std::string& passwords, const Path& live, Path& kept) {
    const Path dated = datedName(live);
    for (int number = 1; number <= kMostInASecond; ++number) {
        kept = number == 1 ? dated : dated + " " + std::to_string(number);
        const Result<> written = files_.writeNew(kept, passwords);
        if (!written.failedWith(FaultKind::nameTaken)) return written.ok();
        // A crash in the same second may have left this very copy.
        const Result<std::string> there = files_.read(kept, passwords.size() + 1);
        if (there.ok() && there.value() == passwords) return true;
    }
    return false;
}

DatabaseCopier::Contents FileCopies::readPasswords(const Path& file) {
    DatabaseCopier::Contents contents = databases_.read(file);
    const bool isSound = contents.fault == DatabaseFault::none &&
                         databases_.holdsTable(contents.bytes, kPasswordTableName, {"Password", "Active"});
    if (contents.fault == DatabaseFault::none && !isSound) contents.fault = DatabaseFault::notADatabase;
    return contents;
}

CopyResult FileCopies::write(const Path& target, const std::string& bytes, Unchanged unchanged) {
    if (unchanged == Unchanged::leftAlone) {
        const Result<std::string> present = files_.read(target, bytes.size() + 1);
        if (present.ok() && present.value() == bytes) return CopyResult::copied;
    }
    return files_.writeAtomically(target, bytes).ok() ? CopyResult::copied : CopyResult::failed;
}

// SQLite would apply a journal that was left beside the older backup to the new one.
CopyResult FileCopies::settleCompanions(const Path& backup) {
    if (companionsOf(backup).empty()) return CopyResult::copied;
    const DatabaseFault fault = databases_.read(backup).fault;
    if (fault == DatabaseFault::inUse) return CopyResult::locked;
    // The older backup may still need the journal: it stays, with it.
    if (fault == DatabaseFault::failed && stands(backup)) return CopyResult::failed;
    SetAside moved(files_);
    const Path dated = datedName(backup);
    for (const Path& companion : companionsOf(backup))
        if (!moved.move(companion, dated + companion.substr(backup.size()))) return CopyResult::failed;
    moved.keep();
    return CopyResult::copied;
}

// Each step is on stable storage before the next one, and a crash between any two of them is harmless:
// 1. The live file gets its dated name as a second one. Nothing has been taken away yet.
// 2. What belongs to it goes to the dated name, under the names that SQLite expects there. A crash leaves the live file
//    without its journal, which SQLite was given before and could not make a database of; both are still there.
// 3. The new file replaces the live one. A journal that still stood beside it then would be rolled into it by whoever
//    opens it next, so this comes last. The live name leads to the old file or to the new one at every moment.
CopyResult FileCopies::putInPlaceOf(const Path& live, const std::string& bytes) {
    const EntryKind kind = toolbox_.kindOf(live);
    if (kind != EntryKind::missing && kind != EntryKind::regularFile) return CopyResult::failed;
    SetAside moved(files_);
    const Path dated = datedName(live);
    if (kind == EntryKind::regularFile && !files_.keepCopy(live, dated).ok()) return CopyResult::failed;
    for (const Path& companion : companionsOf(live))
        if (!moved.move(companion, dated + companion.substr(live.size()))) return CopyResult::failed;
    if (!files_.writeAtomically(live, bytes).ok()) return CopyResult::failed;
    moved.keep();
    return CopyResult::copied;
}

std::vector<Path> FileCopies::companionsOf(const Path& file) const {
    std::vector<Path> companions;
    for (const std::string& ending : databases_.companionEndings())
        if (stands(file + ending)) companions.push_back(file + ending);
    return companions;
}

Path FileCopies::datedName(const Path& file) const { return file + "." + secondStamp(clock_.now()); }

}  // namespace vantrell
