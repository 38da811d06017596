// SPDX-License-Identifier: MIT
#include "simulation/checker.h"

#include <openssl/evp.h>

#include <algorithm>

#include "base/date_text.h"
#include "base/display_text.h"
#include "base/path.h"
#include "core/data_folder.h"
#include "core/settings_format.h"
#include "platform/files/temporary_name.h"

namespace vantrell::test {

using vantrell::nameOf;

namespace {

constexpr std::string_view kEnding = ".enc";
constexpr char kUntouched[] = "nobody touches this";

// With OpenSSL alone, so that nothing of the program is taken for granted. Nothing when it is no ciphertext.
std::optional<std::string> decrypted(EVP_CIPHER_CTX* context, const std::string& password, const std::string& made) {
    std::array<unsigned char, 32> key{};
    std::copy_n(password.begin(), std::min(password.size(), key.size()), key.begin());
    std::string plain(made.size() + 16, '\0');
    auto* const out = reinterpret_cast<unsigned char*>(plain.data());
    int first = 0;
    int last = 0;
    EVP_DecryptInit_ex(context, EVP_aes_256_ecb(), nullptr, key.data(), nullptr);
    EVP_DecryptUpdate(context, out, &first, reinterpret_cast<const unsigned char*>(made.data()),
                      static_cast<int>(made.size()));
    if (EVP_DecryptFinal_ex(context, out + first, &last) != 1) return std::nullopt;
    plain.resize(static_cast<std::size_t>(first + last));
    return plain;
}

std::string lowered(std::string name) {
    for (char& c : name)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return name;
}

// As questions name it, whatever the disk takes for the same name.
std::string placeOf(const std::string& path) { return lowered(displayText(path)); }
bool isOutput(const std::string& path) { return path.size() > kEnding.size() && lowered(path).ends_with(kEnding); }
std::string withoutEnding(const std::string& name) { return name.substr(0, name.size() - kEnding.size()); }
bool isProtected(Where where) {
    return where == Where::destination || where == Where::done || where == Where::rejected;
}

}  // namespace

Checker::Checker(World& world) : world_(world), context_(EVP_CIPHER_CTX_new(), EVP_CIPHER_CTX_free) {
    settings_.insert(world.firstSettings);
    settingsAre(world.settings);
    passwordFiles_.emplace_back("passwords 1", Excuse::none);
    outside_ = world.filesBelow(world.folder(Where::outside)).size();
}

// What is known of bytes. They are kept, so that whoever writes to the file gets others.
const Checker::Known& Checker::identify(const Bytes& bytes, bool maybeOutput) {
    const auto idOf = [this](const std::string& plain) {
        for (std::size_t i = contents_.size(); i-- > 0;)
            if (*contents_[i].bytes == plain) return static_cast<Id>(i);
        return kUnknown;
    };
    Known& known = known_[bytes.get()];
    if (!known.bytes) {
        known.bytes = bytes;
        known.content = idOf(*bytes);
    }
    if (!maybeOutput || known.content != kUnknown || !known.password.empty()) return known;
    for (const std::string& password : passwords_) {
        const std::optional<std::string> plain = decrypted(context_.get(), password, *bytes);
        known.original = plain ? idOf(*plain) : kUnknown;
        known.password = password;
        if (known.original != kUnknown) break;
    }
    return known;
}

bool Checker::isRegion(const std::string& path) const {
    return std::any_of(world_.regions().begin(), world_.regions().end(),
                       [&](const Region& region) { return region.path == path; });
}

// Our temporary files are nobody's content; what lies in a private folder of a file that is being removed is.
void Checker::collect(const SimulatedDisk& disk, Node folder, const std::string& path, Where where, State& into) {
    for (const auto& [name, node] : disk.at(folder).names) {
        const Inode& inode = disk.at(node);
        std::string below = path + "/" + name;
        if (S_ISREG(inode.mode) && !isTemporaryName(name))
            into.push_back({where, std::move(below), inode.bytes, &identify(inode.bytes, where == Where::destination)});
        else if (S_ISDIR(inode.mode) && !isRegion(below))
            collect(disk, node, below, where, into);
    }
}

Checker::State Checker::stateOf(const Copies& disks) {
    State state;
    state.reserve(before_.size() + 8);
    for (const Region& region : world_.regions())
        if (region.where != Where::data) collect(disks[region.disk], region.node, region.path, region.where, state);
    return state;
}

Checker::Copies Checker::cutCopy(Chance& chance) const {
    Copies copy = world_.disks;
    for (SimulatedDisk& disk : copy) disk.cut(chance);
    return copy;
}

std::string Checker::keyOf(const std::string& name) const {
    for (const Region& region : world_.regions())
        if (region.where == Where::destination && world_.disks[region.disk].traits.foldsCase) return lowered(name);
    return name;
}

void Checker::excuse(Excuse& of, Excuse why) {
    of = why;
    ++excused_[static_cast<std::size_t>(why)];
}

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

void Checker::hidden(const std::string& folder) {
    for (const File& file : before_)
        if (file.content() != kUnknown && file.path.starts_with(folder)) at(file.content()).passes.erase(passes_);
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

void Checker::passBegins() {
    ++passes_;
    ofThePass_ = inForce_;
    isPasswordOfThePass_ = true;
    allowed_.clear();
    mayOverwrite_ = inForce_.OverwriteExistingFiles;
    for (const File& file : before_) {
        const bool isFound = inForce_.IncludeSubfolders || folderOf(file.path) == inForce_.SourceFolder;
        if (file.where == Where::source && file.content() != kUnknown && isFound && !isOutput(file.path))
            at(file.content()).passes.insert(passes_);
    }
}

// A flush that failed, or a search that could not see all.
void Checker::watchFaults(const CallRecord& call) {
    const bool isFlush = call.call == Call::fsync || call.call == Call::fdatasync || call.call == Call::startFlush;
    if (isFlush && call.answer != 0 && call.answer != EINVAL) flushFailedAt_ = call.number;
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
    constexpr std::uint64_t kCallsOfTheMove = 60;
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

// Something that stood in a protected folder stands there no more, or is another one.
Checker::Broken Checker::judge(const File& before, const File* after, const std::vector<Found>& found) {
    const Id id =
        before.where == Where::destination && before.original() != kUnknown ? before.original() : before.content();
    const Found none;
    const Found& places = id == kUnknown ? none : found[static_cast<std::size_t>(id)];
    if (after != nullptr) {
        if (!mayReplace(before, *after, places)) return before.path + " was replaced, and nobody had allowed it";
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
    const std::set<unsigned>& passes = at(fresh).passes;
    return std::none_of(at(old).passes.begin(), at(old).passes.end(),
                        [&](unsigned pass) { return passes.contains(pass); });
}

bool Checker::isOldEnough(const File& file) const {
    const auto arrived = arrivals_.find(file.path);
    const std::chrono::hours least(24 * inForce_.WeeklyDeleteDaysOld - 1);
    return arrived != arrivals_.end() && world_.clock.sinceEpoch() - arrived->second >= least;
}

// What holds at every moment and after every cut

std::vector<Checker::Found> Checker::find(const State& state) const {
    std::vector<Found> found(contents_.size());
    for (const File& file : state) {
        if (file.content() == kUnknown) continue;
        Found& one = found[static_cast<std::size_t>(file.content())];
        one.places |= static_cast<std::uint8_t>(1U << static_cast<unsigned>(file.where));
        one.isInPlace |= file.path == at(file.content()).path;
    }
    return found;
}

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
    // A pass that was killed before it had carried anything may not have come to the end of its search.
    const auto isOfThisPass = [this](const Publication& one) { return one.pass == passes_; };
    if (wasKilled && std::none_of(published_.begin(), published_.end(), isOfThisPass))
        for (Content& content : contents_) content.passes.erase(passes_);
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

Checker::Broken Checker::lineLogged(const std::string& line, Chance& chance) {
    ++lines_[line];
    // What it had replaced is gone, so that it cannot be put back.
    if (line.find("it stands in the target folder") != std::string::npos) excuseFresh(find(before_));
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
        const bool boreIt = displayText(nameOf(content.path)) == name ||
                            std::any_of(content.names.begin(), content.names.end(),
                                        [&](const std::string& borne) { return displayText(borne) == name; });
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
            const Excuse why = begin == 0 ? Excuse::beforeTheFirstLine : Excuse::notTheNewestLogs;
            if (isTorn && begin != 0 && isMended)
                return path + " holds a line twice, or a torn one: " + text->substr(begin, end - begin);
            if (isTorn) ++excused_[static_cast<std::size_t>(why)];
            count -= isTorn ? 0 : 1;
            begin = end + 2;
        }
    }
    return std::nullopt;
}

}  // namespace vantrell::test
