// SPDX-License-Identifier: MIT
#include "platform/linux/unix_show_listener.h"

#include <fcntl.h>
#include <sys/epoll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <utility>

#include "platform/files/place.h"
#include "platform/linux/show_socket.h"

namespace vantrell {

namespace {

constexpr std::size_t kMostConnections = 8;
constexpr int kMostAcceptedAtOnce = 16;
constexpr int kBacklog = 64;
constexpr mode_t kPrivateSocket = 0600;

// One that is no socket is somebody's file, and stays.
bool removeLeftOver(int folder) {
    struct stat status {};
    if (::fstatat(folder, kShowSocketName, &status, AT_SYMLINK_NOFOLLOW) != 0) return errno == ENOENT;
    return S_ISSOCK(status.st_mode) && ::unlinkat(folder, kShowSocketName, 0) == 0;
}

LinuxFd openSpare() { return LinuxFd(::open("/dev/null", O_RDONLY | O_CLOEXEC)); }

}  // namespace

UnixShowListener::~UnixShowListener() {
    if (!socketIsOurs()) return;
    // One that stays is replaced by the next start.
    if (::unlinkat(folder_.get(), kShowSocketName, 0) != 0) return;
}

bool UnixShowListener::socketIsOurs() const {
    struct stat status {};
    return events_ && ::fstatat(folder_.get(), kShowSocketName, &status, AT_SYMLINK_NOFOLLOW) == 0 &&
           S_ISSOCK(status.st_mode) && status.st_ino == inode_;
}

bool UnixShowListener::listen(const Path& folder, std::function<void()> show) {
    show_ = std::move(show);
    folder_ = openFolder(kernel_, folder);
    if (!folder_ || !removeLeftOver(folder_.get()) || !openSocket()) return false;
    spare_ = openSpare();
    events_ = LinuxFd(::epoll_create1(EPOLL_CLOEXEC));
    if (events_ && watch(socket_.get())) return true;
    events_.reset();
    return false;
}

bool UnixShowListener::openSocket() {
    socket_ = LinuxFd(::socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    // The name in the folder gets the mode that the socket has before.
    if (!socket_ || ::fchmod(socket_.get(), kPrivateSocket) != 0) return false;
    const sockaddr_un address = showSocketIn(folder_.get());
    if (::bind(socket_.get(), asSocketAddress(address), sizeof address) != 0) return false;
    struct stat status {};
    if (::fstatat(folder_.get(), kShowSocketName, &status, AT_SYMLINK_NOFOLLOW) != 0) return false;
    inode_ = status.st_ino;
    return ::listen(socket_.get(), kBacklog) == 0;
}

bool UnixShowListener::watch(int descriptor) const {
    epoll_event event{};
    event.events = EPOLLIN;
    return ::epoll_ctl(events_.get(), EPOLL_CTL_ADD, descriptor, &event) == 0;
}

void UnixShowListener::serve() {
    std::erase_if(connections_, [this](Connection& connection) { return hear(connection) == Talk::isOver; });
    acceptSome();
}

void UnixShowListener::acceptSome() {
    for (int count = 0; count < kMostAcceptedAtOnce; ++count) {
        Connection connection{LinuxFd(::accept4(socket_.get(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC)), {}};
        if (!connection.socket) {
            if (errno == EMFILE || errno == ENFILE) hangUpOnNextCaller();
            return;
        }
        if (!isOwnUsers(connection.socket.get(), ::geteuid()) || hear(connection) == Talk::isOver) continue;
        makeRoom();
        if (watch(connection.socket.get())) connections_.push_back(std::move(connection));
    }
}

// While the process has no descriptor left, a caller that stays in the queue would wake the event loop for ever.
void UnixShowListener::hangUpOnNextCaller() {
    spare_.reset();
    LinuxFd(::accept4(socket_.get(), nullptr, nullptr, SOCK_CLOEXEC)).reset();
    spare_ = openSpare();
}

// The oldest connections are closed. What they have just sent is answered before.
void UnixShowListener::makeRoom() {
    while (connections_.size() >= kMostConnections) {
        static_cast<void>(hear(connections_.front()));
        connections_.pop_front();
    }
}

// Takes in what the caller has said, and answers the request once it is whole.
UnixShowListener::Talk UnixShowListener::hear(Connection& connection) {
    std::array<char, kShowRequestLine.size() + 1> piece;
    const ssize_t got = ::recv(connection.socket.get(), piece.data(), piece.size(), 0);
    if (got < 0 && (errno == EAGAIN || errno == EINTR)) return Talk::goesOn;
    if (got <= 0) return Talk::isOver;
    connection.heard.append(piece.data(), static_cast<std::size_t>(got));
    if (connection.heard != kShowRequestLine)
        return kShowRequestLine.starts_with(connection.heard) ? Talk::goesOn : Talk::isOver;
    show_();
    // An answer that cannot be delivered has nobody who waits for it.
    static_cast<void>(
        ::send(connection.socket.get(), kShownLine.data(), kShownLine.size(), MSG_NOSIGNAL | MSG_DONTWAIT));
    return Talk::isOver;
}

}  // namespace vantrell
