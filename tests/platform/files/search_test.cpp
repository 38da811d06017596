// SPDX-License-Identifier: MIT
#include <fcntl.h>

#include "support/toolbox_fixture.h"

namespace vantrell::test {
namespace {

class Search : public WithToolbox {
public:
    std::vector<Path> find(bool recurse, std::vector<Path> notEntered = {}) {
        unread.clear();
        const auto note = [this](const Path& path, const Fault& fault) { unread.push_back(path + " " + fault.text); };
        auto found = loop.valueOf(toolbox.search({folder.path(), recurse, std::move(notEntered), {}, note}));
        for (Path& path : found) path.erase(0, folder.path().size() + 1);
        return found;
    }
    Names unread;
};

TEST_F(Search, FindsRegularFilesAscendingByTheBytesOfTheWholePath) {
    const std::string notText = "\xff\xfe\n\x01";
    for (const char* name : {"a", "a.b", "a-b"}) folder.makeFolder(name);
    for (const auto& name : {std::string("b"), std::string(".hidden"), std::string("a/z"), std::string("a.b/1"),
                             std::string("a-b/2"), std::string("aa"), notText, std::string(".zep-00112233445566FF"),
                             std::string("a/.zep-00112233445566ff"), std::string(255, 'x')})
        writeFile(folder / name, "x");
    ASSERT_EQ(::mkfifo((folder / "fifo").c_str(), 0600), 0);
    std::filesystem::create_symlink("a", folder / "linkToFolder");
    std::filesystem::create_symlink("b", folder / "linkToFile");
    std::vector<Path> all = {".hidden", ".zep-00112233445566FF", "a-b/2", "a.b/1", "a/z", "aa",
                             "b",       std::string(255, 'x'),   notText};
    EXPECT_EQ(find(true), all);
    std::erase_if(all, [](const Path& path) { return path.find('/') != Path::npos; });
    EXPECT_EQ(find(false), all);
}

TEST_F(Search, DoesNotEnterFoldersThatAreNamedByAnyOfTheirPaths) {
    folder.makeFolder("done/deep");
    folder.makeFolder("other/done");
    writeFile(folder / "done/deep/file", "x");
    writeFile(folder / "other/done/file", "x");
    std::filesystem::create_symlink("done", folder / "link");
    EXPECT_EQ(find(true, {folder / "link", folder / "none"}), (Names{"other/done/file"}));
}

TEST_F(Search, TellsAndPassesOverWhatCannotBeRead) {
    const std::string closed = folder.makeFolder("closed");
    writeFile(folder / "closed/file", "x");
    writeFile(folder / "open", "x");
    const std::string words = " The folder cannot be read: Permission denied";
    const struct {
        mode_t top;
        bool recurse;
        std::vector<Path> notEntered;
        Names found, unread;
    } rows[] = {{0755, true, {}, {"open"}, {closed + words}},
                {0755, true, {closed}, {"open"}, {}},
                {0755, false, {}, {"open"}, {}},
                {0111, true, {}, {}, {folder.path() + words}}};
    ASSERT_EQ(::chmod(closed.c_str(), 0), 0);
    for (const auto& row : rows) {
        ASSERT_EQ(::chmod(folder.path().c_str(), row.top), 0);
        const OrdinaryUser user;
        EXPECT_EQ(find(row.recurse, row.notEntered), row.found);
        EXPECT_EQ(unread, row.unread);
    }
    EXPECT_EQ(::chmod(folder.path().c_str(), 0755) + ::chmod(closed.c_str(), 0755), 0);
    EXPECT_TRUE(loop.valueOf(toolbox.search({folder / "none", true, {}, {}})).empty());
}

TEST_F(Search, ReachesFilesBelowTheLongestPathOfOneCall) {
    const std::string name(200, 'd');
    Path deep = folder.path();
    LinuxFd level(::open(deep.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    for (int i = 0; i < 150; ++i) {
        ASSERT_EQ(::mkdirat(level.get(), name.c_str(), 0700), 0);
        level = LinuxFd(::openat(level.get(), name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        deep += "/" + name;
    }
    ASSERT_TRUE(LinuxFd(::openat(level.get(), "file", O_CREAT | O_WRONLY | O_CLOEXEC, 0600)));
    writeFile(folder / "z", "x");
    const auto found = loop.valueOf(toolbox.search({folder.path(), true, {}, {}}));
    EXPECT_EQ(found, (std::vector<Path>{deep + "/file", folder / "z"}));
    EXPECT_TRUE(toolbox.hold(found.front()).ok());
    EXPECT_TRUE(loop.valueOf(toolbox.move({found.front(), folder / "moved"})).ok());
    EXPECT_EQ(namesIn(folder.path()), (Names{name, "moved", "z"}));
}

}  // namespace
}  // namespace vantrell::test
