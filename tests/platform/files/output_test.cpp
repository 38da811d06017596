// SPDX-License-Identifier: MIT
#include <fcntl.h>

#include "support/file_size_limit.h"
#include "support/toolbox_fixture.h"

namespace vantrell::test {
namespace {

/// Both ways to publish: files without a name, and files under a temporary one.
class Output : public WithToolbox, public testing::WithParamInterface<bool> {
public:
    std::unique_ptr<OutputFile> begin() {
        auto result = box.createOutput(folder.path());
        EXPECT_TRUE(result.file) << result.fault.text;
        return std::move(result.file);
    }
    FileFault publish(const std::string& bytes, const std::string& name, Replace replace = Replace::never) {
        const auto file = begin();
        write(*file, bytes);
        EXPECT_FALSE(loop.valueOf(file->flush()));
        return loop.valueOf(file->publish(folder / name, replace));
    }
    PosixToolbox box{loop, clock, {GetParam()}};
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
        EXPECT_FALSE(loop.valueOf(file->publish(folder / std::string(255, 'n'), Replace::never)));
    }
    ::umask(old);
    EXPECT_EQ(namesIn(folder.path()), Names{std::string(255, 'n')});
    EXPECT_EQ(readFile(folder / std::string(255, 'n')), "abcdef");
    EXPECT_EQ(statusAt(folder / std::string(255, 'n')).st_mode & 0777U, 0640U);
}

TEST_P(Output, ReplacesOnlyWhatMayBeReplacedAndOnlyFiles) {
    writeFile(folder / "taken", "old");
    write(*begin(), "dropped");
    EXPECT_EQ(publish("new", "taken").kind, FaultKind::nameTaken);
    EXPECT_EQ(readFile(folder / "taken"), "old");
    EXPECT_FALSE(publish("new", "taken", Replace::allowed));
    EXPECT_EQ(readFile(folder / "taken"), "new");
    folder.makeFolder("sub");
    std::filesystem::create_symlink("taken", folder / "link");
    const auto before = namesIn(folder.path());
    for (const char* name : {"sub", "link"})
        EXPECT_EQ(publish("new", name, Replace::allowed).kind, FaultKind::nameTaken) << name;
    EXPECT_EQ(namesIn(folder.path()), before);
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "link"));
}

TEST_P(Output, AbortAtAnyTurnLeavesNothing) {
    const std::string bytes((std::size_t{40} << 20U) + 7, 'b');
    const auto all = [](FileToolbox& toolbox_, Path where, const std::string& what) -> Task<FileFault> {
        auto made = toolbox_.createOutput(where);
        if (FileFault fault = co_await made.file->write(std::as_bytes(std::span(what)))) co_return fault;
        co_return co_await made.file->publish(where + "/name", Replace::never);
    };
    bool isDone = false;
    for (int turns = 1; !isDone; turns += 2) {
        ASSERT_LT(turns, 1000);
        isDone = abortAfter(turns, all(box, folder.path(), bytes));
        EXPECT_EQ(namesIn(folder.path()), isDone ? Names{"name"} : Names{});
    }
    EXPECT_EQ(std::filesystem::file_size(folder / "name"), bytes.size());
}

TEST_P(Output, AFailedWriteStaysFailed) {
    const auto file = begin();
    const std::string bytes(4096, 'x');
    {
        const FileSizeLimit limit(1024);
        EXPECT_TRUE(loop.valueOf(file->write(std::as_bytes(std::span(bytes)))));
    }
    EXPECT_TRUE(loop.valueOf(file->write({})));
    EXPECT_TRUE(loop.valueOf(file->flush()));
    EXPECT_TRUE(loop.valueOf(file->publish(folder / "short", Replace::allowed)));
    ASSERT_TRUE(loop.run(file->discard()));
    EXPECT_TRUE(loop.valueOf(file->publish(folder / "late", Replace::never)));
    EXPECT_TRUE(namesIn(folder.path()).empty());
}

}  // namespace
}  // namespace vantrell::test
