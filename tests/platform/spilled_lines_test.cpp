// SPDX-License-Identifier: MIT
#include "platform/linux/spilled_lines.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <chrono>
#include <csignal>

#include "support/temporary_folder.h"

namespace vantrell::test {
namespace {

#if defined(__has_feature)
constexpr bool kSanitized = __has_feature(address_sanitizer);  // which keeps freed memory for a while
#else
constexpr bool kSanitized = false;
#endif

std::string numbered(std::size_t number) {
    return "11/16/26 14:00:00 Encryped:  file " + std::to_string(number) + " - Sucessful: " + std::string(40, 'x');
}

std::size_t residentBytes() {
    std::ifstream file("/proc/self/statm");
    std::size_t all = 0;
    std::size_t resident = 0;
    file >> all >> resident;
    return resident * static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
}

class SpilledLinesTest : public ::testing::Test {
protected:
    void append(std::size_t count) {
        for (std::size_t i = 0; i < count; ++i) lines.append(numbered(lines.size()));
    }
    TemporaryFolder root;
    Path folder = root.path();
    SpilledLines lines{folder};
};

TEST_F(SpilledLinesTest, GivesEveryLineBackAndLeavesNoNameBehind) {
    append(SpilledLines::kLinesInMemory - 1);
    lines.append("");
    lines.append("two\nlines and M\xFCller");
    append(30'000);
    EXPECT_LE(lines.linesInMemory(), SpilledLines::kLinesInMemory);
    EXPECT_TRUE(std::filesystem::is_empty(folder));
    for (const std::size_t index : {std::size_t(0), std::size_t(63), std::size_t(64), std::size_t(9998),
                                    std::size_t(10'001), std::size_t(25'000), lines.size() - 1}) {
        EXPECT_EQ(lines.line(index), numbered(index));
    }
    EXPECT_EQ(lines.line(9999), "");
    EXPECT_EQ(lines.line(10'000), std::string("two\nlines and M\xFCller"));
}

TEST_F(SpilledLinesTest, AMillionLinesTakeLittleMemoryAndTime) {
    const std::size_t before = residentBytes();
    const auto begin = std::chrono::steady_clock::now();
    append(1'000'000);
    for (std::size_t page = 0; page < 1000; ++page) {
        const std::size_t top = page * 999;
        for (std::size_t row = top; row < top + 40; ++row) ASSERT_EQ(lines.line(row), numbered(row));
    }
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(20));
    if (!kSanitized) EXPECT_LT(residentBytes() - before, std::size_t(16) << 20);
}

TEST_F(SpilledLinesTest, GoesElsewhereWhenTheFolderIsNotThere) {
    folder = root / "not there";
    append(SpilledLines::kLinesInMemory + 1);
    EXPECT_LE(lines.linesInMemory(), SpilledLines::kLinesInMemory);
    EXPECT_EQ(lines.line(0), numbered(0));
}

// A full disk, here a limit on the size of files.
TEST_F(SpilledLinesTest, KeepsInMemoryWhatCannotBeWritten) {
    append(SpilledLines::kLinesInMemory);
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit usual{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &usual), 0);
    rlimit tight = usual;
    tight.rlim_cur = 200'000;
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &tight), 0);
    append(20'000);
    const std::size_t kept = lines.linesInMemory();
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &usual), 0);
    EXPECT_GT(kept, SpilledLines::kLinesInMemory);
    append(2000);
    EXPECT_LE(lines.linesInMemory(), SpilledLines::kLinesInMemory) << "the disk has room again";
    for (std::size_t index = 0; index < lines.size(); index += 37) ASSERT_EQ(lines.line(index), numbered(index));
}

}  // namespace
}  // namespace vantrell::test
