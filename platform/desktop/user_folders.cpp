// SPDX-License-Identifier: MIT
#include "platform/desktop/user_folders.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>

namespace vantrell {

namespace {

// The base directories want relative paths ignored.
Path absoluteFromEnvironment(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr || *value != kPathSeparator ? Path() : Path(value);
}

Path homeFolder() {
    if (Path home = absoluteFromEnvironment("HOME"); !home.empty()) return home;
    const passwd* user = ::getpwuid(::getuid());
    return user == nullptr ? Path(1, kPathSeparator) : Path(user->pw_dir);
}

}  // namespace

Path userDataFolder() {
    const Path data = absoluteFromEnvironment("XDG_DATA_HOME");
    return data.empty() ? homeFolder() + "/.local/share" : data;
}

Path userConfigFolder() {
    const Path config = absoluteFromEnvironment("XDG_CONFIG_HOME");
    return config.empty() ? homeFolder() + "/.config" : config;
}

Path temporaryFolder() {
    const Path named = absoluteFromEnvironment("TMPDIR");
    return named.empty() ? Path("/tmp") : named;
}

}  // namespace vantrell
