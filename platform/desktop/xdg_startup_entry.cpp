// SPDX-License-Identifier: MIT
#include "platform/desktop/xdg_startup_entry.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <string_view>

#include "platform/desktop/desktop_entry.h"
#include "platform/desktop/user_folders.h"
#include "platform/files/posix_data_files.h"
#include "platform/files/posix_io.h"

namespace vantrell {

namespace {

// Nobody's entry is longer; a file that is holds something else.
constexpr std::size_t kMostBytes = 65536;
constexpr mode_t kReadableByAll = 0644;

Path autostartFolder() { return userConfigFolder() + "/autostart"; }
Path entryFile() { return autostartFolder() + "/NRD-ZEP.desktop"; }

// Some desktops look for the program named in Exec before they resolve "%%", and "=" is not allowed in its name. There
// the shell is the program, and ours its argument.
constexpr char kShell[] = "/bin/sh";
constexpr char kShellOption[] = "-c";
constexpr char kShellScript[] = "exec \"$0\"";

std::string commandFor(const Path& program) {
    if (program.find_first_of("%=") == Path::npos) return quotedForExec(program);
    return std::string(kShell) + ' ' + kShellOption + ' ' + quotedForExec(kShellScript) + ' ' + quotedForExec(program);
}

Path programOf(const std::vector<std::string>& words) {
    const bool isByShell =
        words.size() == 4 && words[0] == kShell && words[1] == kShellOption && words[2] == kShellScript;
    if (isByShell) return words[3];
    return words.empty() ? Path() : words[0];
}

// TryExec keeps the desktop from complaining at every log-on about a program that has been removed.
std::string entryTextFor(const Path& program) {
    return "[Desktop Entry]\n"
           "Type=Application\n"
           "Name=Vantrell\n"
           "Comment=Encrypts the files that are dropped into a folder\n"
           "Icon=vantrell-zep\n"
           "Exec=" +
           escapedValue(commandFor(program)) +
           "\n"
           "TryExec=" +
           escapedValue(program) +
           "\n"
           "Terminal=false\n"
           "X-GNOME-Autostart-enabled=true\n";
}

bool isProgram(const Path& path) {
    struct stat status {};
    return path.starts_with(kPathSeparator) && ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
           ::access(path.c_str(), X_OK) == 0;
}

bool leadToTheSame(const Path& one, const Path& other) {
    std::error_code fault;
    return one == other || std::filesystem::equivalent(one, other, fault);
}

std::vector<std::string> desktopsAtWork() {
    const char* names = std::getenv("XDG_CURRENT_DESKTOP");
    std::vector<std::string> desktops;
    for (std::string_view rest = names == nullptr ? "" : names; !rest.empty();) {
        const auto end = std::min(rest.find(':'), rest.size());
        desktops.emplace_back(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return desktops;
}

bool isKeptFromThisDesktop(const DesktopEntry& entry) {
    const auto desktops = desktopsAtWork();
    const auto namesThisOne = [&](const char* key) {
        const auto listed = entry.list(key);
        return std::find_first_of(listed.begin(), listed.end(), desktops.begin(), desktops.end()) != listed.end();
    };
    return (entry.has("OnlyShowIn") && !namesThisOne("OnlyShowIn")) || namesThisOne("NotShowIn");
}

bool isSwitchedOff(const DesktopEntry& entry) {
    return entry.flag("Hidden", false) || !entry.flag("X-GNOME-Autostart-enabled", true) ||
           isKeptFromThisDesktop(entry);
}

}  // namespace

StartupEntry::State XdgStartupEntry::state() const {
    struct stat status {};
    const Path path = entryFile();
    if (::lstat(path.c_str(), &status) != 0)
        return errno == ENOENT || errno == ENOTDIR ? State::none : State::elsewhere;
    const auto file = PosixDataFiles(kernel_).read(path, kMostBytes + 1);
    if (!file.ok() || file.value().size() > kMostBytes) return State::elsewhere;
    const auto entry = DesktopEntry::parse(file.value());
    if (!entry) return State::elsewhere;
    if (isSwitchedOff(*entry)) return State::switchedOff;
    return startsThisProgram(*entry) ? State::works : State::elsewhere;
}

bool XdgStartupEntry::startsThisProgram(const DesktopEntry& entry) const {
    if (entry.value("Type") != "Application" || entry.value("Name").empty()) return false;
    if (entry.has("TryExec") && !isProgram(entry.value("TryExec"))) return false;
    const auto words = wordsOfExec(entry.value("Exec"));
    if (!words) return false;
    const Path program = programOf(*words);
    return isProgram(program) && leadToTheSame(program, programFile());
}

bool XdgStartupEntry::add() {
    const Path program = programFile();
    if (!program.starts_with(kPathSeparator) || !canStandInDesktopEntry(program)) return false;
    if (!PosixDataFiles(kernel_).makePrivateFolders(autostartFolder()).ok()) return false;
    // Unlike the files of the data folder this one is everybody's to read, and a link in its place is no sign that
    // someone wants it kept.
    return writeAtomically(kernel_, entryFile(), entryTextFor(program), kReadableByAll).ok();
}

bool XdgStartupEntry::remove() { return ::unlink(entryFile().c_str()) == 0 || errno == ENOENT || errno == ENOTDIR; }

}  // namespace vantrell
