// SPDX-License-Identifier: MIT
#include "transport/file_report.h"

#include <utility>

namespace vantrell {

void FileReport::say(Saying saying) {
    if (isHeldBack_)
        heldBack_.push_back(std::move(saying));
    else
        sayNow(saying);
}

void FileReport::sayNow(const Saying& saying) {
    if (saying.isShown)
        report_.showInPanel1(saying.message);
    else
        log_.logEvent(saying.message);
    log_.saveWhenOn();
}

void FileReport::speak() {
    isHeldBack_ = false;
    for (const Saying& saying : std::exchange(heldBack_, {})) sayNow(saying);
}

void FileReport::left(const std::string& how) {
    if (isHeldBack_ && how == leftBefore_) heldBack_.clear();
    speak();
}

}  // namespace vantrell
