// SPDX-License-Identifier: MIT
#include "platform/linux/unix_show_request.h"

#include <unistd.h>

#include <array>
#include <cerrno>

#include "platform/files/place.h"
#include "platform/linux/show_socket.h"

namespace vantrell {

namespace {

LinuxFd openSocket() { return LinuxFd(::socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0)); }

/// 0 or the host's error number; EAGAIN when the listener has not come round to earlier callers yet.
int connectTo(int folder, int socket) {
    const sockaddr_un address = showSocketIn(folder);
    return ::connect(socket, asSocketAddress(address), sizeof address) == 0 ? 0 : errno;
}

}  // namespace

UnixShowRequest::UnixShowRequest(const Path& folder) : folder_(openFolder(kernel_, folder)), socket_(openSocket()) {
    if (!folder_) answer_ = Answer::notRunning;
}

ShowRequest::Answer UnixShowRequest::answer() {
    if (answer_ != Answer::pending) return answer_;
    if (!isSent_) answer_ = send();
    if (isSent_ && answer_ == Answer::pending) answer_ = hear();
    return answer_;
}

ShowRequest::Answer UnixShowRequest::send() {
    const int error = connectTo(folder_.get(), socket_.get());
    if (error == EAGAIN || error == EINTR) return Answer::pending;
    if (error == ENOENT || error == ECONNREFUSED) return Answer::notRunning;
    if (error != 0 || !isOwnUsers(socket_.get(), ::geteuid())) return Answer::refused;
    // A fresh connection takes so few bytes at once.
    const ssize_t sent = ::send(socket_.get(), kShowRequestLine.data(), kShowRequestLine.size(), MSG_NOSIGNAL);
    isSent_ = sent == static_cast<ssize_t>(kShowRequestLine.size());
    return isSent_ ? Answer::pending : Answer::refused;
}

ShowRequest::Answer UnixShowRequest::hear() {
    std::array<char, kShownLine.size() + 1> piece;
    const ssize_t got = ::recv(socket_.get(), piece.data(), piece.size(), 0);
    if (got < 0 && (errno == EAGAIN || errno == EINTR)) return Answer::pending;
    if (got <= 0) return Answer::refused;
    heard_.append(piece.data(), static_cast<std::size_t>(got));
    if (heard_ == kShownLine) return Answer::shown;
    return kShownLine.starts_with(heard_) ? Answer::pending : Answer::refused;
}

bool someoneListensIn(const Path& folder) {
    LinuxKernel kernel;
    const UniqueFd opened = openFolder(kernel, folder);
    const LinuxFd socket = openSocket();
    const int error = opened && socket ? connectTo(opened.get(), socket.get()) : ENOENT;
    return error == 0 || error == EAGAIN;
}

}  // namespace vantrell
