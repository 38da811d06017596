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

/// How long this thread was ready to run while another thread had the processor.
inline std::int64_t waitedForProcessorNs() {
    std::ifstream statistics("/proc/thread-self/schedstat");
    std::int64_t ran = 0;
    std::int64_t waited = 0;
    statistics >> ran >> waited;
    return waited;
}

/// Beats once a millisecond in the event loop, and remembers for how long the loop let nobody in. What other programs
/// took of the processor meanwhile is not held against it.
class HeartBeat {
public:
    explicit HeartBeat(std::function<void()> eachBeat) : eachBeat_(std::move(eachBeat)) {
        timer_.setTimerType(Qt::PreciseTimer);
        QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { beat(); });
        sinceBeat_.start();
        timer_.start(1);
    }

    /// People notice a window that does not react for longer than this.
    static constexpr qint64 kNoticedMs = 100;

    [[nodiscard]] qint64 longestGapMs() const { return longest_; }
    [[nodiscard]] int noticedGaps() const { return noticed_; }

private:
    void beat() {
        const std::int64_t waited = waitedForProcessorNs();
        const qint64 gap = sinceBeat_.restart() - (waited - waitedBefore_) / kNsPerMs;
        waitedBefore_ = waited;
        if (gap > kNoticedMs) ++noticed_;
        longest_ = std::max(longest_, gap);
        eachBeat_();
    }

    std::function<void()> eachBeat_;
    QTimer timer_;
    QElapsedTimer sinceBeat_;
    static constexpr std::int64_t kNsPerMs = 1'000'000;

    std::int64_t waitedBefore_ = waitedForProcessorNs();
    qint64 longest_ = 0;
    int noticed_ = 0;
};

/// How much of the machine's memory this process uses at the moment (its resident set).
inline std::int64_t residentKiB() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.rfind("VmRSS:", 0) == 0) return std::strtoll(line.c_str() + 6, nullptr, 10);
    return 0;
}

}  // namespace vantrell::test
