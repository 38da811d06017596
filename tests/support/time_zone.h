// SPDX-License-Identifier: MIT
#pragma once

#include <cstdlib>
#include <ctime>

namespace vantrell::test {

/// While it lives, local time is that of the zone; afterwards it is UTC.
class TimeZone {
public:
    explicit TimeZone(const char* name) { set(name); }
    TimeZone(const TimeZone&) = delete;
    TimeZone& operator=(const TimeZone&) = delete;
    ~TimeZone() { set("UTC"); }

private:
    static void set(const char* name) {
        ::setenv("TZ", name, 1);
        ::tzset();
    }
};

}  // namespace vantrell::test
