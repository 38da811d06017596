// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <sys/file.h>

#include "platform/linux/temporary_name.h"
#include "support/toolbox_fixture.h"

namespace vantrell::test {
namespace {

class Cleanup : public WithToolbox {
public:
    void cleanUp() { ASSERT_TRUE(loop.run(toolbox.cleanUpAfterCrash({out, source, folder / "none"}, source))); }

    const std::string temporary = ".zep-0123456789abcdef";
    std::string source = folder.makeFolder("source");
    std::string out = folder.makeFolder("out");
};

TEST(TemporaryName, IsRecognisedAndNeverTheSameTwice) {
    const std::string one = makeTemporaryName();
    EXPECT_TRUE(isTemporaryName(one)) << one;
    EXPECT_NE(one, makeTemporaryName());
    EXPECT_FALSE(isTemporaryName(".zep-0123456789abcdeg"));
}

TEST_F(Cleanup, LeftOutputsGoUnlessTheyAreAtWork) {
    const std::string locked = out + "/.zep-ffffffffffffffff";
    for (const auto& path : {out + "/" + temporary, locked, out + "/kept", out + "/.zep-0123456789ABCDEF"})
        writeFile(path, "x");
    std::filesystem::resize_file(out + "/" + temporary, std::size_t{200} << 20U);
    std::filesystem::create_symlink("kept", out + "/.zep-1111111111111111");
    const UniqueFd worker(::open(locked.c_str(), O_RDONLY | O_CLOEXEC));
    ASSERT_EQ(::flock(worker.get(), LOCK_EX), 0);
    PosixToolbox named(loop, clock, {false, std::chrono::steady_clock::now});
    const auto atWork = named.createOutput(out);
    const std::size_t count = namesIn(out).size();
    cleanUp();
    EXPECT_EQ(namesIn(out).size(), count - 1);
    EXPECT_EQ(toolbox.kindOf(out + "/" + temporary), EntryKind::missing);
    EXPECT_EQ(readFile(locked), "x");
}

TEST_F(Cleanup, NothingIsRemovedFromTheSourceFolder) {
    writeFile(source + "/" + temporary, "x");
    std::filesystem::create_symlink("source", folder / "link");
    ASSERT_TRUE(loop.run(toolbox.cleanUpAfterCrash({source, folder / "link"}, source)));
    EXPECT_EQ(namesIn(source), Names{temporary});
}

TEST_F(Cleanup, FilesThatWereBeingRemovedComeBack) {
    clock.wall = std::chrono::system_clock::from_time_t(1710512701);
    const std::string deep = folder.makeFolder("source/a/b");
    const std::string longName(255, 'n');
    for (const auto& where : {source, deep}) {
        folder.makeFolder(where.substr(folder.path().size() + 1) + "/" + temporary);
        writeFile(where + "/" + temporary + "/file", "original");
    }
    writeFile(deep + "/file", "newer");
    folder.makeFolder("source/" + std::string(".zep-00000000000000aa"));
    writeFile(source + "/.zep-00000000000000aa/" + longName, "long");
    writeFile(source + "/" + longName, "newer");
    cleanUp();
    EXPECT_EQ(readFile(source + "/file"), "original");
    EXPECT_EQ(readFile(deep + "/file"), "newer");
    ASSERT_EQ(namesIn(deep).size(), 2U);
    const std::string dated = namesIn(deep).front();
    EXPECT_EQ(dated.substr(0, 6), "202403");
    EXPECT_EQ(dated.substr(15), "_file");
    EXPECT_EQ(readFile(deep + "/" + dated), "original");
    EXPECT_EQ(namesIn(source).size(), 4U) << "a, file, and both of the long name";
    EXPECT_EQ(readFile(source + "/" + longName), "newer");
}

TEST_F(Cleanup, APrivateFolderAtWorkIsLeftAlone) {
    const std::string inside = folder.makeFolder("source/" + temporary);
    writeFile(inside + "/file", "original");
    const UniqueFd worker(::open(inside.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    ASSERT_EQ(::flock(worker.get(), LOCK_EX), 0);
    cleanUp();
    EXPECT_EQ(readFile(inside + "/file"), "original");
}

}  // namespace
}  // namespace vantrell::test
