// SPDX-License-Identifier: MIT
#pragma once

#include <QTimer>
#include <chrono>
#include <functional>

namespace vantrell {

inline constexpr std::chrono::milliseconds kThrottlePause{50};

/// Does its work at once when asked for the first time, and then at most every 50 ms, however often it is asked: nobody
/// reads faster, and a pass through many small files would otherwise be busy with showing itself.
class Throttle final {
public:
    explicit Throttle(std::function<void()> work);

    void request();
    /// For work that has grown so large that every 50 ms would be too often.
    void setPause(std::chrono::milliseconds pause) { pause_.setInterval(pause); }

private:
    void pauseIsOver();

    std::function<void()> work_;
    QTimer pause_;
    bool requested_ = false;
};

}  // namespace vantrell
