// SPDX-License-Identifier: MIT
#include "widgets/throttle.h"

#include <utility>

namespace vantrell {

Throttle::Throttle(std::function<void()> work) : work_(std::move(work)) {
    pause_.setSingleShot(true);
    setPause(kThrottlePause);
    QObject::connect(&pause_, &QTimer::timeout, &pause_, [this] { pauseIsOver(); });
}

void Throttle::request() {
    requested_ = true;
    if (!pause_.isActive()) pauseIsOver();
}

void Throttle::pauseIsOver() {
    if (!std::exchange(requested_, false)) return;
    work_();
    pause_.start();
}

}  // namespace vantrell
