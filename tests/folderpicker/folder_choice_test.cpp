// SPDX-License-Identifier: MIT
#include "folderpicker/folder_choice.h"

#include "folderpicker/places.h"
#include "support/toolbox_fixture.h"

namespace vantrell::test {

class FolderChoiceTest : public WithToolbox {};

TEST_F(FolderChoiceTest, OpensOnWhatIsLeftOfTheWantedFolder) {
    const std::string inner = folder.makeFolder("in/deep");
    for (const char* tail : {"", "//", "/gone/further"}) EXPECT_EQ(startFolder(inner + tail, "/home", toolbox), inner);
    for (const char* none : {"", "/gone/altogether", "no path"})
        EXPECT_EQ(startFolder(none, "/home", toolbox), "/home");
    EXPECT_EQ(startFolder("/", "/home", toolbox), "/");
}

TEST_F(FolderChoiceTest, CreatesInsideTheSelectedFolderOrSaysWhyNot) {
    EXPECT_EQ(createFolder(folder.path(), "New", toolbox).path, folder / "New");
    EXPECT_TRUE(std::filesystem::is_directory(folder / "New"));
    writeFile(folder / "file", "kept");
    std::filesystem::create_symlink("nowhere", folder / "link");
    const std::string isThere = "A Folder of that name already exists.\r\nPlease enter a different name";
    const std::string failed = "could not be created in\r\n" + folder.path();
    const std::string tooLong(300, 'n');
    const std::pair<std::string, std::string> refusals[] = {{"New", isThere},
                                                            {"file", isThere},
                                                            {"link", isThere},
                                                            {"..", isThere},
                                                            {".", isThere},
                                                            {tooLong, failed},
                                                            {"New/b", "The name of a folder cannot hold a \"/\"."}};
    for (const auto& [name, words] : refusals) {
        const NewFolder made = createFolder(folder.path(), name, toolbox);
        EXPECT_TRUE(made.path.empty()) << name;
        EXPECT_NE(made.refusal.find(words), std::string::npos) << made.refusal;
    }
    EXPECT_EQ(readFile(folder / "file"), "kept");
    EXPECT_TRUE(std::filesystem::is_empty(folder / "New"));
}

TEST(Places, AreDisksOfPeopleAndBookmarks) {
    constexpr char kMounts[] =
        "22 1 8:1 / / rw,relatime shared:1 - ext4 /dev/sda1 rw\n"
        "23 22 8:2 / /boot/efi rw - vfat /dev/sda2 rw\n"
        "24 22 0:21 / /proc rw - proc proc rw\n"
        "25 22 7:0 / /snap/core/1 ro - squashfs /dev/loop0 ro\n"
        "26 22 8:1 /srv/in /mnt/part rw - ext4 /dev/sda1 rw\n"
        "27 22 8:17 / /media/ann/USB\\040STICK rw - fuseblk /dev/sdb1 rw\n"
        "28 22 0:50 / /mnt/nas rw - nfs4 nas:/export rw\n"
        "29 22 8:33 / /srv/archive rw shared:9 master:2 - xfs /dev/sdc1 rw\n"
        "torn 22 8:33";
    EXPECT_EQ(disksIn(kMounts), (std::vector<Path>{"/media/ann/USB STICK", "/srv/archive"}));
    EXPECT_EQ(bookmarksIn("file:///home/ann/B%C3%BCro Office\nsmb://nas/x\nfile:///srv/100%\n<bookmark "
                          "href=\"file:///srv/out\">\n<bookmark href=\"file:/\">file://"),
              (std::vector<Path>{"/home/ann/B\u00FCro", "/srv/100%", "/srv/out"}));
}

class FolderWarningTest : public testing::Test {
protected:
    FolderWarningTest() {
        settings.SourceFolder = "/srv/in";
        settings.DestinationFolder = "/srv/out";
        settings.DoneFolder = "/srv/done";
        settings.RejectFolder = "/srv/rejected";
    }
    [[nodiscard]] bool warns(const std::string& words) const {
        return folderWarning(settings).find(words) != std::string::npos;
    }
    SettingsRecord settings;
};

TEST_F(FolderWarningTest, SaysNothingOfWhatIsInOrder) {
    EXPECT_EQ(folderWarning(settings), "");
    EXPECT_EQ(folderWarning({}), "") << "folders that are not chosen yet are not the same folder";
    settings.IncludeSubfolders = true;
    settings.DoneFolder = "/srv/in2";
    EXPECT_EQ(folderWarning(settings), "") << "a name that begins alike lies beside, not inside";
}

TEST_F(FolderWarningTest, KnowsEachPairOfEqualFolders) {
    const std::pair<const char*, Path*> folders[] = {{"Source", &settings.SourceFolder},
                                                     {"Destination", &settings.DestinationFolder},
                                                     {"Done", &settings.DoneFolder},
                                                     {"Rejected", &settings.RejectFolder}};
    for (int later = 1; later < 4; ++later) {
        for (int earlier = 0; earlier < later; ++earlier) {
            const auto& [name, path] = folders[later];
            const Path kept = std::exchange(*path, *folders[earlier].second + "//");
            EXPECT_TRUE(warns(std::string(name) + " is the " + folders[earlier].first + " folder")) << later << earlier;
            const bool isDone = earlier > 0 && (later == 2 || earlier == 2);
            EXPECT_EQ(warns("the weekly delete deletes nothing"), isDone) << later << earlier;
            *path = kept;
        }
    }
}

TEST_F(FolderWarningTest, KnowsFoldersInsideSourceWhenThoseAreSearched) {
    settings.DestinationFolder = "/srv/in/out";
    settings.DoneFolder = "/srv/in/a/done";
    settings.RejectFolder = "/srv//in/rejected/";
    EXPECT_EQ(folderWarning(settings), "");
    settings.IncludeSubfolders = true;
    for (const char* folder : {"Destination", "Done", "Rejected"})
        EXPECT_TRUE(warns(std::string(folder) + " lies inside Source")) << folder;
}

}  // namespace vantrell::test
