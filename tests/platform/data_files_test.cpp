// SPDX-License-Identifier: MIT
#include "platform/files/posix_data_files.h"
#include "platform/files/spilled_lines.h"
#include "platform/linux/linux_kernel.h"
#include "support/file_size_limit.h"
#include "support/toolbox_fixture.h"

namespace vantrell::test {
namespace {

namespace fs = std::filesystem;

class DataFilesTest : public testing::Test {
protected:
    TemporaryFolder folder;
    std::string file = folder / "f";
    LinuxKernel kernel;
    PosixDataFiles files{kernel};
};

TEST_F(DataFilesTest, ReadsRegularFilesOnlyAndNeverWaits) {
    writeFile(file, std::string("a\0b", 3));
    EXPECT_EQ(files.read(file, 100).value(), std::string("a\0b", 3));
    EXPECT_EQ(files.read(file, 2).value(), std::string("a\0", 2));
    EXPECT_EQ(faultOf(files.read(folder / "missing", 100)), FaultKind::notThere);
    ASSERT_EQ(::mkfifo((folder / "fifo").c_str(), 0600), 0);
    EXPECT_FALSE(files.read(folder / "fifo", 100).ok());
    EXPECT_FALSE(files.read(folder.path(), 100).ok());
}

TEST_F(DataFilesTest, WhatIsNoRegularFileOrMayNotBeWrittenIsNotReplaced) {
    writeFile(file, "old");
    fs::permissions(file, fs::perms{0444});
    fs::permissions(folder.path(), fs::perms{0777});
    fs::create_symlink(file, folder / "link");
    folder.makeFolder("folder");
    const OrdinaryUser user;
    for (const char* name : {"link", "folder", "f"}) {
        EXPECT_FALSE(files.writeAtomically(folder / name, "new").ok()) << name;
        EXPECT_FALSE(files.appendLines(folder / name, "new\r\n", false).ok()) << name;
    }
    EXPECT_TRUE(fs::is_symlink(folder / "link"));
    EXPECT_EQ(readFile(file), "old");
    EXPECT_EQ(namesIn(folder.path()).size(), 3U);
}

TEST_F(DataFilesTest, ATornEndIsCutWhenAskedAndNothingElse) {
    const std::string most(65536, 'x');
    const std::string nuls(4096, '\0');
    const std::pair<std::string, std::string> cases[] = {
        {"", ""},
        {"a\r\n", "a\r\n"},
        {"a\r\ntorn\r", "a\r\n"},
        {"a\r\n" + nuls, "a\r\n"},
        {"a\r\n" + most, "a\r\n"},
        {"a\r\n" + most + "y", "a\r\n" + most + "y\r\n"},
        {"a\r\nkept by an editor\nand this", "a\r\nkept by an editor\nand this\r\n"},
        {"kept by an editor\n", "kept by an editor\n"},
        {"kept by an editor", "kept by an editor\r\n"},
    };
    for (const auto& [before, kept] : cases) {
        writeFile(file, before);
        EXPECT_TRUE(files.appendLines(file, "new\r\n", true).ok());
        EXPECT_TRUE(readFile(file) == kept + "new\r\n") << before.substr(0, 20) << " of " << before.size();
    }
    writeFile(file, "torn");
    EXPECT_TRUE(files.appendLines(file, "new\r\n", false).ok());
    EXPECT_EQ(readFile(file), "torn\r\nnew\r\n");
}

std::string numbered(std::size_t number) {
    return "11/16/26 14:00:00 Encryped:  file " + std::to_string(number) + " - Sucessful: " + std::string(40, 'x');
}

TEST_F(DataFilesTest, LinesGoToTheFileThatStandsUnderTheNameWhateverOthersDoWithIt) {
    const auto append = [&](const char* line) { return files.appendLines(file, line, false).ok(); };
    EXPECT_TRUE(append("one\r\n"));
    fs::rename(file, file + ".aside");
    EXPECT_TRUE(append("two\r\n"));
    EXPECT_EQ(readFile(file), "two\r\n");
    writeFile(file, "edited");
    EXPECT_TRUE(append("three\r\n"));
    EXPECT_EQ(readFile(file), "edited\r\nthree\r\n");
    EXPECT_EQ(readFile(file + ".aside"), "one\r\n");
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
