// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <sys/xattr.h>

#include "support/kernel_beside_loop.h"
#include "support/toolbox_fixture.h"

namespace vantrell::test {
namespace {

/// The same promises within one file system and across two.
class Move : public WithToolbox, public testing::WithParamInterface<bool> {
public:
    void SetUp() override {
        if (GetParam() && !other.isOtherThan(folder)) GTEST_SKIP() << "this machine has one file system only";
        source = folder.makeFolder("source") + "/file";
        done = GetParam() ? other->makeFolder("done") : folder.makeFolder("done");
        target = done + "/file";
        writeFile(source, "contents");
    }
    std::optional<FaultKind> move(Replace replace = Replace::never, HeldFile* expected = nullptr) {
        return faultOf(loop.valueOf(toolbox.move({source, target, replace, expected})));
    }
    void expectUntouched(const std::string& contents = "contents") {
        EXPECT_EQ(readFile(source), contents);
        EXPECT_EQ(namesIn(folder / "source"), Names{"file"});
    }
    void expectMoved() {
        EXPECT_TRUE(namesIn(folder / "source").empty());
        EXPECT_EQ(readFile(target), "contents");
        EXPECT_EQ(namesIn(done), Names{target.substr(done.size() + 1)});
    }

    OtherFileSystem other;
    std::string source;
    std::string done;
    std::string target;
};
INSTANTIATE_TEST_SUITE_P(Reach, Move, testing::Values(false, true),
                         [](const auto& reach) { return reach.param ? "AcrossFileSystems" : "Within"; });

TEST_P(Move, CarriesTheFileWithTimesAndPermissionsAndRenewsItsDate) {
    const timespec times[2] = {{1000, 5}, {2000, 7}};
    ASSERT_EQ(::utimensat(AT_FDCWD, source.c_str(), times, 0), 0);
    ASSERT_EQ(::chmod(source.c_str(), 0750), 0);
    const bool hasAttribute = ::setxattr(source.c_str(), "user.origin", "here", 4, 0) == 0;
    const auto before = timeOf(statusAt(source).st_ctim);
    EXPECT_EQ(move(), kSuccess);
    expectMoved();
    const auto after = statusAt(target);
    EXPECT_EQ(timeOf(after.st_mtim), (FileTime{2000, 7}));
    EXPECT_EQ(after.st_mode & 07777U, 0750U);
    EXPECT_GE(timeOf(after.st_ctim), before);
    char value[8];
    if (hasAttribute && ::getxattr(target.c_str(), "user.origin", value, sizeof value) >= 0)
        EXPECT_EQ(std::string(value, 4), "here");
}

TEST_P(Move, ReplacesOnlyWhatMayBeReplacedAndOnlyFiles) {
    writeFile(target, "old");
    EXPECT_EQ(move(), FaultKind::nameTaken);
    EXPECT_EQ(readFile(target), "old");
    expectUntouched();
    EXPECT_EQ(move(Replace::allowed), kSuccess);
    expectMoved();
    writeFile(source, "contents");
    std::filesystem::remove(target);
    std::filesystem::create_symlink("nowhere", target);
    EXPECT_EQ(move(Replace::allowed), FaultKind::nameTaken);
    EXPECT_TRUE(std::filesystem::is_symlink(target));
    target = done;
    EXPECT_EQ(move(Replace::allowed), FaultKind::nameTaken);
    target = done + "/none/file";
    EXPECT_EQ(move(), FaultKind::notThere);
    expectUntouched();
    source = folder / "source/none";
    EXPECT_EQ(move(), FaultKind::notThere);
}

TEST_P(Move, ASourceThatCannotBeRemovedLeavesNothingBehind) {
    if (::geteuid() != 0) GTEST_SKIP() << "another owner's folder needs root's rights";
    ASSERT_EQ(::chmod(folder.path().c_str(), 0755), 0);
    if (GetParam()) ASSERT_EQ(::chmod(other->path().c_str(), 0755), 0);
    ASSERT_EQ(::chmod(done.c_str(), 0777), 0);
    clock.advance(std::chrono::seconds(60));
    for (const mode_t mode : {mode_t{0755}, mode_t{01777}}) {
        ASSERT_EQ(::chmod((folder / "source").c_str(), mode), 0);
        const OrdinaryUser user;
        EXPECT_EQ(move(), FaultKind::notPermitted) << std::oct << mode;
        EXPECT_EQ(namesIn(folder / "source"), Names{"file"});
        EXPECT_TRUE(namesIn(done).empty());
    }
}

using OneFile = WithToolbox;

TEST_F(OneFile, OfTwoNamesTheSourceNameGoesAndOneNameStays) {
    writeFile(folder / "a", "contents");
    std::filesystem::create_hard_link(folder / "a", folder / "b");
    EXPECT_TRUE(loop.valueOf(toolbox.move({folder / "a", folder / "b"})).ok());
    EXPECT_EQ(namesIn(folder.path()), Names{"b"});
    std::filesystem::create_hard_link(folder / "b", folder / "a");
    EXPECT_TRUE(loop.valueOf(toolbox.move({folder / "a", folder / "b", Replace::allowed})).ok());
    EXPECT_EQ(namesIn(folder.path()), Names{"b"});
    EXPECT_EQ(readFile(folder / "b"), "contents");

    const std::string sub = folder.makeFolder("sub");
    writeFile(sub + "/a", "contents");
    std::filesystem::create_symlink("sub", folder / "link");
    EXPECT_TRUE(loop.valueOf(toolbox.move({sub + "/a", sub + "/a", Replace::allowed})).ok());
    EXPECT_TRUE(loop.valueOf(toolbox.move({sub + "/a", folder / "link/a", Replace::allowed})).ok());
    EXPECT_TRUE(loop.valueOf(toolbox.rename(sub + "/a", folder / "sub/./a")).ok());
    EXPECT_EQ(readFile(sub + "/a"), "contents");
}

/// A kernel whose flushes of folders fail while it is told so.
class FailingFlushes final : public KernelBesideLoop {
public:
    using KernelBesideLoop::KernelBesideLoop;
    void startFlush(RunQueue& queue, Ticket<int> ticket, int file) override {
        if (isFailing) return queue.wake(ticket, EIO);
        KernelBesideLoop::startFlush(queue, ticket, file);
    }
    bool isFailing = true;
};

TEST_F(OneFile, AGroupWhoseFlushFailsIsTakenBack) {
    FailingFlushes kernel(loop.kernel());
    kernel.mountedAs = "xfs";
    PosixToolbox failing(loop, kernel, clock);
    int told = 0;
    failing.onFlushFault([&told] { ++told; });
    const std::string source = folder.makeFolder("source");
    const std::string done = folder.makeFolder("done");
    const auto move = [&](int number) {
        const std::string name = "/" + std::to_string(number);
        writeFile(source + name, "x");
        return loop.valueOf(failing.move({source + name, done + name, Replace::never, nullptr, Durable::later}));
    };
    constexpr int kGroup = 256;
    for (int i = 1; i < kGroup; ++i) ASSERT_EQ(wordsOf(move(i)), "");
    EXPECT_EQ(faultOf(move(kGroup)), FaultKind::deviceFailing) << "the last one of the group has come back too";
    EXPECT_EQ(namesIn(source).size(), std::size_t{kGroup});
    EXPECT_EQ(move(0).ok(), true);
    EXPECT_EQ(faultOf(loop.valueOf(failing.flushMoves())), FaultKind::deviceFailing);
    EXPECT_TRUE(namesIn(done).empty());
    EXPECT_EQ(told, 2);
    kernel.isFailing = false;
    EXPECT_EQ(faultOf(loop.valueOf(failing.flushMoves())), kSuccess) << "it is told once";
}

// Another program has put the source's content where it is to go, or an earlier try has.
TEST_P(Move, AnEqualFileAtTheTargetIsTheFileAndAnotherOneIsNot) {
    for (const auto& [there, onEqual, isMoved] : {std::tuple{"contents", OnEqual::isTheSame, true},
                                                  {"contents", OnEqual::isReplaced, true},
                                                  {"contents", OnEqual::isAnother, false},
                                                  {"Contents", OnEqual::isTheSame, false},
                                                  {"contents!", OnEqual::isReplaced, false}}) {
        writeFile(source, "contents");
        writeFile(target, there);
        const auto standing = identityOf(statusAt(target));
        const auto arrived = timeOf(statusAt(target).st_ctim);
        const auto held = toolbox.hold(source);
        const MoveOrder order{source, target, Replace::never, held.value().get(), Durable::now, onEqual};
        EXPECT_EQ(faultOf(loop.valueOf(toolbox.move(order))), isMoved ? kSuccess : std::optional(FaultKind::nameTaken));
        EXPECT_EQ(readFile(target), there);
        EXPECT_EQ(std::filesystem::exists(source), !isMoved);
        EXPECT_EQ(identityOf(statusAt(target)) == standing, onEqual != OnEqual::isReplaced || !isMoved);
        if (isMoved) EXPECT_GT(timeOf(statusAt(target).st_ctim), arrived) << "it counts as arrived now";
        EXPECT_EQ(namesIn(done), Names{"file"});
    }
}

}  // namespace
}  // namespace vantrell::test
