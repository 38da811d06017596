// SPDX-License-Identifier: MIT
#include "core/frmThrottle.h"

#include <utility>

namespace vantrell {

frmThrottle::frmThrottle(std::function<void()> work) : work_(std::move(work)) {
    pause_.setSingleShot(true);
    setPause(kThrottlePause);
    QObject::connect(&pause_, &QTimer::timeout, &pause_, [this] { pauseIsOver(); });
}

void frmThrottle::request() {
    requested_ = true;
    if (!pause_.isActive()) pauseIsOver();
}

void frmThrottle::pauseIsOver() {
    if (!std::exchange(requested_, false)) return;
    work_();
    pause_.start();
}

}  // namespace vantrell
