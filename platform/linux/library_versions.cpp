// SPDX-License-Identifier: MIT
#include "platform/library_versions.h"

#include <openssl/crypto.h>
#include <sqlite3.h>
#include <sys/utsname.h>

namespace vantrell {

namespace {

LibraryVersion kernel() {
    utsname system{};
    if (::uname(&system) != 0) return {"Kernel", "unknown"};
    return {system.sysname, system.release};
}

}  // namespace

std::vector<LibraryVersion> libraryVersions() {
    return {{"OpenSSL", ::OpenSSL_version(OPENSSL_VERSION_STRING)},
            {"SQLite", ::sqlite3_libversion()},
            {"liburing", VANTRELL_LIBURING},
            kernel()};
}

}  // namespace vantrell
