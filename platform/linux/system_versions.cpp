// SPDX-License-Identifier: MIT
#include <sys/utsname.h>

#include "platform/library_versions.h"

namespace vantrell {

std::vector<LibraryVersion> systemVersions() {
    utsname system{};
    const bool isKnown = ::uname(&system) == 0;
    return {{"liburing", VANTRELL_LIBURING},
            isKnown ? LibraryVersion{system.sysname, system.release} : LibraryVersion{"Kernel", "unknown"}};
}

}  // namespace vantrell
