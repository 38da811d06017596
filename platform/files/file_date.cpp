// SPDX-License-Identifier: MIT
#include "platform/files/file_date.h"

#include <algorithm>

namespace vantrell {

namespace {

FileDate dateOf(const statx_timestamp& time) {
    // Dates beyond what the clock's type can hold (the year 2262) are as good as its end.
    constexpr std::int64_t kFarthest = 9'000'000'000;
    const std::int64_t seconds = std::clamp<std::int64_t>(time.tv_sec, -kFarthest, kFarthest);
    return FileDate(std::chrono::duration_cast<FileDate::duration>(std::chrono::seconds(seconds)) +
                    std::chrono::nanoseconds(time.tv_nsec));
}

FileDate laterDate(Kernel& kernel, int folder, const char* name, int flags) {
    struct statx status {};
    if (kernel.statx(folder, name, flags, STATX_BTIME | STATX_CTIME, status) != 0) return {};
    const FileDate changed = dateOf(status.stx_ctime);
    return (status.stx_mask & STATX_BTIME) == 0 ? changed : std::max(changed, dateOf(status.stx_btime));
}

}  // namespace

FileDate fileDateAt(Kernel& kernel, const Path& path) {
    return laterDate(kernel, AT_FDCWD, path.c_str(), AT_SYMLINK_NOFOLLOW);
}
FileDate fileDateOf(const UniqueFd& file) { return laterDate(file.kernel(), file.get(), "", AT_EMPTY_PATH); }

}  // namespace vantrell
