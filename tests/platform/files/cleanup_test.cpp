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

}  // namespace
}  // namespace vantrell::test
