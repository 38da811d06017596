// SPDX-License-Identifier: MIT
#include "folderpicker/folder_choice.h"

#include "support/toolbox_fixture.h"

namespace vantrell::test {

class FolderChoiceTest : public WithToolbox {};

TEST_F(FolderChoiceTest, OpensOnWhatIsLeftOfTheWantedFolder) {
    const std::string inner = folder.makeFolder("in/deep");
    EXPECT_EQ(startFolder(inner, "/home", toolbox), inner);
    EXPECT_EQ(startFolder(inner + "//", "/home", toolbox), inner);
    EXPECT_EQ(startFolder(inner + "/gone/further", "/home", toolbox), inner);
    EXPECT_EQ(startFolder("", "/home", toolbox), "/home");
    EXPECT_EQ(startFolder("/gone/altogether", "/home", toolbox), "/home");
    EXPECT_EQ(startFolder("no path", "/home", toolbox), "/home");
    EXPECT_EQ(startFolder("/", "/home", toolbox), "/");
}

TEST_F(FolderChoiceTest, CreatesInsideTheSelectedFolder) {
    const NewFolder made = createFolder(folder.path(), "New", toolbox);
    EXPECT_EQ(made.path, folder / "New");
    EXPECT_TRUE(std::filesystem::is_directory(folder / "New"));
    EXPECT_TRUE(made.refusal.empty());
}

TEST_F(FolderChoiceTest, RefusesANameThatIsTaken) {
    folder.makeFolder("New");
    writeFile(folder / "file", "kept");
    std::filesystem::create_symlink("nowhere", folder / "link");
    for (const char* name : {"New", "file", "link", "..", "."}) {
        const NewFolder made = createFolder(folder.path(), name, toolbox);
        EXPECT_TRUE(made.path.empty());
        EXPECT_EQ(made.refusal, "A Folder of that name already exists.\r\nPlease enter a different name") << name;
    }
    EXPECT_EQ(readFile(folder / "file"), "kept");
}

TEST_F(FolderChoiceTest, SaysWhatCouldNotBeCreated) {
    const NewFolder tooLong = createFolder(folder.path(), std::string(300, 'n'), toolbox);
    EXPECT_TRUE(tooLong.path.empty());
    EXPECT_NE(tooLong.refusal.find("could not be created in\r\n" + folder.path()), std::string::npos);
    folder.makeFolder("a");
    EXPECT_TRUE(createFolder(folder.path(), "a/b", toolbox).path.empty());
    EXPECT_FALSE(std::filesystem::exists(folder / "a/b"));
}

TEST_F(FolderChoiceTest, TakesTheBlanksOffANameOnly) {
    EXPECT_EQ(trimmedName(" New  Folder\t"), "New  Folder");
    EXPECT_EQ(trimmedName("  "), "");
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
    settings.IncludeSubfolders = false;
    settings.OverwriteExistingFiles = true;
    settings.DoneFolder = "/srv/in/done";
    EXPECT_EQ(folderWarning(settings), "");
}

TEST_F(FolderWarningTest, KnowsEachPairOfEqualFolders) {
    using Field = Path SettingsRecord::*;
    const auto expectWarning = [this](Field one, Field other, const std::string& words) {
        const Path kept = settings.*one;
        settings.*one = settings.*other + "//";
        EXPECT_TRUE(folderWarning(settings).starts_with(words)) << folderWarning(settings);
        settings.*one = kept;
    };
    expectWarning(&SettingsRecord::DestinationFolder, &SettingsRecord::SourceFolder,
                  "Destination is the Source folder");
    expectWarning(&SettingsRecord::DoneFolder, &SettingsRecord::SourceFolder, "Done is the Source folder");
    expectWarning(&SettingsRecord::RejectFolder, &SettingsRecord::SourceFolder, "Rejected is the Source folder");
    expectWarning(&SettingsRecord::DoneFolder, &SettingsRecord::DestinationFolder, "Done is the Destination folder");
    expectWarning(&SettingsRecord::RejectFolder, &SettingsRecord::DestinationFolder,
                  "Rejected is the Destination folder");
    expectWarning(&SettingsRecord::RejectFolder, &SettingsRecord::DoneFolder, "Rejected is the Done folder");
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

TEST_F(FolderWarningTest, KnowsTheOptionsThatReplaceFilesOfOneName) {
    settings.IncludeSubfolders = true;
    settings.OverwriteExistingFiles = true;
    EXPECT_TRUE(warns("replace one another when they come in different passes"));
    settings.DoneFolder = settings.SourceFolder;
    EXPECT_TRUE(warns("Done is the Source folder"));
    EXPECT_TRUE(warns(". Sub directories are included")) << "one sentence after the other";
}

}  // namespace vantrell::test
