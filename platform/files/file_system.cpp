// SPDX-License-Identifier: MIT
#include "platform/files/file_system.h"

#include <sys/sysmacros.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>
#include <vector>

#include "platform/files/place.h"
#include "platform/files/posix_io.h"

namespace vantrell {

namespace {

using namespace std::string_view_literals;

// Times move on with the kernel's tick, of which there are at least 100 a second.
constexpr std::chrono::milliseconds kTick{20};

constexpr std::array kLocal{"ext2"sv,  "ext3"sv,  "ext4"sv,    "xfs"sv,      "btrfs"sv,  "f2fs"sv,     "tmpfs"sv,
                            "ramfs"sv, "jfs"sv,   "zfs"sv,     "bcachefs"sv, "nilfs2"sv, "reiserfs"sv, "vfat"sv,
                            "exfat"sv, "ntfs3"sv, "hfsplus"sv, "udf"sv,      "overlay"sv};
// Those with a journal or a log, those whose server answers only for what is stable, and those without a disk.
constexpr std::array kOrdered{"ext3"sv,     "xfs"sv,    "btrfs"sv,    "f2fs"sv, "tmpfs"sv, "ramfs"sv, "jfs"sv, "zfs"sv,
                              "bcachefs"sv, "nilfs2"sv, "reiserfs"sv, "nfs"sv,  "nfs4"sv,  "cifs"sv,  "smb3"sv};
constexpr std::array kNetwork{"nfs"sv,
                              "nfs4"sv,
                              "cifs"sv,
                              "smb2"sv,
                              "smb3"sv,
                              "smbfs"sv,
                              "ceph"sv,
                              "9p"sv,
                              "afs"sv,
                              "gfs2"sv,
                              "ocfs2"sv,
                              "lustre"sv,
                              "virtiofs"sv,
                              "vboxsf"sv,
                              "davfs"sv,
                              "fuse.sshfs"sv,
                              "fuse.rclone"sv,
                              "fuse.glusterfs"sv,
                              "fuse.s3fs"sv,
                              "fuse.davfs2"sv,
                              "fuse.ceph-fuse"sv,
                              "fuse.vmhgfs-fuse"sv,
                              "fuse.goofys"sv,
                              "fuse.curlftpfs"sv};
// A user may mount these with names that are folded, but only as a whole: the names then differ for everybody.
constexpr std::array kFixedIdentities{"ext2"sv,     "ext3"sv,   "ext4"sv,     "xfs"sv,    "btrfs"sv,
                                      "f2fs"sv,     "tmpfs"sv,  "ramfs"sv,    "jfs"sv,    "zfs"sv,
                                      "bcachefs"sv, "nilfs2"sv, "reiserfs"sv, "overlay"sv};

template <class List>
bool isOneOf(const List& list, std::string_view type) {
    return std::find(list.begin(), list.end(), type) != list.end();
}

std::string wholeText(Kernel& kernel, const Path& path) {
    constexpr std::size_t kMost = std::size_t{4} << 20U;
    constexpr std::size_t kPiece = std::size_t{64} << 10U;
    const UniqueFd file = openPath(kernel, path, O_RDONLY | O_CLOEXEC);
    std::string text;
    if (!file) return text;
    for (std::size_t had = kPiece; had == kPiece && text.size() < kMost;) {
        std::string piece(kPiece, '\0');
        const Result<std::size_t> got = readAt(file, piece, text.size(), path);
        had = got.ok() ? got.value() : 0;
        text.append(piece, 0, had);
    }
    return text;
}

std::vector<std::string_view> wordsOf(std::string_view line) {
    std::vector<std::string_view> words;
    while (!line.empty()) {
        const std::size_t end = std::min(line.find(' '), line.size());
        if (end > 0) words.push_back(line.substr(0, end));
        line.remove_prefix(std::min(end + 1, line.size()));
    }
    return words;
}

template <class Number>
Number numberFrom(std::string_view digits, int base = 10) {
    Number number = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), number, base);
    return number;
}

// Blanks, line feeds and backslashes of a path are written as a backslash and three octal digits.
Path unescaped(std::string_view text) {
    constexpr std::size_t kDigits = 3;
    Path path;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isEscaped = text[i] == '\\' && i + kDigits < text.size();
        path += isEscaped ? static_cast<char>(numberFrom<unsigned>(text.substr(i + 1, kDigits), 8)) : text[i];
        if (isEscaped) i += kDigits;
    }
    return path;
}

// "36 35 98:0 /mnt1 /mnt2 rw,noatime master:1 - ext3 /dev/root rw,errors=continue": id, parent, device, root, mount
// point, options, optional fields, a hyphen, type, source, options of the file system.
std::optional<Mount> mountFrom(std::string_view line) {
    constexpr std::size_t kFixedWords = 6;
    const std::vector<std::string_view> words = wordsOf(line);
    const auto hyphen =
        std::find(words.begin() + static_cast<std::ptrdiff_t>(std::min(kFixedWords, words.size())), words.end(), "-");
    if (words.end() - hyphen < 4) return std::nullopt;
    const std::size_t colon = std::min(words[2].find(':'), words[2].size() - 1);
    Mount mount;
    mount.id = numberFrom<std::uint64_t>(words[0]);
    mount.device =
        makedev(numberFrom<unsigned>(words[2].substr(0, colon)), numberFrom<unsigned>(words[2].substr(colon + 1)));
    mount.point = unescaped(words[4]);
    mount.type = hyphen[1];
    mount.source = unescaped(hyphen[2]);
    mount.options = hyphen[3];
    return mount;
}

