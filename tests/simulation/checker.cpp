// SPDX-License-Identifier: MIT
#include "simulation/checker.h"

#include <openssl/evp.h>

#include <algorithm>

#include "base/display_text.h"
#include "base/folded_name.h"
#include "base/path.h"
#include "core/data_folder.h"
#include "core/settings_format.h"
#include "platform/files/temporary_name.h"

namespace vantrell::test {

using vantrell::nameOf;

namespace {

constexpr std::string_view kEnding = ".enc";

// With OpenSSL alone, so that nothing of the program is taken for granted.
std::string encrypted(const std::string& password, const std::string& plain) {
    std::string key = password;
    key.resize(32, '\0');
    std::string made(plain.size() + 16, '\0');
    const auto bytes = [](auto& text) { return reinterpret_cast<unsigned char*>(const_cast<char*>(text.data())); };
    int first = 0;
    int last = 0;
    EVP_CIPHER_CTX* context = EVP_CIPHER_CTX_new();
    EVP_EncryptInit_ex(context, EVP_aes_256_ecb(), nullptr, bytes(key), nullptr);
    EVP_EncryptUpdate(context, bytes(made), &first, bytes(plain), static_cast<int>(plain.size()));
    EVP_EncryptFinal_ex(context, bytes(made) + first, &last);
    EVP_CIPHER_CTX_free(context);
    made.resize(static_cast<std::size_t>(first + last));
    return made;
}

bool isOurTemporary(const std::string& path) { return isTemporaryName(nameOf(path)); }

// In the private folder of a file that is being removed, whose name it keeps.
bool isInPrivateFolder(const std::string& path) { return isTemporaryName(nameOf(folderOf(path))); }

bool isOutput(const std::string& path) { return path.size() > kEnding.size() && path.ends_with(kEnding); }

}  // namespace

Checker::Checker(World& world) : world_(world) {
    for (std::size_t i = 0; i < regions_.size(); ++i) {
        const std::string& path = world.folder(static_cast<Where>(i));
        const Spot spot = world.others().at(path);
        std::size_t disk = 0;
        while (&world.disks[disk] != spot.disk) ++disk;
        regions_[i] = {disk, spot.node, path};
    }
    settingsMayBe(formatSettings(world.settings));
}

void Checker::put(const std::string& path, Where where, const std::string& bytes) {
    contents_.push_back({bytes, path, where, Excuse::none, {}, where != Where::source, {}});
}

void Checker::passBegins() {
    ++passes_;
    for (Content& content : contents_)
        if (!content.hasLeft) content.passes.insert(passes_);
}

void Checker::touchedByOthers(const std::string& path) {
    const Bytes bytes = world_.others().contents(path);
    for (Content& content : contents_)
        if (bytes && content.bytes == *bytes) content.excuse = Excuse::changedByOthers;
}

void Checker::collect(const SimulatedDisk& disk, Node folder, const std::string& path, Where where, State& into) const {
    for (const auto& [name, node] : disk.at(folder).names) {
        const Inode& inode = disk.at(node);
        std::string below = path + "/" + name;
        if (S_ISREG(inode.mode))
            into.files[static_cast<std::size_t>(where)].push_back({std::move(below), inode.bytes.get()});
        // Done may lie inside Source, and is a place of its own.
        const bool isOther = where == Where::source && below == regions_[static_cast<std::size_t>(Where::done)].path;
        if (S_ISDIR(inode.mode) && !isOther) collect(disk, node, below, where, into);
    }
}

Checker::State Checker::stateOf(const std::deque<SimulatedDisk>& disks) const {
    State state;
    for (std::size_t i = 0; i < regions_.size(); ++i)
        collect(disks[regions_[i].disk], regions_[i].node, regions_[i].path, static_cast<Where>(i), state);
    return state;
}

std::deque<SimulatedDisk> Checker::cutCopy(Chance& chance) const {
    std::deque<SimulatedDisk> copy = world_.disks;
    for (SimulatedDisk& disk : copy) disk.cut(chance);
    return copy;
}

bool Checker::isSame(const std::string& one, const std::string& other) const {
    return foldedName(one) == foldedName(other);
}

bool Checker::stands(const State& state, Where where, const std::string& bytes) const {
    return std::any_of(state.in(where).begin(), state.in(where).end(),
                       [&](const File& file) { return *file.bytes == bytes && !isOurTemporary(file.path); });
}

const Content* Checker::contentOf(const std::string& bytes) const {
    const auto found = std::find_if(contents_.rbegin(), contents_.rend(),
                                    [&](const Content& content) { return content.bytes == bytes; });
    return found == contents_.rend() ? nullptr : &*found;
}

bool Checker::isOutputOf(const std::string& bytes, const Content& content) const {
    for (const std::string& password : passwords_) {
        std::string& output = outputs_[{password, content.bytes}];
        if (output.empty()) output = encrypted(password, content.bytes);
        if (output == bytes) return true;
    }
    return false;
}

// Questions show names as people read them.
bool Checker::isAllowed(const std::string& name) const { return allowed_.contains(displayText(name)); }

// Two files of a name that lay in Source at the beginning of one pass are no older and newer version of each other.
bool Checker::mayBeReplacedBy(const Content& old, const Content& newer) const {
    const bool mayGo = world_.settings.OverwriteExistingFiles || isAllowed(nameOf(newer.path));
    if (!mayGo || old.where == Where::rejected) return false;
    if (old.path == newer.path) return true;
    return std::none_of(old.passes.begin(), old.passes.end(),
                        [&](unsigned pass) { return newer.passes.contains(pass); });
}

void Checker::excuseReplaced(const State& state) {
    for (Content& content : contents_) {
        if (content.excuse != Excuse::none) continue;
        if (!content.hasLeft && !stands(state, Where::source, content.bytes)) content.hasLeft = true;
        const bool isThere = stands(state, Where::source, content.bytes) || stands(state, Where::done, content.bytes) ||
                             stands(state, Where::rejected, content.bytes) || content.where == Where::destination;
        if (isThere) continue;
        for (const File& file : state.in(Where::done)) {
            const Content* newer = isSame(nameOf(file.path), nameOf(content.path)) ? contentOf(*file.bytes) : nullptr;
            if (newer == nullptr || newer == &content || !mayBeReplacedBy(content, *newer)) continue;
            content.excuse = Excuse::replaced;
            content.successor = nameOf(newer->path);
        }
    }
}

Checker::Broken Checker::contents(const State& state) const {
    for (const Content& content : contents_) {
        if (content.excuse != Excuse::none || content.where == Where::destination || content.bytes.empty()) continue;
        if (stands(state, Where::source, content.bytes) || stands(state, Where::done, content.bytes) ||
            stands(state, Where::rejected, content.bytes))
            continue;
        return "the content of " + content.path + " is nowhere";
    }
    return std::nullopt;
}

Checker::Broken Checker::outputs(const State& state) const {
    for (const File& file : state.in(Where::destination)) {
        if (isOurTemporary(file.path)) continue;
        const std::string name = nameOf(file.path).substr(0, nameOf(file.path).size() - kEnding.size());
        bool isKnown = contentOf(*file.bytes) != nullptr;  // another program's
        for (const Content& content : contents_) {
            const bool isIt = isSame(nameOf(content.path), name) && isOutputOf(*file.bytes, content);
            if (isIt && content.excuse == Excuse::replaced && content.successor == nameOf(content.path))
                return file.path + " is of a content that has been replaced in Done";
            isKnown = isKnown || isIt;
        }
        if (!isKnown) return file.path + " is partial, or of no content of that name";
    }
    return std::nullopt;
}

// Whatever has left Source for Done has an output.
Checker::Broken Checker::originals(const State& state) const {
    for (const File& file : state.in(Where::done)) {
        const Content* content = isOurTemporary(file.path) ? nullptr : contentOf(*file.bytes);
        if (content == nullptr || content->where != Where::source || content->excuse != Excuse::none) continue;
        if (stands(state, Where::source, content->bytes)) continue;
        const std::string name = nameOf(file.path);
        const bool isCollected = collected_.contains(foldedName(name));
        const auto isItsOutput = [&](const File& output) {
            return isSame(nameOf(output.path), name + std::string(kEnding));
        };
        const auto& there = state.in(Where::destination);
        if (!isCollected && std::none_of(there.begin(), there.end(), isItsOutput))
            return file.path + " has left Source without an output";
    }
    return std::nullopt;
}

Checker::Broken Checker::foreign(const State& state) const {
    for (const Content& content : contents_) {
        if (content.where != Where::destination || content.excuse != Excuse::none) continue;
        const std::string name = nameOf(content.path);
        const bool mayGo =
            world_.settings.OverwriteExistingFiles || isAllowed(name.substr(0, name.size() - kEnding.size()));
        if (!mayGo && !stands(state, Where::destination, content.bytes))
            return content.path + " was replaced or removed, and nobody had allowed it";
    }
    for (const File& file : state.in(Where::outside))
        if (*file.bytes != "nobody touches this" && contentOf(*file.bytes) == nullptr)
            return file.path + " lies outside and was changed";
    return state.in(Where::outside).empty() ? Broken("what lay outside is gone") : std::nullopt;
}

Checker::Broken Checker::dataFolder(const State& state) const {
    bool hasSettings = false;
    bool hasPasswords = false;
    for (const File& file : state.in(Where::data)) {
        const std::string name = nameOf(file.path);
        if (name == kSettingsFileName) {
            hasSettings = hasSettings || folderOf(file.path) == world_.folder(Where::data);
            if (!settings_.contains(*file.bytes)) return file.path + " is neither old nor new";
        }
        if (name == kPasswordFileName) {
            hasPasswords = true;
            if (*file.bytes != "the passwords") return file.path + " is not whole";
        }
    }
    if (!hasSettings) return "the settings are gone";
    return hasPasswords ? std::nullopt : Broken("the password file is gone");
}

Checker::Broken Checker::check(const State& state, bool) const {
    for (const auto part :
         {&Checker::contents, &Checker::outputs, &Checker::originals, &Checker::foreign, &Checker::dataFolder})
        if (Broken broken = (this->*part)(state)) return broken;
    return std::nullopt;
}

Checker::Broken Checker::now() {
    const State state = stateOf(world_.disks);
    excuseReplaced(state);
    return check(state, false);
}

Checker::Broken Checker::afterCut(Chance& chance) const {
    const std::deque<SimulatedDisk> copy = cutCopy(chance);
    // What a cut leaves may be older than what was excused: that is the worst that it may be.
    Broken broken = check(stateOf(copy), true);
    return broken ? Broken("a cut here leaves this: " + *broken) : std::nullopt;
}

Checker::Broken Checker::lineLogged(const std::string& line, Chance& chance) {
    const std::size_t at = line.find("Encryped:  ");
    const std::size_t end = line.find(" - Sucessful: ");
    if (at == std::string::npos || end == std::string::npos) return std::nullopt;
    const std::string name = line.substr(at + 11, end - at - 11);
    if (collected_.contains(foldedName(name)) || name.find("\\x") != std::string::npos) return std::nullopt;
    const State state = stateOf(cutCopy(chance));
    for (const File& file : state.in(Where::destination)) {
        if (!isSame(nameOf(file.path), name + std::string(kEnding))) continue;
        for (const Content& content : contents_)
            if (isSame(nameOf(content.path), name) && isOutputOf(*file.bytes, content)) return std::nullopt;
    }
    return "the log says Sucessful of " + name + ", and a cut here leaves no whole output";
}

// A question about what equals the file, or its output, is one that only our own interrupted work can have raised.
Checker::Broken Checker::questionAsked(const std::string& text) const {
    const State state = stateOf(world_.disks);
    for (const File& file : state.in(Where::source)) {
        if (text.find(file.path + " already exists") == std::string::npos) continue;
        const bool isAboutDone = text.find("The orginal file") != std::string::npos;
        const Content* content = contentOf(*file.bytes);
        if (content == nullptr || content->bytes.empty()) continue;
        for (const File& standing : state.in(isAboutDone ? Where::done : Where::destination)) {
            const std::string name = nameOf(file.path) + (isAboutDone ? "" : std::string(kEnding));
            if (nameOf(standing.path) != name) continue;
            if (isAboutDone ? *standing.bytes == content->bytes : isOutputOf(*standing.bytes, *content))
                return "it asks about what it has put there itself: " + standing.path;
        }
    }
    return std::nullopt;
}

Checker::Broken Checker::atRest() {
    if (Broken broken = now()) return broken;
    const State state = stateOf(world_.disks);
    for (const File& file : state.in(Where::source)) {
        const bool isDone = isOutput(file.path) || !world_.settings.IncludeSubfolders;
        if (isInPrivateFolder(file.path)) return file.path + " was left in a private folder";
        if (!isDone || (folderOf(file.path) == world_.folder(Where::source) && !isOutput(file.path)))
            return file.path + " is not carried, although nothing keeps it from that";
    }
    for (const Where where : {Where::destination, Where::done, Where::rejected})
        for (const File& file : state.in(where))
            if (isOurTemporary(file.path)) return file.path + " was left behind";
    for (const File& file : state.in(Where::data)) {
        if (!file.path.ends_with("Activity.Log")) continue;
        // What stands before the first line end may be an editor's, and is left alone.
        const std::size_t first = file.bytes->find("\r\n");
        if (first != std::string::npos && file.bytes->find('\0', first) != std::string::npos)
            return file.path + " holds NULs";
        if (!file.bytes->empty() && !file.bytes->ends_with("\r\n")) return file.path + " ends in a torn line";
    }
    return std::nullopt;
}

}  // namespace vantrell::test
