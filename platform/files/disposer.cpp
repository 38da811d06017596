// SPDX-License-Identifier: MIT
#include "platform/files/disposer.h"

#include <utility>

#include "platform/files/use_probe.h"

namespace vantrell {

namespace {

Task<void> shrinkAndClose(EventLoop& loop, UniqueFd file, std::optional<Pending<int>> flush) {
    if (flush) co_await *flush;
    co_await shrink(loop, file);
}

// A reader that takes longer than these looks drops the file itself when it closes it.
constexpr int kLooks = 120;
constexpr std::chrono::milliseconds kBetweenLooks{500};

Task<void> shrinkWhenUnused(EventLoop& loop, UniqueFd file) {
    for (int look = 0; look < kLooks && !isOnlyDescriptor(file); ++look) co_await loop.after(kBetweenLooks);
    if (isOnlyDescriptor(file)) co_await shrink(loop, file);
}

bool isLarge(const UniqueFd& file) {
    struct stat status {};
    return file.status(status) == 0 && status.st_size > kDropStep;
}

}  // namespace

Task<void> shrink(EventLoop& loop, const UniqueFd& file) {
    struct stat status {};
    if (file.status(status) != 0 || status.st_nlink != 0) co_return;
    for (off_t size = status.st_size; size > kDropStep;) {
        size -= kDropStep;
        // What cannot be shrunk is dropped as a whole when it is closed.
        if (file.kernel().ftruncate(file.get(), size) != 0) co_return;
        co_await NextTurn(loop.queue());
    }
}

void Disposer::disposeWhenUnused(UniqueFd file) {
    if (isLarge(file)) tasks_.start(shrinkWhenUnused(loop_, std::move(file)));
}

void Disposer::dispose(UniqueFd file, std::optional<Pending<int>> flush) {
    if (isLarge(file)) tasks_.start(shrinkAndClose(loop_, std::move(file), std::move(flush)));
}

}  // namespace vantrell
