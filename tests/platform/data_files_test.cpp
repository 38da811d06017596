// SPDX-License-Identifier: MIT
#include "platform/files/posix_data_files.h"
#include "platform/linux/linux_kernel.h"
#include "support/file_size_limit.h"
#include "support/toolbox_fixture.h"

namespace vantrell::test {
namespace {

namespace fs = std::filesystem;

unsigned modeOf(const std::string& path) { return statusAt(path).st_mode & 07777U; }

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

TEST_F(DataFilesTest, AWrittenFileIsWholePrivateAndAlone) {
    writeFile(file, "old and longer");
    fs::permissions(file, fs::perms{0644});
    const mode_t before = ::umask(0);
    EXPECT_TRUE(files.writeAtomically(file, "new").ok());
    EXPECT_TRUE(files.writeAtomically(folder / "other", "").ok());
    EXPECT_TRUE(files.appendLines(folder / "log", "a\r\n", true).ok());
    ::umask(before);
    EXPECT_TRUE(files.flush(folder / "log").ok());
    EXPECT_EQ(readFile(file), "new");
    EXPECT_EQ(readFile(folder / "log"), "a\r\n");
    for (const char* name : {"f", "other", "log"}) EXPECT_EQ(modeOf(folder / name), 0600U) << name;
    EXPECT_EQ(namesIn(folder.path()).size(), 3U);
    EXPECT_EQ(faultOf(files.flush(folder / "missing")), FaultKind::notThere);
    EXPECT_EQ(faultOf(files.appendLines(folder / "missing/f", "a\r\n", false)), FaultKind::notThere);
}

class KernelWithoutLinks final : public LinuxKernel {
public:
    int linkat(int, const char*, int, const char*) override { return EPERM; }
};

TEST_F(DataFilesTest, AKeptCopyOutlivesTheReplacementOfTheFile) {
    KernelWithoutLinks withoutLinks;
    PosixDataFiles copying(withoutLinks);
    const std::string old(300000, 'x');
    for (PosixDataFiles* disk : {&files, &copying}) {
        writeFile(file, old);
        fs::permissions(file, fs::perms{0640});
        EXPECT_TRUE(disk->keepCopy(file, file + ".kept").ok());
        EXPECT_EQ(statusAt(file).st_nlink, disk == &files ? 2U : 1U);
        EXPECT_TRUE(files.writeAtomically(file, "new").ok());
        EXPECT_TRUE(readFile(file + ".kept") == old);
        EXPECT_EQ(modeOf(file + ".kept"), 0640U);
        EXPECT_EQ(faultOf(disk->keepCopy(file, file + ".kept")), FaultKind::nameTaken);
        EXPECT_EQ(faultOf(disk->writeNew(file + ".kept", "new")), FaultKind::nameTaken);
        EXPECT_EQ(namesIn(folder.path()).size(), 2U);
        fs::remove(file + ".kept");
    }
    EXPECT_TRUE(files.writeNew(file + ".kept", "whole").ok());
    EXPECT_EQ(readFile(file + ".kept"), "whole");
    EXPECT_EQ(modeOf(file + ".kept"), 0600U);
}

TEST_F(DataFilesTest, AFailedWriteLeavesTheOldFileAndNothingElse) {
    writeFile(file, "old\r\n");
    const FileSizeLimit limit(1000);
    EXPECT_FALSE(files.writeAtomically(file, std::string(2000, 'x')).ok());
    EXPECT_FALSE(files.appendLines(file, std::string(2000, 'x') + "\r\n", false).ok());
    EXPECT_EQ(readFile(file), "old\r\n");
    EXPECT_EQ(namesIn(folder.path()).size(), 1U);
    EXPECT_TRUE(files.appendLines(file, "b\r\n", false).ok());
    EXPECT_EQ(readFile(file), "old\r\nb\r\n");
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

}  // namespace
}  // namespace vantrell::test
