// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <gtest/gtest.h>

#include "base/display_text.h"
#include "platform/linux/linux_fd.h"
#include "support/forwarding_toolbox.h"
#include "support/pass_bench.h"
#include "support/toolbox_fixture.h"

namespace vantrell::test {
namespace {

using Texts = std::vector<std::string>;

ino_t inodeOf(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(::stat(path.c_str(), &status), 0) << path;
    return status.st_ino;
}

// What an earlier pass, or an earlier run of the program, has left half done.
class AgainTest : public testing::Test {
protected:
    /// The state after a crash between the two steps of a file.
    void leaveEncryptedButNotMoved(const std::string& name, const std::string& contents) {
        writeFile(bench.in(name), contents);
        ASSERT_TRUE(bench.runPass());
        std::filesystem::rename(bench.done(name), bench.in(name));
        (void)bench.messages();
    }
    void putNamesakes() {
        bench.state.settings.OverwriteExistingFiles = bench.state.settings.IncludeSubfolders = true;
        for (const char* folder : {"x", "y"}) {
            std::filesystem::create_directory(bench.in(folder));
            writeFile(bench.in(std::string(folder) + "/same"), folder);
        }
    }
    PassBench bench;
};

TEST_F(AgainTest, AfterAFailedFlushNothingThatStandsIsBelieved) {
    leaveEncryptedButNotMoved("a", "contents");
    const ino_t standing = inodeOf(bench.out("a.enc"));
    const std::string before = readFile(bench.out("a.enc"));
    bench.engine.flushNote.write();
    FlushNote ofNextRun(bench.files, bench.state.AppFolder + "/" + kFlushNoteName);
    EXPECT_TRUE(ofNextRun.stands());
    const LinuxFd keepsTheNumber(::open(bench.out("a.enc").c_str(), O_RDONLY | O_CLOEXEC));
    ASSERT_TRUE(bench.runPass());
    EXPECT_EQ(readFile(bench.out("a.enc")), before);
    EXPECT_NE(inodeOf(bench.out("a.enc")), standing);
    EXPECT_TRUE(bench.exists(bench.done("a")));
    EXPECT_FALSE(bench.engine.flushNote.stands()) << "the pass has carried everything";
    EXPECT_FALSE(FlushNote(bench.files, bench.state.AppFolder + "/" + kFlushNoteName).stands());
}

// What is wrong with a file when it is opened ahead of its turn does not count.
class Ahead final : public ForwardingToolbox {
public:
    using ForwardingToolbox::ForwardingToolbox;
    Task<Result<>> move(MoveOrder order) override {
        if (nameOf(order.source) == "a") beforeTheNext();
        return ForwardingToolbox::move(std::move(order));
    }
    std::function<void()> beforeTheNext;
};

TEST_F(AgainTest, AFileThatChangesBeforeItsTurnIsCarriedAsItIsThen) {
    Ahead ahead(bench.toolbox);
    ScanPass pass(bench.partsOn(ahead),
                  [&] { return std::make_unique<CryptoComponent>(bench.loop, ahead, makeOpensslCipher); });
    for (const char* name : {"a", "busy", "grown"}) writeFile(bench.in(name), name);
    LinuxFd writer(::open(bench.in("busy").c_str(), O_WRONLY | O_CLOEXEC));
    ahead.beforeTheNext = [&] {
        writer = LinuxFd();
        writeFile(bench.in("grown"), "grown since it was prepared");
    };
    ASSERT_TRUE(bench.loop.run(pass.timRun_Timer()));
    EXPECT_EQ(readFile(bench.done("busy")), "busy");
    EXPECT_EQ(readFile(bench.done("grown")), "grown since it was prepared");
    EXPECT_EQ(readFile(bench.out("grown.enc")).size(), 32U);
}

TEST_F(AgainTest, StopDuringTheLastFileIsAStopWhateverFollowsInTheList) {
    Ahead stopping(bench.toolbox);
    ScanPass pass(bench.partsOn(stopping),
                  [&] { return std::make_unique<CryptoComponent>(bench.loop, stopping, makeOpensslCipher); });
    writeFile(bench.in("a"), "a");
    writeFile(bench.in("b.enc"), "b");
    stopping.beforeTheNext = [&] {
        pass.requestStop();
        EXPECT_TRUE(bench.window.stopping);
    };
    ASSERT_TRUE(bench.loop.run(pass.timRun_Timer()));
    EXPECT_TRUE(bench.exists(bench.done("a")));
    const Texts said = bench.messages();
    EXPECT_EQ(Texts(said.end() - 2, said.end()),
              (Texts{"User has Stopped Process!D", "User Stopped Encrypting Files"}));
    EXPECT_FALSE(bench.window.stopping);
}

TEST_F(AgainTest, FilesWaitWhileTheListOfNamesakesCannotBeRead) {
    putNamesakes();
    const std::string list = bench.state.AppFolder + "/" + kNamesakesName;
    std::filesystem::create_directory(list);
    for (const std::size_t lines : {5U, 4U}) {
        ASSERT_TRUE(bench.runPass());
        EXPECT_EQ(bench.messages().size(), lines) << "it is said once";
        EXPECT_TRUE(bench.exists(bench.in("x/same")) && bench.exists(bench.in("y/same")));
    }
    std::filesystem::remove(list);
    ASSERT_TRUE(bench.runPass());
    EXPECT_EQ(readFile(bench.done("same")), "x");
}

TEST_F(AgainTest, WhatCannotBeRejectedStaysAndIsToldOnce) {
    writeFile(bench.in("a"), "a");
    std::filesystem::create_directory(bench.out("a.enc"));
    std::filesystem::remove(bench.state.settings.RejectFolder);
    ASSERT_TRUE(bench.runPass());
    EXPECT_EQ(bench.messages().size(), 7U);
    ASSERT_TRUE(bench.runPass());
    EXPECT_EQ(bench.messages().size(), 4U);
    std::filesystem::remove(bench.out("a.enc"));
    ASSERT_TRUE(bench.runPass());
    EXPECT_EQ(bench.messages()[3], "Encryped:  a - Sucessful: ");
    EXPECT_TRUE(bench.exists(bench.done("a")));
}

TEST_F(AgainTest, OfAFileThatArrivedOnAnotherDiskNobodySaysThatItDidNot) {
    const OtherFileSystem other;
    if (!other.isOtherThan(bench.root)) GTEST_SKIP() << "this machine has one file system only";
    bench.state.settings.RejectFolder = other->path();
    writeFile(bench.rejected("a"), "old");
    writeFile(bench.in("a"), "new");
    std::filesystem::create_directory(bench.out("a.enc"));
    ASSERT_TRUE(bench.runPass());
    for (const std::string& line : bench.messages()) EXPECT_EQ(line.find("did not rename"), std::string::npos) << line;
    EXPECT_EQ(bench.names(other->path()).size(), 2U);
}

TEST_F(AgainTest, ANameThatBecomesTooLongForTheRejectedFolderLosesItsMiddle) {
    std::string name;
    for (int i = 0; i < 122; ++i) name += "\xC3\xA9";
    name += ".pdf";
    ASSERT_EQ(name.size(), 248U);
    for (const char* contents : {"first", "second", "third"}) {
        writeFile(bench.in(name), contents);
        std::filesystem::create_directory(bench.out(name + ".enc").substr(0, bench.out("").size() + 255));
        ASSERT_TRUE(bench.runPass());
    }
    Texts names = bench.names(bench.state.settings.RejectFolder);
    ASSERT_EQ(names.size(), 3U);
    Texts contents;
    for (const std::string& one : names) {
        contents.push_back(readFile(bench.rejected(one)));
        EXPECT_TRUE(one.ends_with("\xC3\xA9.pdf"));
        EXPECT_LE(one.size(), 255U);
        EXPECT_EQ(displayText(one), one) << "no character is cut in two";
    }
    std::sort(contents.begin(), contents.end());
    EXPECT_EQ(contents, (Texts{"first", "second", "third"}));
}

}  // namespace
}  // namespace vantrell::test
