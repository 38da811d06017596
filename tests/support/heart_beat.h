// SPDX-License-Identifier: MIT
#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <string>
#include <utility>

namespace vantrell::test {

/// Beats once a millisecond in the event loop, and remembers for how long the loop let nobody in.
class HeartBeat {
public:
    explicit HeartBeat(std::function<void()> eachBeat) : eachBeat_(std::move(eachBeat)) {
        timer_.setTimerType(Qt::PreciseTimer);
        QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { beat(); });
        sinceBeat_.start();
        timer_.start(1);
    }

    [[nodiscard]] qint64 longestGapMs() const { return longest_; }
    /// Unlike the longest one not to be had from a single hiccup of the machine.
    [[nodiscard]] qint64 secondLongestGapMs() const { return secondLongest_; }

private:
    void beat() {
        const qint64 gap = sinceBeat_.restart();
        secondLongest_ = std::max(secondLongest_, std::min(gap, longest_));
        longest_ = std::max(longest_, gap);
        eachBeat_();
    }

    std::function<void()> eachBeat_;
    QTimer timer_;
    QElapsedTimer sinceBeat_;
    qint64 longest_ = 0;
    qint64 secondLongest_ = 0;
};

/// The memory of this process that is in the machine's memory.
inline std::int64_t residentKiB() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.rfind("VmRSS:", 0) == 0) return std::strtoll(line.c_str() + 6, nullptr, 10);
    return 0;
}

}  // namespace vantrell::test
