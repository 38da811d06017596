// SPDX-License-Identifier: MIT
#include "core/settings_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "core/scan_interval.h"
#include "core/settings_format.h"
#include "platform/linux/posix_data_files.h"
#include "support/documented_blocks.h"
#include "support/doubles.h"
#include "support/temporary_folder.h"

namespace vantrell::test {
namespace {

const char kLine[] =
    "\"/in\",#FALSE#,\"/out\",\"/done\",#TRUE#,327675,0,7,0,\"PM\",7,#FALSE#,\"/reject\",#FALSE#,#FALSE#\r\n";

SettingsRecord example() {
    SettingsRecord settings;
    settings.SourceFolder = "/in";
    settings.DestinationFolder = "/out";
    settings.DoneFolder = "/done";
    settings.RunNormalAtStartup = true;
    settings.ScanIntervalMs = 327675;
    settings.WeeklyDeleteHour = 7;
    settings.WeeklyDeleteAmPm = "PM";
    settings.WeeklyDeleteDaysOld = 7;
    settings.RejectFolder = "/reject";
    return settings;
}

TEST(SettingsFormat, TheDocumentedLinesHold) {
    const auto blocks = documentedBlocks("formats.md", "zep-cfg");
    ASSERT_EQ(blocks.size(), 1U);
    ASSERT_EQ(blocks[0].size(), 2U);
    SettingsRecord documented = example();
    documented.SourceFolder = "/srv/in";
    documented.DestinationFolder = "/srv/out";
    documented.DoneFolder = "/srv/done";
    documented.RejectFolder = "/srv/rejected";
    EXPECT_EQ(formatSettings(documented), blocks[0][0] + "\r\n");
    EXPECT_EQ(formatSettings({}), blocks[0][1] + "\r\n");
    SettingsRecord read;
    EXPECT_EQ(parseSettings(blocks[0][0], read), kSettingsItems) << "without its line end too";
    EXPECT_EQ(read, documented);
}

TEST(SettingsFormat, ReadsBackWhatItWrote) {
    SettingsRecord odd = example();
    odd.SourceFolder = "/a, b/\xff\xfe/#TRUE#";
    odd.ScanIntervalMs = -2147483647 - 1;
    odd.WeeklyDeleteDaysOld = -32768;
    odd.LoggingTurnedOff = odd.OverwriteExistingFiles = odd.IncludeSubfolders = true;
    SettingsRecord read;
    EXPECT_EQ(parseSettings(formatSettings(odd), read), kSettingsItems);
    EXPECT_EQ(read, odd);
}

TEST(SettingsFormat, TakesBlanksLowerCaseAndWhatFollows) {
    SettingsRecord read;
    EXPECT_EQ(parseSettings(" \"/in\" , #false# ,\"/out\",\"/done\",#True#, 327675 ,0,7,0,\"PM\",7,#FALSE#,\"/reject\","
                            "#FALSE#,#FALSE#,\"more\",5\r\nand more",
                            read),
              kSettingsItems);
    EXPECT_EQ(read, example());
}

// Whatever the cut, the items before it come, and none of them is half a value.
TEST(SettingsFormat, TakesTheItemsBeforeACut) {
    const std::string whole = kLine;
    for (std::size_t length = 0; length < whole.size(); ++length) {
        SettingsRecord read;
        const int items = parseSettings(whole.substr(0, length), read);
        EXPECT_LE(items, kSettingsItems);
        EXPECT_TRUE(read.SourceFolder.empty() || read.SourceFolder == "/in") << length;
        EXPECT_TRUE(read.RejectFolder.empty() || read.RejectFolder == "/reject") << length;
        if (length < whole.size() - 3) EXPECT_LT(items, kSettingsItems) << length;
    }
}

TEST(SettingsFormat, StopsAtWhatIsNoValueOfTheField) {
    SettingsRecord read;
    EXPECT_EQ(parseSettings("\"/in\",maybe,\"/out\"", read), 1);
    EXPECT_EQ(parseSettings("\"/in\",#FALSE#,\"/out\",\"/done\",#TRUE#,2147483648,0", read), 5);
    EXPECT_EQ(parseSettings("\"/in\",#FALSE#,\"/out\",\"/done\",#TRUE#,5,32768", read), 6);
    EXPECT_EQ(parseSettings("\"/in\"x,#FALSE#", read), 0) << "a stray quote";
    EXPECT_EQ(parseSettings(std::string(1, '\0'), read), 1) << "a text may be anything";
    EXPECT_EQ(parseSettings(std::string(100000, '"'), read), 0);
}

class SettingsFileTest : public ::testing::Test {
protected:
    SettingsFileTest() { state_.SettingsFilePath = folder_ / "ZEP.cfg"; }
    std::vector<std::string> keptFiles() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder_.path()))
            if (entry.path().filename() != "ZEP.cfg") names.push_back(entry.path().filename());
        return names;
    }

    TemporaryFolder folder_;
    ProgramState state_;
    PosixDataFiles files_;
    SettableClock clock_;
    SettingsFile file_{state_, files_, clock_};
};

