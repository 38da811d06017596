// SPDX-License-Identifier: MIT
#include <fcntl.h>

#include "support/file_size_limit.h"
#include "support/toolbox_fixture.h"

namespace vantrell::test {
namespace {

/// Both ways to publish: files without a name, and files under a temporary one.
class Output : public WithToolbox, public testing::WithParamInterface<bool> {
public:
    std::unique_ptr<OutputFile> begin() { return box.createOutput(folder.path()).take(); }
    Result<> publish(const std::string& bytes, const std::string& name, Replace replace = Replace::never) {
        const auto file = begin();
        write(*file, bytes);
        EXPECT_TRUE(loop.valueOf(file->flush()).ok());
        return loop.valueOf(file->publish(name, replace));
    }
    PosixToolbox box{loop, loop.kernel(), clock, {GetParam()}};
};
INSTANTIATE_TEST_SUITE_P(Ways, Output, testing::Values(true, false),
                         [](const auto& way) { return way.param ? "Nameless" : "Named"; });

TEST_P(Output, HasNoNameOfItsOwnBeforeItIsPublished) {
    const mode_t old = ::umask(027);
    {
        const auto file = begin();
        write(*file, "abc");
        write(*file, "def");
        for (const auto& name : namesIn(folder.path())) EXPECT_EQ(name.rfind(".zep-", 0), 0U);
        EXPECT_EQ(namesIn(folder.path()).empty(), GetParam());
        EXPECT_TRUE(loop.valueOf(file->publish(std::string(255, 'n'), Replace::never)).ok());
    }
    ::umask(old);
    EXPECT_EQ(namesIn(folder.path()), Names{std::string(255, 'n')});
    EXPECT_EQ(readFile(folder / std::string(255, 'n')), "abcdef");
    EXPECT_EQ(statusAt(folder / std::string(255, 'n')).st_mode & 0777U, 0640U);
}

TEST_P(Output, ReplacesOnlyWhatMayBeReplacedAndOnlyFiles) {
    writeFile(folder / "taken", "old");
    write(*begin(), "dropped");
    EXPECT_EQ(faultOf(publish("new", "taken")), FaultKind::nameTaken);
    EXPECT_EQ(readFile(folder / "taken"), "old");
    EXPECT_TRUE(publish("new", "taken", Replace::allowed).ok());
    EXPECT_EQ(readFile(folder / "taken"), "new");
    folder.makeFolder("sub");
    std::filesystem::create_symlink("taken", folder / "link");
    const auto before = namesIn(folder.path());
    for (const char* name : {"sub", "link"})
        EXPECT_EQ(faultOf(publish("new", name, Replace::allowed)), FaultKind::nameTaken) << name;
    EXPECT_EQ(namesIn(folder.path()), before);
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "link"));
}

TEST_P(Output, AFailedWriteStaysFailed) {
    const auto file = begin();
    const std::string bytes(4096, 'x');
    {
        const FileSizeLimit limit(1024);
        EXPECT_FALSE(loop.valueOf(file->write(std::as_bytes(std::span(bytes)))).ok());
    }
    EXPECT_FALSE(loop.valueOf(file->write({})).ok());
    EXPECT_FALSE(loop.valueOf(file->flush()).ok());
    EXPECT_FALSE(loop.valueOf(file->publish("short", Replace::allowed)).ok());
    ASSERT_TRUE(loop.run(file->discard()));
    EXPECT_FALSE(loop.valueOf(file->publish("late", Replace::never)).ok());
    EXPECT_TRUE(namesIn(folder.path()).empty());
}

}  // namespace
}  // namespace vantrell::test
