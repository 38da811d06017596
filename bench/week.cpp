// SPDX-License-Identifier: MIT
//
// A week of the whole program (real windows, offscreen) in as little time as the machine needs for it: a pass each
// minute of a clock that is set by hand, ten files in one of ten passes. What a program that runs for years must not do
// would show here: memory that grows, a window that gets slow.
//
//   bench_week [DAYS]     default: 7

#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <cstdio>
#include <cstdlib>
#include <map>

#include "app/program.h"
#include "base/date_text.h"
#include "bench/heart_beat.h"
#include "rig/hand_driven_timers.h"
#include "rig/profile.h"

namespace {

using namespace vantrell;
using test::residentKiB;

constexpr int kMinutesADay = 24 * 60;
constexpr int kMinutesAnHour = 60;
constexpr int kPassesPerDelivery = 10;
constexpr int kFilesPerDelivery = 10;
constexpr int kMenuOpenings = 20;
// The days begin with 2 May 2026, at 14:00 UTC, so that each of them crosses a midnight nearly everywhere.
constexpr std::chrono::seconds kBegin{1'777'730'400};

class SettableClock final : public Clock {
public:
    [[nodiscard]] TimePoint now() const override { return time; }
    [[nodiscard]] std::chrono::nanoseconds sinceBoot() const override { return time - TimePoint(kBegin); }
    TimePoint time{kBegin};
};

void clickAt(QWidget& widget, const QPoint& place) {
    for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        const Qt::MouseButtons held = type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton;
        QMouseEvent event(type, place, widget.mapToGlobal(place), Qt::LeftButton, held, Qt::NoModifier);
        QCoreApplication::sendEvent(&widget, &event);
    }
}

/// Remembers that a widget has been painted.
class PaintWatch final : public QObject {
public:
    explicit PaintWatch(QWidget& widget) : widget_(widget) { widget_.installEventFilter(this); }
    [[nodiscard]] bool isPainted() const { return painted_; }
    bool eventFilter(QObject*, QEvent* event) override {
        painted_ |= event->type() == QEvent::Paint;
        return false;
    }

private:
    QWidget& widget_;
    bool painted_ = false;
};

/// Opens a menu several times; the longest time from the click until it is painted.
double menuMs(frmMain& window) {
    double longest = 0;
    QMenuBar& bar = *window.menuBar();
    for (int i = 0; i < kMenuOpenings; ++i) {
        QMenu& menu = *window.findChild<QMenu*>(QStringLiteral("mnview"));
        const PaintWatch watch(menu);
        QElapsedTimer time;
        time.start();
        clickAt(bar, bar.actionGeometry(menu.menuAction()).center());
        while (!watch.isPainted()) QCoreApplication::processEvents();
        longest = std::max(longest, static_cast<double>(time.nsecsElapsed()) / 1e6);
        menu.close();
        while (menu.isVisible()) QCoreApplication::processEvents();
    }
    return longest;
}

class Week {
public:
    Week() { profile_.settings.RunContinuallyAtStartup = true; }

    bool start() {
        profile_.use();
        program_ = std::make_unique<Program>(clock_, timers_);
        if (!program_->start()) return false;
        timers_["timMax"].tickNow();
        waitForPass();
        return true;
    }

    void minute(int number) {
        clock_.time += std::chrono::minutes(1);
        if (number % kPassesPerDelivery == 0)
            for (int i = 0; i < kFilesPerDelivery; ++i)
                test::writeFile(profile_.in + "/" + std::to_string(number) + "-" + std::to_string(i), "contents");
        for (const char* timer : {"timCurTime", "tmchkTimer", "timRun"}) timers_[timer].tickNow();
        waitForPass();
    }

    /// The pass of this minute has ended when the caption says so.
    void waitForPass() {
        const QString ended = QString::fromStdString("ZEP Is PAUSED at " + timeText(clock_.time));
        while (window().windowTitle() != ended) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

    [[nodiscard]] frmMain& window() { return program_->window(); }
    [[nodiscard]] const test::Profile& profile() const { return profile_; }

private:
    test::TemporaryFolder folder_;
    test::Profile profile_{folder_.path()};
    SettableClock clock_;
    test::HandDrivenTimers timers_;
    std::unique_ptr<Program> program_;
};

std::size_t endingsIn(const std::string& log) {
    constexpr std::string_view kEnding = " ZEP Is PAUSED at ";
    std::size_t count = 0;
    for (std::size_t at = 0; (at = log.find(kEnding, at)) != std::string::npos; at += kEnding.size()) ++count;
    return count;
}

void print(const char* when, frmMain& window) {
    std::printf("%-22s %8lld KiB resident, a menu opens within %.1f ms\n", when, static_cast<long long>(residentKiB()),
                menuMs(window));
    std::fflush(stdout);
}

}  // namespace

int main(int argc, char** argv) try {
    ::setenv("QT_QPA_PLATFORM", "offscreen", 0);
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    const int days = argc > 1 ? std::atoi(argv[1]) : 7;
    Week week;
    if (!week.start()) return 1;
    print("at the start", week.window());
    QElapsedTimer time;
    time.start();
    std::int64_t first = 0;
    for (int minute = 1; minute <= days * kMinutesADay; ++minute) {
        week.minute(minute);
        if (minute == kMinutesAnHour) {
            print("after the first hour", week.window());
            first = residentKiB();
        }
        if (minute % kMinutesADay == 0)
            print(("after day " + std::to_string(minute / kMinutesADay)).c_str(), week.window());
    }
    const std::int64_t grown = residentKiB() - first;
    const std::size_t passes = endingsIn(week.profile().log());
    const std::size_t carried = test::countIn(week.profile().done);
    const std::size_t logs = test::countIn(week.profile().data + "/Daily Activity Logs");
    std::printf(
        "%zu passes in %.1f s, %zu files carried, %zu days' logs; memory grew by %lld KiB since the first hour\n",
        passes, static_cast<double>(time.elapsed()) / 1000, carried, logs, static_cast<long long>(grown));
    return 0;
} catch (const std::exception& exception) {
    std::fprintf(stderr, "%s\n", exception.what());
    return 1;
}
