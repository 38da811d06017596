// SPDX-License-Identifier: MIT
#pragma once

#include <sys/socket.h>
#include <sys/un.h>

#include <cstdio>
#include <string_view>

namespace vantrell {

/// The socket in the data folder, and what is said there: the request, then the answer, each once for a connection.
inline constexpr char kShowSocketName[] = "show.sock";
inline constexpr std::string_view kShowRequestLine = "show\n";
inline constexpr std::string_view kShownLine = "shown\n";

/// The socket's address by way of the folder's descriptor: a socket's path may have 107 bytes only, and a data folder
/// can have more.
inline sockaddr_un showSocketIn(int folder) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    static_cast<void>(
        std::snprintf(address.sun_path, sizeof address.sun_path, "/proc/self/fd/%d/%s", folder, kShowSocketName));
    return address;
}

inline const sockaddr* asSocketAddress(const sockaddr_un& address) {
    return reinterpret_cast<const sockaddr*>(&address);
}

/// Whether the process at the other end belongs to our own user.
inline bool isOwnUsers(int connection, uid_t self) {
    ucred peer{};
    socklen_t size = sizeof peer;
    return ::getsockopt(connection, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 && peer.uid == self;
}

}  // namespace vantrell
