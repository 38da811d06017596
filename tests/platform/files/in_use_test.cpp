// SPDX-License-Identifier: MIT
#include <fcntl.h>

#include "support/kernel_beside_loop.h"
#include "support/toolbox_fixture.h"

namespace vantrell::test {
namespace {

class InUse : public WithToolbox {
public:
    InUse() {
        path = folder / "file";
        writeFile(path, "contents");
    }
    std::string path;
};

TEST_F(InUse, AFileThatIsOpenForWritingIsInUseUntilItIsClosed) {
    {
        const LinuxFd writer(::open(path.c_str(), O_WRONLY | O_CLOEXEC));
        EXPECT_EQ(faultOf(toolbox.hold(path)), FaultKind::inUse);
    }
    const auto held = toolbox.hold(path);
    ASSERT_TRUE(held.ok()) << wordsOf(held);
    EXPECT_TRUE(held.value()->verify().ok());
    const LinuxFd reader(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    EXPECT_TRUE(held.value()->verify().ok()) << "readers disturb nobody";
    const LinuxFd writer(::open(path.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC));
    EXPECT_TRUE(writer) << "no lease may be left that holds up writers";
    EXPECT_EQ(faultOf(held.value()->verify()), FaultKind::inUse);
}

// For another owner's file the system does not say who has it open.
TEST_F(InUse, AnotherOwnersFileMustHaveBeenQuietForFiveSeconds) {
    if (::geteuid() != 0) GTEST_SKIP() << "another owner's file needs root's rights";
    ASSERT_EQ(::chmod(folder.path().c_str(), 0755), 0);
    ASSERT_EQ(::chmod(path.c_str(), 0644), 0);
    const OrdinaryUser user;
    clock.time = std::chrono::system_clock::now() + std::chrono::hours(1);
    EXPECT_EQ(faultOf(toolbox.hold(path)), FaultKind::inUse) << "the clock was set, which makes the file look old";
    clock.advance(std::chrono::milliseconds(4900));
    EXPECT_EQ(faultOf(toolbox.hold(path)), FaultKind::inUse);
    clock.advance(std::chrono::milliseconds(200));
    const auto held = toolbox.hold(path);
    ASSERT_TRUE(held.ok()) << wordsOf(held);
    EXPECT_TRUE(held.value()->verify().ok());
}

/// A file system of another kind, as the mount table names it.
class ElsewhereInUse : public InUse {
public:
    /// What `holdInTurn` gave, and how long it took.
    std::pair<std::optional<FaultKind>, std::chrono::milliseconds> holdInTurn(
        const std::function<void()>& meanwhile = {}) {
        std::optional<FaultKind> fault;
        TaskGroup group(loop.queue());
        group.start(hold(*box, path, fault));
        loop.settle();
        if (meanwhile) meanwhile();
        constexpr std::chrono::milliseconds kStep{10};
        std::chrono::milliseconds waited{0};
        for (; !group.isIdle() && waited < std::chrono::minutes(2); waited += kStep) {
            clock.advance(kStep);
            loop.advance(kStep);
            loop.settle();
        }
        return {fault, waited};
    }
    void mountAs(const std::string& type) {
        kernel.mountedAs = type;
        box = std::make_unique<PosixToolbox>(loop, kernel, clock);
    }
    KernelBesideLoop kernel{loop.kernel()};
    std::unique_ptr<PosixToolbox> box;

private:
    static Task<void> hold(FileToolbox& box, Path path, std::optional<FaultKind>& fault) {
        const Result<std::unique_ptr<HeldFile>> held = co_await box.holdInTurn(std::move(path), {});
        fault = faultOf(held);
    }
};

TEST_F(ElsewhereInUse, TwoEqualLooksTellWhatALeaseCannot) {
    for (const auto& [type, seconds] : {std::pair{"fuse", 5}, {"nfs4", 35}, {"fuse.sshfs", 35}}) {
        mountAs(type);
        EXPECT_EQ(faultOf(box->hold(path)), FaultKind::inUse) << "nothing is known yet";
        mountAs(type);
        const auto [fault, waited] = holdInTurn();
        EXPECT_EQ(fault, kSuccess);
        EXPECT_EQ(waited, std::chrono::seconds(seconds)) << type;
        mountAs(type);
        ASSERT_EQ(loop.valueOf(box->search({folder.path()})).size(), 1U);
        clock.advance(std::chrono::seconds(seconds - 1));
        EXPECT_EQ(holdInTurn().second, std::chrono::seconds(1)) << "the first look was taken by the search";
        mountAs(type);
        EXPECT_EQ(holdInTurn([this] { writeFile(path, "contents and more"); }).first, FaultKind::inUse);
        EXPECT_EQ(holdInTurn().first, kSuccess) << "the look that differed was the first one of the next time";
    }
}

TEST_F(ElsewhereInUse, AStampCountsWhenItsTimeIsOver) {
    clock.time = std::chrono::system_clock::now() + std::chrono::milliseconds(1000);
    mountAs("vfat");
    EXPECT_EQ(faultOf(box->hold(path)), FaultKind::inUse) << "a write that follows could leave the same stamp";
    const auto [fault, waited] = holdInTurn();
    EXPECT_EQ(fault, kSuccess);
    EXPECT_GT(waited, std::chrono::milliseconds(500));
    EXPECT_LE(waited, std::chrono::milliseconds(1010));
    mountAs("ext4");
    EXPECT_EQ(faultOf(box->hold(path)), kSuccess);
    clock.time = std::chrono::system_clock::now() - std::chrono::hours(1);
    EXPECT_EQ(faultOf(box->hold(path)), FaultKind::inUse) << "a time in the future tells nothing";
    EXPECT_EQ(holdInTurn().second, std::chrono::seconds(5));
}

using Beneath = WithToolbox;

TEST_F(Beneath, ALinkInThePlaceOfAFolderLeadsNowhere) {
    const std::string source = folder.makeFolder("source");
    const std::string outside = folder.makeFolder("outside");
    std::filesystem::create_directories(source + "/sub/deep");
    for (const std::string& where : {source + "/sub/deep", outside + "/deep"}) {
        std::filesystem::create_directories(where);
        writeFile(where + "/file", where);
        ASSERT_EQ(::chmod((where + "/file").c_str(), 0444), 0);
    }
    toolbox.beginPass(source);
    ASSERT_EQ(loop.valueOf(toolbox.search({source, true})).size(), 1U);
    const std::string path = source + "/sub/deep/file";
    const auto held = toolbox.hold(path);
    ASSERT_EQ(wordsOf(held), "");
    std::filesystem::rename(source + "/sub", folder / "away");
    std::filesystem::create_symlink(outside, source + "/sub");
    EXPECT_EQ(faultOf(toolbox.hold(path)), FaultKind::notThere);
    EXPECT_EQ(faultOf(held.value()->verify()), FaultKind::notThere);
    toolbox.clearReadOnly(path);
    EXPECT_EQ(statusAt(outside + "/deep/file").st_mode & 0777U, 0444U);
    const auto moved = loop.valueOf(toolbox.move({path, folder / "file"}));
    EXPECT_EQ(faultOf(moved), FaultKind::notThere);
    EXPECT_EQ(loop.valueOf(toolbox.search({source, true})).size(), 0U);
    toolbox.endPass();
    EXPECT_EQ(faultOf(toolbox.hold(path)), kSuccess) << "outside a pass a path is a path";
    std::filesystem::permissions(outside + "/deep/file", std::filesystem::perms::owner_all);
}

}  // namespace
}  // namespace vantrell::test
