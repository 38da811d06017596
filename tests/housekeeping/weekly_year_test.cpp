// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <optional>

#include "support/forwarding_toolbox.h"
#include "support/time_zone.h"
#include "support/weekly_bench.h"

namespace vantrell::test {
namespace {

using namespace std::chrono;

/// A Done folder of names and dates.
class DatedFolder final : public ForwardingToolbox {
public:
    using ForwardingToolbox::ForwardingToolbox;
    Task<std::vector<Path>> listFiles(Path) override {
        std::vector<Path> names;
        for (const auto& [name, date] : files) names.push_back(name);
        co_return names;
    }
    [[nodiscard]] FileDate fileDate(const Path& path) const override { return files.at(nameOf(path)); }
    Task<Result<>> removeFile(Path path, FileDate date) override {
        EXPECT_EQ(files.at(nameOf(path)), date);
        files.erase(nameOf(path));
        gone.push_back(nameOf(path));
        co_return Result<>();
    }
    std::map<Path, FileDate> files;
    std::vector<Path> gone;

private:
    static Path nameOf(const Path& path) { return path.substr(path.rfind('/') + 1); }
};

/// The rule once more, with the published changes of 2028 instead of the system's tables. A place has one offset, and
/// another one between two moments.
struct Place {
    const char* zone;
    hours usual, between;
    sys_seconds begin, end;

    [[nodiscard]] hours offsetAt(sys_seconds time) const { return time >= begin && time < end ? between : usual; }
    [[nodiscard]] sys_days dayOf(sys_seconds time) const { return floor<days>(time + offsetAt(time)); }
    /// The first moment at which the clocks show it; else the change at which they skip it.
    [[nodiscard]] sys_seconds momentOf(sys_seconds shown) const {
        std::optional<sys_seconds> first;
        for (const hours offset : {usual, between})
            if (offsetAt(shown - offset) == offset && (!first || shown - offset < *first)) first = shown - offset;
        return first.value_or(abs(shown - begin) < abs(shown - end) ? begin : end);
    }
};

struct Year {
    Place place;
    int day, hour, minute;
    const char* half;
    int daysOld;

    friend void PrintTo(const Year& year, std::ostream* out) {
        *out << year.place.zone << ", day " << year.day << ", " << year.hour << ':' << year.minute << year.half;
    }
};

constexpr sys_seconds kBegin = sys_days(2028y / January / 1);  // a leap year
constexpr sys_seconds kEnd = sys_days(2029y / January / 1);
constexpr bool isAsleep(sys_seconds time) {
    return time > sys_days(2028y / June / 3) && time < sys_days(2028y / June / 20);
}

const Place kNewYork{"America/New_York", -5h, -4h, sys_days(2028y / March / 12) + 7h,
                     sys_days(2028y / November / 5) + 6h};
const Place kBerlin{"Europe/Berlin", 1h, 2h, sys_days(2028y / March / 26) + 1h, sys_days(2028y / October / 29) + 1h};
const Place kSydney{"Australia/Sydney", 11h, 10h, sys_days(2028y / April / 1) + 16h,
                    sys_days(2028y / September / 30) + 16h};
const Place kSantiago{"America/Santiago", -3h, -4h, sys_days(2028y / April / 2) + 3h,
                      sys_days(2028y / September / 3) + 4h};

class WeeklyYear : public ::testing::TestWithParam<Year> {
protected:
    using Deleted = std::map<Path, sys_seconds>;

