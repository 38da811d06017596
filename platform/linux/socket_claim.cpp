// SPDX-License-Identifier: MIT
#include "platform/linux/socket_claim.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <utility>

namespace vantrell {

namespace {

std::string nameFor(const struct stat& folder) {
    return "vantrell-source-" + std::to_string(folder.st_dev) + "-" + std::to_string(folder.st_ino);
}

// The address of an abstract socket begins with a NUL, and ends where its length says.
int bindAbstract(const LinuxFd& socket, const std::string& name) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::copy(name.begin(), name.end(), std::begin(address.sun_path) + 1);
    const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + name.size());
    return ::bind(socket.get(), reinterpret_cast<const sockaddr*>(&address), length) == 0 ? 0 : errno;
}

}  // namespace

SourceClaim::Outcome SocketClaim::claim(const Path& folder) {
    struct stat status {};
    const bool isThere = ::stat(folder.c_str(), &status) == 0;
    std::string name = isThere ? nameFor(status) : std::string();
    if (isThere && name == name_) return Outcome::held;
    release();
    if (!isThere) return Outcome::impossible;
    LinuxFd socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const int error = socket ? bindAbstract(socket, name) : errno;
    if (error == EADDRINUSE) return Outcome::anothers;
    if (error != 0) return Outcome::impossible;
    socket_ = std::move(socket);
    name_ = std::move(name);
    return Outcome::held;
}

void SocketClaim::release() {
    socket_.reset();
    name_.clear();
}

}  // namespace vantrell
