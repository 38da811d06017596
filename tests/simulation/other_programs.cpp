// SPDX-License-Identifier: MIT
#include "simulation/other_programs.h"

#include <fcntl.h>

namespace vantrell::test {

Target OtherPrograms::target(const std::string& path, bool follow) const {
    Target found;
    return tree_.resolve(tree_.root(), path, {follow}, found) == 0 ? found : Target();
}

Spot OtherPrograms::regular(const std::string& path) const {
    const Spot file = target(path, true).file;
    return file.node != kNoNode && S_ISREG(file.inode().mode) ? file : Spot();
}

bool OtherPrograms::write(const Spot& file, std::size_t offset, std::string_view bytes) const {
    return file.disk != nullptr && file.disk->write(file.node, offset, bytes, tree_.now()) == bytes.size();
}

bool OtherPrograms::make(const std::string& path, mode_t mode, std::string_view bytes) {
    const Target place = target(path, false);
    Node made = kNoNode;
    if (place.folder.disk == nullptr || tree_.makeEntry(place, mode, made) != 0) return false;
    return write({place.folder.disk, made}, 0, bytes);
}

bool OtherPrograms::makeFile(const std::string& path, std::string_view bytes) {
    return truncate(path, 0) ? overwrite(path, 0, bytes) : make(path, S_IFREG | 0644U, bytes);
}

bool OtherPrograms::overwrite(const std::string& path, std::size_t offset, std::string_view bytes) {
    return write(regular(path), offset, bytes);
}

bool OtherPrograms::append(const std::string& path, std::string_view bytes) {
    const Spot file = regular(path);
    return file.disk != nullptr && write(file, file.inode().bytes->size(), bytes);
}

bool OtherPrograms::truncate(const std::string& path, std::size_t size) {
    const Spot file = regular(path);
    if (file.disk != nullptr) file.disk->resize(file.node, size, tree_.now());
    return file.disk != nullptr;
}

bool OtherPrograms::rename(const std::string& from, const std::string& to) {
    const Target source = target(from, false);
    const Target place = target(to, false);
    return source.folder.disk != nullptr && place.folder.disk != nullptr && tree_.rename(source, place, 0) == 0;
}

bool OtherPrograms::link(const std::string& from, const std::string& to) {
    const Spot file = at(from);
    const Target place = target(to, false);
    return file.node != kNoNode && place.folder.disk != nullptr && tree_.link(file, place) == 0;
}

bool OtherPrograms::remove(const std::string& path) {
    const Target gone = target(path, false);
    return gone.file.node != kNoNode && tree_.remove(gone, S_ISDIR(gone.file.inode().mode)) == 0;
}

bool OtherPrograms::flush(const std::string& path) {
    const Target place = target(path, false);
    if (place.file.node == kNoNode) return false;
    place.file.disk->flushNow(place.file.node, true);
    place.folder.disk->flushNow(place.folder.node, true);
    return true;
}

Bytes OtherPrograms::contents(const std::string& path) const {
    const Spot file = at(path);
    return file.node != kNoNode && S_ISREG(file.inode().mode) ? file.inode().bytes : nullptr;
}

std::optional<std::size_t> OtherPrograms::open(const std::string& path, bool forWriting) {
    const Held held{regular(path), forWriting ? O_RDWR : O_RDONLY};
    if (held.file.disk == nullptr) return std::nullopt;
    held.file.disk->open(held.file.node, held.flags);
    held_.push_back(held);
    return held_.size() - 1;
}

bool OtherPrograms::writeTo(std::size_t held, std::string_view bytes) {
    const Spot& file = held_.at(held).file;
    return file.disk != nullptr && write(file, file.inode().bytes->size(), bytes);
}

void OtherPrograms::close(std::size_t held) {
    if (held >= held_.size() || held_[held].file.disk == nullptr) return;
    held_[held].file.disk->close(held_[held].file.node, held_[held].flags);
    held_[held].file.disk = nullptr;
}

void OtherPrograms::forgetOn(const SimulatedDisk& disk) {
    for (Held& held : held_) {
        if (held.file.disk == &disk) held.file.disk = nullptr;
    }
}

}  // namespace vantrell::test
