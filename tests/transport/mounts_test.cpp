// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "support/forwarding_toolbox.h"
#include "support/pass_bench.h"

namespace vantrell::test {
namespace {

using Texts = std::vector<std::string>;

/// Says of every folder that it lies under one mount, but for `away`, and lets a test in between.
class PlayedMounts final : public ForwardingToolbox {
public:
    using ForwardingToolbox::ForwardingToolbox;
    [[nodiscard]] std::optional<MountPoint> mountUnder(const Path& folder) const override {
        return folder == away ? MountPoint{"/", "ext4"} : share;
    }
    Task<Result<>> move(MoveOrder order) override {
        const Result<> moved = co_await ForwardingToolbox::move(std::move(order));
        afterMove();
        co_return moved;
    }
    Task<void> cleanUpAfterCrash(std::vector<Path> outputs, Path source, std::function<bool()> isStopped) override {
        beforeCleanUp();
        return ForwardingToolbox::cleanUpAfterCrash(std::move(outputs), std::move(source), std::move(isStopped));
    }
    Path away;
    MountPoint share{"/mnt/share", "nfs4", 7};
    std::function<void()> afterMove = [] {};
    std::function<void()> beforeCleanUp = [] {};
};

class MountsTest : public testing::Test {
protected:
    /// A pass that knows of mounts what the data folder holds.
    void startAnew() {
        mounts.emplace(bench.files, bench.state.AppFolder + "/" + kFolderMountsName);
        PassParts p = bench.partsOn(toolbox);
        pass.emplace(
            PassParts{p.state, p.window, p.report, p.log, p.settings, p.toolbox, p.boxes, p.loop, p.clock, p.timRun,
                      p.mode, p.notices, p.password, p.noPassword, p.flushNote, p.namesakes, *mounts, p.claim},
            [this] { return std::make_unique<CryptoComponent>(bench.loop, toolbox, makeOpensslCipher); });
    }
    void runPass() {
        (void)bench.messages();
        ASSERT_TRUE(bench.loop.run(pass->timRun_Timer()));
    }
    bool isCarried(const std::string& name) { return bench.exists(bench.done(name)); }

    PassBench bench;
    PlayedMounts toolbox{bench.toolbox};
    std::optional<FolderMounts> mounts;
    std::optional<ScanPass> pass;
    SettingsRecord& settings = bench.state.settings;
};

TEST_F(MountsTest, AFolderWithoutItsMountIsMissingUntilItComesBack) {
    startAnew();
    runPass();
    startAnew();
    writeFile(bench.in("a"), "a");
    for (const Path& folder :
         {settings.SourceFolder, settings.DestinationFolder, settings.DoneFolder, settings.RejectFolder}) {
        toolbox.away = folder;
        runPass();
        const Texts said = bench.messages();
        ASSERT_EQ(said.size(), 5U);
        ASSERT_NE(said[3].find(" Folder " + folder + " does not exist bypassing "), std::string::npos);
        EXPECT_EQ(said[4], "ZEP Is PAUSED at " + bench.time());
        EXPECT_TRUE(bench.timRun.isEnabled()) << "the next tick tries again";
        EXPECT_EQ(bench.notifier.shown.back(), "Vantrell: " + said[3]);
        EXPECT_TRUE(bench.exists(bench.in("a")));
    }
    pass->takeStart(true);
    runPass();
    EXPECT_FALSE(bench.timRun.isEnabled()) << "a single pass is over";
    toolbox.away.clear();
    runPass();
    EXPECT_TRUE(isCarried("a"));
    std::filesystem::remove(settings.DoneFolder + "/a");
    std::filesystem::remove(settings.DoneFolder);
    runPass();
    EXPECT_FALSE(bench.timRun.isEnabled()) << "gone from where it lay: somebody has to look";
}

TEST_F(MountsTest, AMountThatGoesDuringAPassIsNotWrittenThrough) {
    startAnew();
    // More than get their names together.
    for (char name = 'a'; name <= 'z'; ++name) writeFile(bench.in({name}), {name});
    toolbox.afterMove = [this] { toolbox.away = settings.DestinationFolder; };
    runPass();
    EXPECT_TRUE(isCarried("a"));
    EXPECT_FALSE(bench.exists(bench.out("z.enc")));
    EXPECT_TRUE(bench.exists(bench.in("z")));
    EXPECT_TRUE(bench.timRun.isEnabled());
}

TEST_F(MountsTest, ChoosingAFolderAgainTakesItAsItIs) {
    bench.engine.mounts.used({{settings.SourceFolder, MountPoint{"/mnt", "vfat"}}});
    writeFile(bench.in("a"), "a");
    ASSERT_TRUE(bench.runPass());
    EXPECT_TRUE(bench.exists(bench.in("a")));
    bench.engine.fields.folderChosen(FolderKind::source, settings.SourceFolder);
    ASSERT_TRUE(bench.runPass());
    EXPECT_TRUE(isCarried("a"));
}

TEST_F(MountsTest, WhatACrashHasLeftGoesBeforeTheFirstPassAndAfterEachReturn) {
    const std::string left = bench.out(".zep-0123456789abcdef");
    const auto isCleaned = [&] {
        writeFile(left, "x");
        std::filesystem::create_directory(bench.in(".zep-0123456789abcdef"));
        writeFile(bench.in(".zep-0123456789abcdef/file"), "original");
        std::filesystem::remove(bench.done("file"));
        std::filesystem::remove(bench.out("file.enc"));
        runPass();
        EXPECT_EQ(bench.exists(left), !isCarried("file")) << "what comes back is carried by the same pass";
        return !bench.exists(left);
    };
    startAnew();
    EXPECT_TRUE(isCleaned());
    EXPECT_FALSE(isCleaned());
    toolbox.share.id = 8;
    EXPECT_TRUE(isCleaned());
    toolbox.away = settings.DoneFolder;
    EXPECT_FALSE(isCleaned());
    toolbox.away.clear();
    EXPECT_TRUE(isCleaned());
    toolbox.share.id = 9;
    toolbox.beforeCleanUp = [this] { pass->requestStop(); };
    EXPECT_FALSE(isCleaned());
    EXPECT_EQ(bench.messages().back(), "User Stopped Encrypting Files");
    EXPECT_FALSE(bench.timRun.isEnabled());
    toolbox.beforeCleanUp = [] {};
    EXPECT_TRUE(isCleaned()) << "a clean-up that was stopped is done by the next pass";
}

}  // namespace
}  // namespace vantrell::test