    void SetUp() override {
        int count = 0;
        for (sys_seconds date = kBegin - 240h; date < kEnd; date += 5h + 17min)
            arrivals[std::to_string(++count)] = date;
    }
    [[nodiscard]] Deleted expected() const {
        const Year& year = GetParam();
        const int hour = year.hour % 12 + (year.half == std::string("PM") ? 12 : 0);
        Deleted deleted;
        for (sys_days day = floor<days>(kBegin) - days(1); day <= kEnd; ++day) {
            const sys_seconds moment = year.place.momentOf(day + hours(hour) + minutes(year.minute));
            if (weekday(day).iso_encoding() != static_cast<unsigned>(year.day)) continue;
            if (moment < kBegin || moment >= kEnd || isAsleep(moment)) continue;
            for (const auto& [name, date] : arrivals)
                if (year.place.dayOf(moment) - year.place.dayOf(date) > days(year.daysOld))
                    deleted.emplace(name, moment);
        }
        return deleted;
    }
    std::map<Path, sys_seconds> arrivals;
};

TEST_P(WeeklyYear, DeletesWhatTheRuleSays) {
    const Year& year = GetParam();
    WeeklyBench weekly;
    DatedFolder folder(weekly.bench.toolbox);
    weekly.startAnew(folder);
    const TimeZone zone(year.place.zone);
    setSchedule(weekly.settings(), year.day, year.hour, year.minute, year.half, year.daysOld);
    Deleted deleted;
    for (const auto& [name, date] : arrivals) folder.files.emplace(name, date);
    weekly.bench.clock.advance(duration_cast<seconds>(kBegin - weekly.bench.clock.time));
    for (sys_seconds now = kBegin; now < kEnd; now += 1min, weekly.bench.clock.advance(1min)) {
        if (isAsleep(now)) continue;
        weekly.tick();
        EXPECT_FALSE(weekly.tick()) << "twice within a minute";
        for (const Path& name : std::exchange(folder.gone, {})) deleted.emplace(name, now);
    }
    EXPECT_GT(deleted.size(), 1500U);
    EXPECT_EQ(deleted, expected());
}

INSTANTIATE_TEST_SUITE_P(Places, WeeklyYear,
                         ::testing::Values(Year{kNewYork, 7, 2, 30, "AM", 7}, Year{kNewYork, 7, 1, 30, "AM", 8},
                                           Year{kBerlin, 7, 2, 0, "AM", 14}, Year{kSydney, 7, 2, 59, "AM", 7},
                                           Year{kSantiago, 7, 12, 30, "AM", 10}, Year{kSantiago, 6, 11, 30, "PM", 7},
                                           Year{kBerlin, 2, 12, 0, "PM", 9}));

SettingsRecord schedule(int day, int hour, int minute, const char* half) {
    SettingsRecord settings;
    setSchedule(settings, day, hour, minute, half, 7);
    return settings;
}

TEST(WeeklySchedule, IsNotRepeatedWhenClockOrScheduleGoBack) {
    const TimeZone zone("UTC");
    constexpr sys_days kMonday = 2026y / November / 2;
    WeeklySchedule weekly;
    const SettingsRecord midnight = schedule(1, 12, 0, "AM");
    EXPECT_TRUE(weekly.takeDue(midnight, kMonday));
    EXPECT_FALSE(weekly.takeDue(midnight, kMonday - 1s));
    EXPECT_FALSE(weekly.takeDue(midnight, kMonday));
    EXPECT_TRUE(weekly.takeDue(schedule(1, 12, 1, "AM"), kMonday + 1min)) << "another minute";
    EXPECT_FALSE(weekly.takeDue(midnight, kMonday));
    EXPECT_TRUE(weekly.takeDue(midnight, kMonday + 7 * 24h)) << "another date";
}

TEST(WeeklySchedule, CountsDaysByTheCalendarOfTheZone) {
    const TimeZone zone("Pacific/Apia");  // 30 December 2011, a Friday, did not take place here
    const sys_seconds gap = sys_days(2011y / December / 30) + 10h;
    EXPECT_EQ(localDay(gap - 1s), local_days(2011y / December / 29));
    EXPECT_EQ(localDay(gap), local_days(2011y / December / 31));
    EXPECT_TRUE(WeeklySchedule().takeDue(schedule(5, 3, 0, "PM"), gap));
    EXPECT_FALSE(WeeklySchedule().takeDue(schedule(5, 3, 0, "PM"), gap + 1min));
}

}  // namespace
}  // namespace vantrell::test
