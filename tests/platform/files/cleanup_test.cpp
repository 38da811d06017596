// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <sys/file.h>

#include "support/toolbox_fixture.h"

namespace vantrell::test {
namespace {

class Cleanup : public WithToolbox {
public:
    void cleanUp() { cleanUp({out, source, folder / "none"}); }
    void cleanUp(std::vector<Path> outputs) {
        ASSERT_TRUE(loop.run(toolbox.cleanUpAfterCrash(std::move(outputs), source, [] { return false; })));
    }

    const std::string temporary = ".zep-0123456789abcdef";
    std::string source = folder.makeFolder("source");
    std::string out = folder.makeFolder("out");
};

TEST_F(Cleanup, LeftOutputsGoUnlessTheyAreAtWorkOrInSource) {
    const std::string locked = out + "/.zep-ffffffffffffffff";
    for (const auto& path : {out + "/" + temporary, locked, out + "/kept", out + "/.zep-0123456789ABCDEF"})
        writeFile(path, "x");
    std::filesystem::resize_file(out + "/" + temporary, std::size_t{200} << 20U);
    std::filesystem::create_symlink("kept", out + "/.zep-1111111111111111");
    const LinuxFd worker(::open(locked.c_str(), O_RDONLY | O_CLOEXEC));
    ASSERT_EQ(::flock(worker.get(), LOCK_EX), 0);
    PosixToolbox named(loop, loop.kernel(), clock, {false});
    const auto atWork = named.createOutput(out);
    const std::size_t count = namesIn(out).size();
    cleanUp();
    EXPECT_EQ(namesIn(out).size(), count - 1);
    EXPECT_EQ(toolbox.kindOf(out + "/" + temporary), EntryKind::missing);
    EXPECT_EQ(readFile(locked), "x");

    writeFile(source + "/" + temporary, "x");
    std::filesystem::create_symlink("source", folder / "link");
    cleanUp({source, folder / "link"});
    EXPECT_EQ(namesIn(source), Names{temporary}) << "a sender's file may have such a name";
}

TEST_F(Cleanup, FilesThatWereBeingRemovedComeBack) {
    clock.time = std::chrono::system_clock::from_time_t(1710512701);
    const std::string deep = folder.makeFolder("source/a/b");
    const std::string longName(255, 'n');
    for (const char* name : {"a/b/.zep-0123456789abcdef", ".zep-0123456789abcdef"})
        writeFile(folder.makeFolder(std::string("source/") + name) + "/file", "original");
    writeFile(deep + "/file", "newer");
    writeFile(folder.makeFolder("source/.zep-00000000000000aa") + "/" + longName, "long");
    writeFile(source + "/" + longName, "newer");
    const std::string inside = folder.makeFolder("source/.zep-00000000000000bb");
    writeFile(inside + "/file", "at work");
    const LinuxFd worker(::open(inside.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    ASSERT_EQ(::flock(worker.get(), LOCK_EX), 0);
    cleanUp();
    EXPECT_EQ(readFile(inside + "/file"), "at work");
    EXPECT_EQ(readFile(source + "/file"), "original");
    EXPECT_EQ(readFile(deep + "/file"), "newer");
    ASSERT_EQ(namesIn(deep).size(), 2U);
    const std::string dated = namesIn(deep).front();
    EXPECT_EQ(dated.substr(0, 6), "202403");
    EXPECT_EQ(dated.substr(15), "_file");
    EXPECT_EQ(readFile(deep + "/" + dated), "original");
    EXPECT_EQ(namesIn(source).size(), 5U) << "a, file, both of the long name, and what is at work";
    EXPECT_EQ(readFile(source + "/" + longName), "newer");
}

}  // namespace
}  // namespace vantrell::test
