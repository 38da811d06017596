// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "core/settings_format.h"
#include "support/file_size_limit.h"
#include "support/pass_bench.h"

namespace vantrell::test {
namespace {

constexpr auto kWorks = StartupEntry::State::works;
constexpr auto kNone = StartupEntry::State::none;

class StartTest : public ::testing::Test {
protected:
    PassBench bench;
};

TEST_F(StartTest, TheStartupEntryStaysUntilTheSettingsAreWhole) {
    const std::string wholeWithoutFolder = formatSettings({});
    const std::string part = "\"/part\",#FALSE#";
    bench.entry.present = kWorks;
    bench.state.settings = {};
    std::filesystem::create_directory(bench.settingsFile);
    EXPECT_TRUE(bench.engine.start());
    EXPECT_EQ(bench.entry.present, kWorks) << "not readable";
    std::filesystem::remove(bench.settingsFile);
    EXPECT_TRUE(bench.engine.start());
    EXPECT_EQ(bench.entry.present, kWorks) << "not there";
    writeFile(bench.settingsFile, part);
    EXPECT_TRUE(bench.engine.start());
    EXPECT_EQ(bench.entry.present, kWorks) << "not whole";
    ASSERT_NE(readFile(bench.settingsFile), part) << "it has been saved since";
    bench.engine.backupMenus.mnuNBU();
    EXPECT_EQ(bench.entry.present, kWorks) << "there was nothing to restore";
    bench.root.makeFolder("Quillon, Inc/Vantrell/Bin/Config Backup");
    writeFile(bench.state.AppFolder + "/Config Backup/ZEP.cfg", wholeWithoutFolder);
    bench.engine.backupMenus.mnuNBU();
    EXPECT_EQ(bench.entry.present, kNone);
    bench.entry.present = kWorks;
    EXPECT_TRUE(bench.engine.start());
    EXPECT_EQ(bench.entry.present, kNone);
}

TEST_F(StartTest, GoesOnWithoutALockAndSaysSo) {
    ASSERT_TRUE(bench.engine.settings.save());
    bench.instance.outcome = InstanceLock::Outcome::impossible;
    EXPECT_TRUE(bench.engine.start());
    ASSERT_EQ(bench.boxes.informed.size(), 1U);
    const std::string said = bench.boxes.informed[0].text;
    EXPECT_TRUE(said.starts_with("The data folder cannot be locked")) << said;
    EXPECT_TRUE(said.starts_with(bench.messages().at(1))) << said;
    bench.instance.outcome = InstanceLock::Outcome::anothers;
    EXPECT_FALSE(bench.engine.start());
    EXPECT_EQ(bench.host.started, std::vector<Path>{"/opt/vantrell/OpenedMsg"});
}

TEST_F(StartTest, CleansUpTheDataFolderAndLeavesTheOthersToThePasses) {
    const std::string name = "/.zep-0123456789abcdef";
    ASSERT_TRUE(bench.engine.settings.save());
    for (const Path& folder : {bench.state.AppFolder, bench.state.settings.DestinationFolder})
        writeFile(folder + name, "x");
    EXPECT_TRUE(bench.engine.start());
    bench.settle();
    EXPECT_FALSE(bench.exists(bench.state.AppFolder + name));
    EXPECT_TRUE(bench.exists(bench.out(name)));
    bench.state.settings.SourceFolder = bench.state.AppFolder;
    ASSERT_TRUE(bench.engine.settings.save());
    writeFile(bench.in(name), "a sender's");
    EXPECT_TRUE(bench.engine.start());
    bench.settle();
    EXPECT_TRUE(bench.exists(bench.in(name)));
}

TEST_F(StartTest, TakesTheRightsOfOthersAwayAndSaysWhenNothingCanBeSaved) {
    ASSERT_TRUE(bench.engine.settings.save());
    const std::filesystem::path app = bench.state.AppFolder;
    const auto rights = [](const std::filesystem::path& path) { return std::filesystem::status(path).permissions(); };
    for (const std::filesystem::path& path : {app, app / "ZEP.cfg", app / "EDPasswords.mdb"})
        std::filesystem::permissions(path, std::filesystem::perms(0755));
    {
        const FileSizeLimit full(1);
        EXPECT_TRUE(bench.engine.start());
        EXPECT_NE(bench.window.warning.find("The activity log could not be saved"), std::string::npos);
    }
    for (const std::filesystem::path& path : {app, app / "ZEP.cfg", app / "EDPasswords.mdb"})
        EXPECT_EQ(rights(path), std::filesystem::perms::owner_all) << path;
    EXPECT_TRUE(bench.boxes.informed.empty());
    std::filesystem::permissions(app / "EDPasswords.mdb", std::filesystem::perms::none);
    EXPECT_TRUE(bench.engine.start());
    EXPECT_TRUE(bench.boxes.informed.empty()) << "what nobody may read is read by no others";
    EXPECT_EQ(bench.window.warning, "");
}

}  // namespace
}  // namespace vantrell::test
