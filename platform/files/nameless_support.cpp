// SPDX-License-Identifier: MIT
#include "platform/files/nameless_support.h"

#include <string>

#include "platform/files/temporary_name.h"

namespace vantrell {

namespace {

constexpr mode_t kOrdinaryMode = 0666;

bool tryOut(const UniqueFd& folder) {
    const UniqueFd file = openNameless(folder);
    const std::string name = makeTemporaryName(folder.kernel());
    return file && nameTheNameless(file, folder, name) == 0 && folder.unlink(name.c_str()) == 0;
}

}  // namespace

UniqueFd openNameless(const UniqueFd& folder) {
    return folder.open(".", O_TMPFILE | O_RDWR | O_CLOEXEC, kOrdinaryMode);
}

int nameTheNameless(const UniqueFd& file, const UniqueFd& folder, const std::string& name) {
    return file.kernel().linkOpenFile(file.get(), folder.get(), name.c_str());
}

bool NamelessSupport::tryIn(const UniqueFd& folder) {
    struct stat status {};
    if (!allowed_ || folder.status(status) != 0) return false;
    const auto found = known_.find(status.st_dev);
    if (found != known_.end()) return found->second;
    return known_[status.st_dev] = tryOut(folder);
}

}  // namespace vantrell
