// SPDX-License-Identifier: MIT
#include "core/settings_file.h"

#include <gtest/gtest.h>

#include "core/scan_interval.h"
#include "core/settings_format.h"
#include "core/window_geometry.h"
#include "platform/files/posix_data_files.h"
#include "platform/linux/linux_kernel.h"
#include "rig/temporary_folder.h"
#include "support/documented_blocks.h"
#include "support/doubles.h"

namespace vantrell::test {
namespace {

SettingsRecord example() {
    SettingsRecord settings;
    settings.SourceFolder = "/srv/in";
    settings.DestinationFolder = "/srv/out";
    settings.DoneFolder = "/srv/done";
    settings.RunNormalAtStartup = true;
    settings.ScanIntervalMs = 327675;
    settings.WeeklyDeleteHour = 7;
    settings.WeeklyDeleteAmPm = "PM";
    settings.WeeklyDeleteDaysOld = 7;
    settings.RejectFolder = "/srv/rejected";
    return settings;
}

TEST(SettingsFormat, TheDocumentedLinesHold) {
    const auto blocks = documentedBlocks("formats.md", "zep-cfg");
    ASSERT_EQ(blocks.size(), 1U);
    ASSERT_EQ(blocks[0].size(), 2U);
    EXPECT_EQ(formatSettings(example()), blocks[0][0] + "\r\n");
    EXPECT_EQ(formatSettings({}), blocks[0][1] + "\r\n");
}

TEST(WindowGeometry, IsWrittenAsDocumentedAndReadLineByLine) {
    const TemporaryFolder folder;
    LinuxKernel kernel;
    PosixDataFiles files(kernel);
    const auto blocks = documentedBlocks("formats.md", "windows-cfg");
    WindowGeometries kept(files, folder / kWindowsFileName);
    kept.keep("frmMain", {120, -40, 777, 452});
    kept.keep("frmHistory", {0, 0, 320, 400});
    EXPECT_EQ(readFile(folder / kWindowsFileName), blocks.at(0).at(0) + "\n" + blocks.at(0).at(1) + "\n");
    writeFile(folder / "other", "a=1 2 3\nb=1 2 0 4\n=1 2 3 4\nc=1 2 3 99999999999\nd=1 2 3 4 5\n\ne=-1 2 3 4");
    const WindowGeometries read(files, folder / "other");
    for (const char* torn : {"a", "b", "", "c", "d"}) EXPECT_FALSE(read.of(torn)) << torn;
    EXPECT_EQ(read.of("e"), (WindowGeometry{-1, 2, 3, 4}));
}

TEST(SettingsFormat, ReadsBackWhatItWroteAndWhatOthersWrite) {
    SettingsRecord odd = example();
    odd.SourceFolder = "/a, b/\xff\xfe/#TRUE#";
    odd.ScanIntervalMs = -2147483647 - 1;
    odd.WeeklyDeleteDaysOld = -32768;
    odd.LoggingTurnedOff = odd.OverwriteExistingFiles = odd.IncludeSubfolders = true;
    const std::pair<std::string, SettingsRecord> cases[] = {
        {formatSettings(odd), odd},
        {"\xEF\xBB\xBF" + formatSettings(example()), example()},
        {formatSettings(example()).substr(0, formatSettings(example()).size() - 2), example()},
        {" \"/srv/in\" , #false# ,\"/srv/out\",\"/srv/done\",#True#, 327675 ,0,7,0,\"PM\",7,#FALSE#,\"/srv/rejected\","
         "#FALSE#,#FALSE#,\"more\",5\r\nand more",
         example()},
    };
    for (const auto& [text, settings] : cases) {
        SettingsRecord read;
        EXPECT_EQ(parseSettings(text, read), kSettingsItems) << text;
        EXPECT_EQ(read, settings);
    }
}

TEST(SettingsFormat, ATextWithoutItsQuotesIsMissing) {
    for (const char* text : {"/srv/in,#FALSE#", "/a\"b\",#FALSE#", "\"/a\"b,#FALSE#", "7,#FALSE#"}) {
        SettingsRecord read;
        EXPECT_EQ(parseSettings(text, read), 0) << text;
        EXPECT_EQ(read.SourceFolder, "") << text;
    }
}

// Whatever the cut, the items before it come, and none of them is half a value.
TEST(SettingsFormat, TakesTheItemsBeforeACut) {
    const std::string whole = formatSettings(example());
    for (std::size_t length = 0; length < whole.size(); ++length) {
        SettingsRecord read;
        const int items = parseSettings(whole.substr(0, length), read);
        EXPECT_LE(items, kSettingsItems);
        EXPECT_TRUE(read.SourceFolder.empty() || read.SourceFolder == "/srv/in") << length;
        EXPECT_TRUE(read.RejectFolder.empty() || read.RejectFolder == "/srv/rejected") << length;
        if (length < whole.size() - 3) EXPECT_LT(items, kSettingsItems) << length;
    }
}

class SettingsFileTest : public ::testing::Test {
protected:
    TemporaryFolder folder_;
    const Path path_ = folder_ / "ZEP.cfg";
    ProgramState state_;
    LinuxKernel kernel_;
    PosixDataFiles files_{kernel_};
    SettableClock clock_;
    SettingsFile file_{path_, state_, files_, clock_};
};

TEST_F(SettingsFileTest, KeepsWhatIsNotWholeAndLoadsWhatItSaved) {
    ::setenv("TZ", "UTC", 1);
    const Path dated = path_ + ".20261116 140000";
    EXPECT_EQ(file_.loadSettings(), SettingsFile::Loaded::missing);
    for (const std::string& part :
         {std::string(), std::string("\"/part\",#FALSE#,\"/o"), std::string(999, '"'), std::string(2'000'000, '\0'),
          std::string("x,x,x,x,x,x,x,x,x,x,x,x,x,x,x"),
          std::string("\"/in\",#FALSE#,\"/out\",\"/done\",#TRUE#,99999999999,0,7,0,\"PM\",7,#FALSE#,\"/r\",#FALSE#,"
                      "#FALSE#")}) {
        writeFile(path_, part);
        EXPECT_EQ(file_.loadSettings(), SettingsFile::Loaded::incomplete);
        // As a start has left it that was killed in this very second.
        if (part.empty()) std::filesystem::create_hard_link(path_, dated);
        state_.settings = example();
        EXPECT_TRUE(file_.saveSettings().ok());
        EXPECT_EQ(readFile(path_), formatSettings(example()));
        EXPECT_TRUE(readFile(dated) == part && std::filesystem::remove(dated)) << part.substr(0, 50);
        state_.settings = {};
        EXPECT_EQ(file_.loadSettings(), SettingsFile::Loaded::whole);
        EXPECT_EQ(state_.settings, example());
    }
}

TEST_F(SettingsFileTest, DoesNotSaveOverWhatItCannotKeep) {
    writeFile(path_, "broken");
    file_.loadSettings();
    ::setenv("TZ", "UTC", 1);
    writeFile(path_ + ".20261116 140000", "already there");
    EXPECT_FALSE(file_.saveSettings().ok());
    EXPECT_EQ(readFile(path_), "broken");
    std::filesystem::remove(path_);
    std::filesystem::create_directory(path_);
    EXPECT_EQ(file_.loadSettings(), SettingsFile::Loaded::unreadable);
    EXPECT_TRUE(file_.saveSettings().ok()) << "refused on purpose";
    EXPECT_TRUE(std::filesystem::is_directory(path_));
}

TEST(ScanInterval, CountsMinutesOf65535MillisecondsAndTurnsOver) {
    EXPECT_EQ(minutesText(intervalFromText("1,5")), "1.5");
    for (const char* text : {"", "0", "-3", "0.5", "five", "1.2.3", "nan", "-1e999"})
        EXPECT_EQ(intervalFromText(text), 65535) << text;
    for (const char* text : {"32768", "32769", "1572839", "1e999", "inf"})
        EXPECT_EQ(intervalFromText(text), 2147450880) << text;
    EXPECT_EQ(effectiveIntervalMs(-5), 65535);
    EXPECT_EQ(intervalAfterSpin("32768", true), 65535);
}

}  // namespace
}  // namespace vantrell::test
