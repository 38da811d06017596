// SPDX-License-Identifier: MIT
#include "platform/files/spilled_lines.h"

#include <gtest/gtest.h>

#include "platform/linux/linux_kernel.h"
#include "rig/temporary_folder.h"
#include "support/file_size_limit.h"

namespace vantrell::test {
namespace {

std::string numbered(std::size_t number) {
    return "11/16/26 14:00:00 Encryped:  file " + std::to_string(number) + " - Sucessful: " + std::string(40, 'x');
}

class SpilledLinesTest : public ::testing::Test {
protected:
    void append(std::size_t count) {
        for (std::size_t i = 0; i < count; ++i) lines.append(numbered(lines.size()));
    }
    TemporaryFolder root;
    Path folder = root.path();
    LinuxKernel kernel;
    SpilledLines lines{kernel, folder, root.path()};
};

TEST_F(SpilledLinesTest, GivesEveryLineBackAndLeavesNoNameBehind) {
    append(SpilledLines::kLinesInMemory - 1);
    lines.append("");
    lines.append("two\nlines and M\xFCller");
    append(30'000);
    EXPECT_LE(lines.linesInMemory(), SpilledLines::kLinesInMemory);
    EXPECT_TRUE(std::filesystem::is_empty(folder));
    for (const std::size_t index : {0U, 63U, 64U, 9998U, 10'001U, 25'000U, 39'999U})
        EXPECT_EQ(lines.line(index), numbered(index));
    EXPECT_EQ(lines.line(9999), "");
    EXPECT_EQ(lines.line(10'000), std::string("two\nlines and M\xFCller"));
}

// A full disk, here a limit on the size of files.
TEST_F(SpilledLinesTest, KeepsInMemoryWhatCannotBeWritten) {
    append(SpilledLines::kLinesInMemory);
    {
        const FileSizeLimit limit(200'000);
        append(20'000);
        EXPECT_GT(lines.linesInMemory(), SpilledLines::kLinesInMemory);
    }
    append(2000);
    EXPECT_LE(lines.linesInMemory(), SpilledLines::kLinesInMemory) << "the disk has room again";
    for (std::size_t index = 0; index < lines.size(); index += 37) ASSERT_EQ(lines.line(index), numbered(index));
}

}  // namespace
}  // namespace vantrell::test
