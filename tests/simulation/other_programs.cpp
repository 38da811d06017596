// SPDX-License-Identifier: MIT
#include "simulation/other_programs.h"

#include <fcntl.h>

namespace vantrell::test {

namespace {

constexpr int kReading = O_RDONLY;
constexpr int kWriting = O_RDWR;

}  // namespace

Target OtherPrograms::target(const std::string& path, bool follow) const {
    Target found;
    Way way;
    way.followLast = follow;
    if (tree_.resolve(tree_.root(), path, way, found) != 0) found = {};
    return found;
}

Spot OtherPrograms::regular(const std::string& path) const {
    const Spot file = target(path, true).file;
    return file.node != kNoNode && S_ISREG(file.inode().mode) ? file : Spot();
}

bool OtherPrograms::make(const std::string& path, mode_t mode, std::string_view bytes, uid_t owner) {
    const Target place = target(path, false);
    Node made = kNoNode;
    if (place.folder.disk == nullptr || tree_.makeEntry(place, mode, false, made) != 0) return false;
    place.folder.disk->at(made).owner = owner;
    return place.folder.disk->write(made, 0, bytes, tree_.now()) == bytes.size();
}

bool OtherPrograms::makeFile(const std::string& path, std::string_view bytes, uid_t owner) {
    const Spot file = regular(path);
    if (file.disk == nullptr) return make(path, S_IFREG | 0644U, bytes, owner);
    file.disk->resize(file.node, 0, tree_.now());
    return file.disk->write(file.node, 0, bytes, tree_.now()) == bytes.size();
}

bool OtherPrograms::makeFolder(const std::string& path, uid_t owner) { return make(path, S_IFDIR | 0755U, {}, owner); }

bool OtherPrograms::makeLink(const std::string& leadsTo, const std::string& path) {
    return make(path, S_IFLNK | 0777U, leadsTo, SimulatedTree::kUser);
}

bool OtherPrograms::overwrite(const std::string& path, std::size_t offset, std::string_view bytes) {
    const Spot file = regular(path);
    return file.disk != nullptr && file.disk->write(file.node, offset, bytes, tree_.now()) == bytes.size();
}

bool OtherPrograms::append(const std::string& path, std::string_view bytes) {
    const Spot file = regular(path);
    return file.disk != nullptr && overwrite(path, file.inode().bytes->size(), bytes);
}

bool OtherPrograms::truncate(const std::string& path, std::size_t size) {
    const Spot file = regular(path);
    if (file.disk != nullptr) file.disk->resize(file.node, size, tree_.now());
    return file.disk != nullptr;
}

bool OtherPrograms::rename(const std::string& from, const std::string& to) {
    const Target source = target(from, false);
    const Target place = target(to, false);
    if (source.folder.disk == nullptr || place.folder.disk == nullptr) return false;
    return tree_.rename(source, place, 0, false) == 0;
}

bool OtherPrograms::link(const std::string& from, const std::string& to) {
    const Target source = target(from, false);
    const Target place = target(to, false);
    if (source.file.node == kNoNode || place.folder.disk == nullptr) return false;
    return tree_.link(source.file, place, false) == 0;
}

bool OtherPrograms::remove(const std::string& path) {
    const Target gone = target(path, false);
    return gone.file.node != kNoNode && tree_.remove(gone, S_ISDIR(gone.file.inode().mode), false) == 0;
}

Inode* OtherPrograms::changed(const std::string& path) const {
    const Spot file = at(path);
    if (file.node == kNoNode) return nullptr;
    file.inode().changed = file.disk->noted(tree_.now());
    return &file.inode();
}

bool OtherPrograms::setMode(const std::string& path, mode_t permissions) {
    Inode* const inode = changed(path);
    if (inode != nullptr) inode->mode = (inode->mode & S_IFMT) | permissions;
    return inode != nullptr;
}

bool OtherPrograms::setOwner(const std::string& path, uid_t owner) {
    Inode* const inode = changed(path);
    if (inode != nullptr) inode->owner = owner;
    return inode != nullptr;
}

bool OtherPrograms::setModified(const std::string& path, std::chrono::nanoseconds sinceEpoch) {
    Inode* const inode = changed(path);
    if (inode != nullptr) inode->modified = sinceEpoch;
    return inode != nullptr;
}

bool OtherPrograms::flush(const std::string& path) {
    const Target place = target(path, false);
    if (place.file.node == kNoNode) return false;
    place.file.disk->endFlush(place.file.disk->beginFlush(place.file.node, true));
    place.folder.disk->endFlush(place.folder.disk->beginFlush(place.folder.node, true));
    return true;
}

Spot OtherPrograms::at(const std::string& path) const { return target(path, false).file; }

Bytes OtherPrograms::contents(const std::string& path) const {
    const Spot file = at(path);
    return file.node != kNoNode && S_ISREG(file.inode().mode) ? file.inode().bytes : nullptr;
}

std::vector<std::string> OtherPrograms::list(const std::string& path) const {
    std::vector<std::string> names;
    const Spot folder = target(path, true).file;
    if (folder.node == kNoNode) return names;
    for (const auto& [name, node] : folder.inode().names) names.push_back(name);
    return names;
}

std::optional<std::size_t> OtherPrograms::open(const std::string& path, bool forWriting) {
    const Spot file = regular(path);
    if (file.disk == nullptr) return std::nullopt;
    file.disk->open(file.node, forWriting ? kWriting : kReading);
    held_.push_back({file, forWriting});
    return held_.size() - 1;
}

bool OtherPrograms::writeTo(std::size_t held, std::string_view bytes) {
    const Spot& file = held_.at(held).spot;
    if (file.disk == nullptr || !held_[held].forWriting) return false;
    return file.disk->write(file.node, file.inode().bytes->size(), bytes, tree_.now()) == bytes.size();
}

void OtherPrograms::close(std::size_t held) {
    if (held >= held_.size() || held_[held].spot.disk == nullptr) return;
    held_[held].spot.disk->close(held_[held].spot.node, held_[held].forWriting ? kWriting : kReading);
    held_[held].spot.disk = nullptr;
}

void OtherPrograms::forgetOn(const SimulatedDisk& disk) {
    for (Held& held : held_) {
        if (held.spot.disk == &disk) held.spot.disk = nullptr;
    }
}

}  // namespace vantrell::test