std::vector<Mount> allMounts(Kernel& kernel) {
    const std::string text = wholeText(kernel, "/proc/self/mountinfo");
    std::vector<Mount> mounts;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        if (auto mount = mountFrom(std::string_view(text).substr(begin, end - begin))) mounts.push_back(*mount);
        begin = end + 1;
    }
    return mounts;
}

std::string valueIn(std::string_view text, std::string_view key, char separator) {
    const std::string all = separator + std::string(text);
    const std::size_t at = all.find(separator + std::string(key));
    if (at == std::string::npos) return {};
    const std::size_t begin = at + 1 + key.size();
    return all.substr(begin, all.find(separator, begin) - begin);
}

// The name under which /sys knows the device; that of the mount may be another one (/dev/root, /dev/mapper/…).
std::string deviceName(Kernel& kernel, const Mount& mount) {
    const std::string number = std::to_string(major(mount.device)) + ":" + std::to_string(minor(mount.device));
    const std::string name = valueIn(wholeText(kernel, "/sys/dev/block/" + number + "/uevent"), "DEVNAME=", '\n');
    return name.empty() ? nameOf(mount.source) : name;
}

// An ext4 may have been made, or mounted, without a journal. What cannot be read counts as none.
bool hasJournal(Kernel& kernel, const Mount& mount) {
    const std::string task = wholeText(kernel, "/sys/fs/ext4/" + deviceName(kernel, mount) + "/journal_task");
    return !task.empty() && task.front() >= '1' && task.front() <= '9';
}

bool ordersRenames(Kernel& kernel, const Mount& mount) {
    if (mount.type == "ext4") return hasJournal(kernel, mount);
    if (mount.type != "overlay") return isOneOf(kOrdered, mount.type);
    // Names lie on the file system of its upper folder. One that cannot be found from here is not known.
    const UniqueFd upper = openFolder(kernel, unescaped(valueIn(mount.options, "upperdir=", ',')));
    const std::optional<Mount> below = upper ? mountOf(upper) : std::nullopt;
    return below && below->type != "overlay" && ordersRenames(kernel, *below);
}

FileSystemFacts factsOf(const UniqueFd& file) {
    const std::optional<Mount> mount = mountOf(file);
    FileSystemFacts facts;
    if (!mount) return facts;
    facts.isLocal = isOneOf(kLocal, mount->type);
    facts.isNetwork = isOneOf(kNetwork, mount->type);
    facts.ordersRenames = ordersRenames(file.kernel(), *mount);
    facts.hasFixedIdentities = isOneOf(kFixedIdentities, mount->type);
    if (facts.hasFixedIdentities) facts.timeStep = kTick;
    return facts;
}

}  // namespace

std::optional<Mount> mountOf(const UniqueFd& file) {
    struct statx status {};
    struct stat plain {};
    if (file.status(plain) != 0) return std::nullopt;
    const bool knowsMount = file.kernel().statx(file.get(), "", AT_EMPTY_PATH, STATX_MNT_ID, status) == 0 &&
                            (status.stx_mask & STATX_MNT_ID) != 0;
    for (Mount& mount : allMounts(file.kernel())) {
        if (knowsMount ? mount.id == status.stx_mnt_id : mount.device == plain.st_dev) return std::move(mount);
    }
    return std::nullopt;
}

void FileSystems::startAnew(bool isPass) {
    isPass_ = isPass;
    kept_.clear();
    known_.clear();
}

const FileSystemFacts& FileSystems::of(const UniqueFd& file) {
    static const FileSystemFacts kUnknown;
    struct stat status {};
    return file.status(status) == 0 ? of(file, status.st_dev) : kUnknown;
}

const FileSystemFacts& FileSystems::of(const UniqueFd& file, dev_t device) {
    static const FileSystemFacts kUnknown;
    if (const auto kept = kept_.find(device); kept != kept_.end()) return kept->second.facts;
    struct statfs system {};
    if (file.kernel().fstatfs(file.get(), system) != 0) return kUnknown;
    const auto key = std::pair(device, static_cast<long>(system.f_type));
    const auto found = known_.find(key);
    const FileSystemFacts& facts = found != known_.end() ? found->second : known_[key] = factsOf(file);
    // What is no folder cannot be opened in this way.
    UniqueFd folder = isPass_ ? file.open(".", O_RDONLY | O_DIRECTORY | O_CLOEXEC) : UniqueFd();
    return folder ? (kept_[device] = {std::move(folder), facts}).facts : facts;
}

}  // namespace vantrell