TEST_F(SettingsFileTest, SavesPrivatelyAndLoadsAgain) {
    EXPECT_EQ(file_.loadSettings(), SettingsFile::Loaded::missing);
    state_.settings = example();
    file_.saveSettings();
    EXPECT_EQ(readFile(state_.SettingsFilePath), kLine);
    struct stat status {};
    ASSERT_EQ(::stat(state_.SettingsFilePath.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
    state_.settings = {};
    EXPECT_EQ(file_.loadSettings(), SettingsFile::Loaded::whole);
    EXPECT_EQ(state_.settings, example());
    EXPECT_TRUE(keptFiles().empty());
}

TEST_F(SettingsFileTest, KeepsAFileThatCouldNotBeReadInFull) {
    const std::string broken = "\"/in\",#TRUE#,\"/out";
    writeFile(state_.SettingsFilePath, broken);
    EXPECT_EQ(file_.loadSettings(), SettingsFile::Loaded::incomplete);
    EXPECT_EQ(state_.settings.SourceFolder, "/in");
    file_.saveSettings();
    file_.saveSettings();
    ASSERT_EQ(keptFiles().size(), 1U);
    EXPECT_EQ(keptFiles().front().substr(0, 16), "ZEP.cfg.20261116");
    EXPECT_EQ(readFile(folder_ / keptFiles().front()), broken);
    EXPECT_EQ(file_.loadSettings(), SettingsFile::Loaded::whole);
}

TEST_F(SettingsFileTest, DoesNotSaveOverAFileThatItCannotKeep) {
    writeFile(state_.SettingsFilePath, "broken");
    file_.loadSettings();
    writeFile(state_.SettingsFilePath + ".20261116 140000", "already there");
    ::setenv("TZ", "UTC", 1);
    file_.saveSettings();
    EXPECT_EQ(readFile(state_.SettingsFilePath), "broken");
}

TEST_F(SettingsFileTest, LeavesAFolderInItsPlaceAlone) {
    std::filesystem::create_directory(state_.SettingsFilePath);
    EXPECT_EQ(file_.loadSettings(), SettingsFile::Loaded::unreadable);
    file_.saveSettings();
    EXPECT_TRUE(std::filesystem::is_directory(state_.SettingsFilePath));
    EXPECT_TRUE(keptFiles().empty());
}

TEST(ScanInterval, CountsMinutesOf65535Milliseconds) {
    EXPECT_EQ(intervalFromText("1"), 65535);
    EXPECT_EQ(intervalFromText("10"), 655350);
    EXPECT_EQ(minutesText(327675), "5");
    EXPECT_EQ(minutesText(intervalFromText("1,5")), "1.5");
    EXPECT_EQ(minutesText(intervalFromText("2.25")), "2.25");
    for (const char* text : {"", "0", "-3", "0.5", "five", "1.2.3", "nan", "-1e999"})
        EXPECT_EQ(intervalFromText(text), 65535) << text;
    for (const char* text : {"32768", "32769", "1572839", "1e999", "inf"})
        EXPECT_EQ(intervalFromText(text), 2147450880) << text;
    EXPECT_EQ(effectiveIntervalMs(0), 65535);
    EXPECT_EQ(effectiveIntervalMs(-5), 65535);
    EXPECT_EQ(effectiveIntervalMs(20), 20);
}

TEST(ScanInterval, SpinsByOneAndTurnsOver) {
    EXPECT_EQ(intervalAfterSpin("5", true), 6 * 65535);
    EXPECT_EQ(intervalAfterSpin("5", false), 4 * 65535);
    EXPECT_EQ(intervalAfterSpin("1", false), 65535);
    EXPECT_EQ(intervalAfterSpin("32767", true), 2147450880);
    EXPECT_EQ(intervalAfterSpin("32768", true), 65535);
}

}  // namespace
}  // namespace vantrell::test
