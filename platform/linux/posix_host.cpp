// SPDX-License-Identifier: MIT
#include "platform/linux/posix_host.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <utility>

#include "platform/desktop/user_folders.h"
#include "platform/files/place.h"

namespace vantrell {

namespace {

/// How a started program begins.
class SpawnSettings {
public:
    SpawnSettings() {
        ready_ = ::posix_spawnattr_init(&attributes_) == 0 && ::posix_spawn_file_actions_init(&actions_) == 0 &&
                 setSignals() && setStreams();
    }
    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;
    ~SpawnSettings() {
        ::posix_spawnattr_destroy(&attributes_);
        ::posix_spawn_file_actions_destroy(&actions_);
    }

    bool spawn(std::vector<std::string> words, bool searched, pid_t& process) {
        std::vector<char*> arguments;
        arguments.reserve(words.size() + 1);
        for (std::string& word : words) arguments.push_back(word.data());
        arguments.push_back(nullptr);
        const auto spawner = searched ? ::posix_spawnp : ::posix_spawn;
        return ready_ &&
               spawner(&process, words.front().c_str(), &actions_, &attributes_, arguments.data(), ::environ) == 0;
    }

private:
    // Blocked and ignored signals are inherited, and what we ignore would surprise others.
    bool setSignals() {
        sigset_t none;
        sigset_t usual;
        ::sigemptyset(&none);
        ::sigemptyset(&usual);
        for (const int signal : {SIGPIPE, SIGXFSZ, SIGIO}) ::sigaddset(&usual, signal);
        constexpr short kFlags = POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF;
        return ::posix_spawnattr_setsigmask(&attributes_, &none) == 0 &&
               ::posix_spawnattr_setsigdefault(&attributes_, &usual) == 0 &&
               ::posix_spawnattr_setflags(&attributes_, kFlags) == 0;
    }

    bool setStreams() {
        for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
            if (::posix_spawn_file_actions_addopen(&actions_, stream, "/dev/null", O_RDWR, 0) != 0) return false;
        return ::posix_spawn_file_actions_addclosefrom_np(&actions_, STDERR_FILENO + 1) == 0;
    }

    posix_spawnattr_t attributes_{};
    posix_spawn_file_actions_t actions_{};
    bool ready_ = false;
};

}  // namespace

PosixHost::~PosixHost() { collectEnded(); }

Path PosixHost::profileFolder() const {
    Path profile = environment("ALLUSERSPROFILE");
    return profile.empty() ? userDataFolder() : profile;
}

Path PosixHost::programFolder() const {
    std::array<char, PATH_MAX> file;
    const ssize_t length = ::readlink("/proc/self/exe", file.data(), file.size());
    return length <= 0 ? Path(".") : folderOf(Path(file.data(), static_cast<std::size_t>(length)));
}

void PosixHost::collectEnded() {
    std::erase_if(started_, [](pid_t process) {
        const pid_t ended = ::waitpid(process, nullptr, WNOHANG);
        return ended == process || (ended < 0 && errno == ECHILD);
    });
}

bool PosixHost::startProgram(const Path& file) { return start(file, {}, false); }

bool PosixHost::startFromSearchPath(const std::string& name, const std::vector<std::string>& arguments) {
    return start(name, arguments, true);
}

std::string PosixHost::environment(const std::string& name) const {
    const char* value = std::getenv(name.c_str());
    return value == nullptr ? std::string() : std::string(value);
}

bool PosixHost::start(const Path& file, const std::vector<std::string>& arguments, bool searched) {
    collectEnded();
    std::vector<std::string> words{file};
    words.insert(words.end(), arguments.begin(), arguments.end());
    pid_t process = 0;
    if (!SpawnSettings().spawn(std::move(words), searched, process)) return false;
    started_.push_back(process);
    return true;
}

InstanceLock::Outcome PosixInstanceLock::tryLock(const Path& folder) {
    constexpr int kFlags = O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY;
    file_ = openPath(kernel_, joinPath(folder, "instance.lock"), kFlags, S_IRUSR | S_IWUSR);
    if (!file_) return Outcome::impossible;
    switch (kernel_.flock(file_.get(), LOCK_EX | LOCK_NB)) {
        case 0:
            return Outcome::locked;
        case EWOULDBLOCK:
            return Outcome::anothers;
        default:
            return Outcome::impossible;
    }
}

}  // namespace vantrell
