// SPDX-License-Identifier: MIT
#include <fcntl.h>

#include "support/toolbox_fixture.h"

namespace vantrell::test {
namespace {

using Toolbox = WithToolbox;

TEST_F(Toolbox, OnlyRegularFilesAreFiles) {
    writeFile(folder / "file", "x");
    folder.makeFolder("sub");
    ASSERT_EQ(::mkfifo((folder / "fifo").c_str(), 0600), 0);
    std::filesystem::create_symlink("file", folder / "link");
    std::filesystem::create_symlink("sub", folder / "subLink");
    EXPECT_EQ(toolbox.kindOf(folder / "file"), EntryKind::regularFile);
    EXPECT_EQ(toolbox.kindOf(folder / "sub"), EntryKind::folder);
    EXPECT_EQ(toolbox.kindOf(folder / "none"), EntryKind::missing);
    EXPECT_EQ(faultOf(toolbox.hold(folder / "none")), FaultKind::notThere);
    for (const char* name : {"fifo", "link", "sub"}) {
        EXPECT_EQ(faultOf(toolbox.hold(folder / name)), FaultKind::other) << name;
        EXPECT_EQ(faultOf(loop.valueOf(toolbox.move({folder / name, folder / "new"}))), FaultKind::other) << name;
    }
    EXPECT_EQ(toolbox.kindOf(folder / "link"), EntryKind::other);
    EXPECT_EQ(toolbox.kindOf(folder / "new"), EntryKind::missing);
    EXPECT_TRUE(toolbox.isFolder(folder / "subLink"));
    EXPECT_TRUE(toolbox.isSameFolder(folder / "sub", folder / "subLink").value());
    EXPECT_FALSE(toolbox.isSameFolder(folder / "sub", folder.path()).value());
    EXPECT_FALSE(toolbox.isFolder(folder / "link"));
    EXPECT_FALSE(toolbox.isSameFolder(folder / "none", folder / "none").value());
}

TEST_F(Toolbox, ReadOnlyIsTakenOffFilesAndNeverThroughLinks) {
    writeFile(folder / ".hidden", "x");
    ASSERT_EQ(::chmod((folder / ".hidden").c_str(), 0440), 0);
    std::filesystem::create_symlink(".hidden", folder / "link");
    toolbox.clearReadOnly(folder / "link");
    EXPECT_EQ(statusAt(folder / ".hidden").st_mode & 0777U, 0440U);
    toolbox.clearReadOnly(folder / ".hidden");
    EXPECT_EQ(statusAt(folder / ".hidden").st_mode & 0777U, 0640U);
}

TEST_F(Toolbox, TheFileDateIsTheArrivalAndNotTheModificationTime) {
    writeFile(folder / "old", "x");
    const timespec old[2] = {{1000, 0}, {1000, 0}};
    ASSERT_EQ(::utimensat(AT_FDCWD, (folder / "old").c_str(), old, 0), 0);
    const auto age = std::chrono::system_clock::now() - toolbox.fileDate(folder / "old");
    EXPECT_LT(age, std::chrono::minutes(1));
    EXPECT_EQ(toolbox.fileDate(folder / "none"), std::chrono::system_clock::time_point());
}

TEST_F(Toolbox, RemovesTheFileOfThatDateAlone) {
    writeFile(folder / "old", "x");
    const FileDate date = toolbox.fileDate(folder / "old");
    const auto removed = [&](const char* name, FileDate expected) {
        return faultOf(loop.valueOf(toolbox.removeFile(folder / name, expected)));
    };
    EXPECT_EQ(removed("old", date - std::chrono::nanoseconds(1)), FaultKind::inUse);
    EXPECT_EQ(removed("old", FileDate()), FaultKind::inUse);
    EXPECT_EQ(removed("none", date), FaultKind::notThere);
    std::filesystem::create_symlink("old", folder / "link");
    EXPECT_EQ(removed("link", toolbox.fileDate(folder / "link")), FaultKind::other);
    EXPECT_EQ(namesIn(folder.path()), (Names{"link", "old"}));
    writeFile(folder / "new", "y");
    std::filesystem::rename(folder / "new", folder / "old");
    EXPECT_EQ(removed("old", date), FaultKind::inUse) << "another file has taken the name";
    EXPECT_EQ(readFile(folder / "old"), "y");
    EXPECT_EQ(removed("old", toolbox.fileDate(folder / "old")), kSuccess);
    EXPECT_EQ(namesIn(folder.path()), Names{"link"});
}

TEST_F(Toolbox, RemovesALargeFileInStepsAndKeepsItForOthers) {
    writeFile(folder / "large", "begin");
    ASSERT_EQ(::truncate((folder / "large").c_str(), off_t{400} << 20U), 0);
    std::filesystem::create_hard_link(folder / "large", folder / "other");
    EXPECT_TRUE(loop.valueOf(toolbox.removeFile(folder / "large", toolbox.fileDate(folder / "large"))).ok());
    EXPECT_EQ(statusAt(folder / "other").st_size, off_t{400} << 20U);
    writeFile(folder / "read", "begin");
    ASSERT_EQ(::truncate((folder / "read").c_str(), off_t{400} << 20U), 0);
    const LinuxFd reader(::open((folder / "read").c_str(), O_RDONLY | O_CLOEXEC));
    EXPECT_TRUE(loop.valueOf(toolbox.removeFile(folder / "read", toolbox.fileDate(folder / "read"))).ok());
    EXPECT_EQ(::lseek(reader.get(), 0, SEEK_END), off_t{400} << 20U);

    const LinuxFd watcher(::open((folder / "other").c_str(), O_PATH | O_CLOEXEC));  // not one that reads
    EXPECT_TRUE(loop.valueOf(toolbox.removeFile(folder / "other", toolbox.fileDate(folder / "other"))).ok());
    struct stat status {};
    ASSERT_EQ(::fstat(watcher.get(), &status), 0);
    EXPECT_LE(status.st_size, off_t{64} << 20U);
    EXPECT_EQ(namesIn(folder.path()), Names{});
}

TEST_F(Toolbox, AFolderLiesUnderTheMountToWhichItsPathLeads) {
    const std::optional<MountPoint> here = toolbox.mountUnder(folder.path());
    ASSERT_TRUE(here);
    EXPECT_EQ(toolbox.mountUnder(folder / "none/at all"), here) << "where it would lie";
    const std::string link = folder / "link";
    std::filesystem::create_directory_symlink("/proc/self", link);
    for (const std::string& path : {link, std::string("/proc/1/none")}) {
        const std::optional<MountPoint> there = toolbox.mountUnder(path);
        ASSERT_TRUE(there);
        EXPECT_EQ(std::pair(there->path, there->type), (std::pair<Path, std::string>("/proc", "proc"))) << path;
    }
    std::filesystem::remove(link);
    std::filesystem::create_directory_symlink(".", link);
    EXPECT_EQ(toolbox.mountUnder(link), here) << "not what was known of it";
}

}  // namespace
}  // namespace vantrell::test
