// SPDX-License-Identifier: MIT
#include "activitylog/history_find.h"
#include "activitylog/history_reader.h"
#include "platform/files/posix_file_reading.h"
#include "support/toolbox_fixture.h"

namespace vantrell::test {
namespace {

class RecordedReader final : public HistoryReaderView, public HistoryFindView {
public:
    void readingWentOn() override {}
    void takeCopy(std::string) override {}
    void refuseCopy() override {}
    void showMatch(std::size_t line) override { shown.push_back(line); }
    void showFindState(const FindState& state) override { found = state; }

    std::vector<std::size_t> shown;
    FindState found;
};

class HistoryReaderTest : public testing::Test {
protected:
    void write(const std::string& name, const std::string& bytes) const { writeFile(logs + "/" + name, bytes); }
    void read(const std::string& name) {
        reader.readtheHistoryfile(name);
        loop.settle();
    }
    std::vector<std::string> all() {
        std::vector<std::string> lines;
        for (std::size_t i = 0; i < reader.lines().size(); ++i) lines.push_back(reader.lines().line(i));
        return lines;
    }

    TemporaryFolder folder;
    std::string logs = folder.makeFolder("logs");
    HandCrankedLoop loop;
    RecordedReader view;
    PosixFileReading files{loop.kernel()};
    HistoryReader reader{logs, files, loop, view};
    HistoryFind find{loop, reader.lines(), view};
};

using Lines = std::vector<std::string>;

TEST_F(HistoryReaderTest, ShowsLineForLineOneFileAfterAnother) {
    write("a", "one\r\n\r\ntwo \r\nbare\nnot\rended");
    write("empty", "");
    write("c", std::string("M\xFCller\0\t\xC3\xBC\r\n", 12));
    Lines expected{"one", "", "two ", "bare", "not\\x0Dended"};
    std::string numbered;
    for (int i = 0; i < 100; ++i) numbered += expected.emplace_back("line " + std::to_string(i)) + "\r\n";
    write("b", numbered);
    for (const char* name : {"a", "empty", "b", "c"}) reader.readtheHistoryfile(name);
    loop.settle();
    expected.push_back("M\\xFCller\\x00\\x09\xC3\xBC");
    EXPECT_EQ(all(), expected);
    EXPECT_EQ(reader.reading().files, "a, empty, b, c");
    EXPECT_FALSE(reader.reading().isUnderWay || reader.reading().isIncomplete);
    reader.clear();
    read("c");
    EXPECT_EQ(all(), Lines{expected.back()});
}

TEST_F(HistoryReaderTest, SaysNothingOfWhatCannotBeOpened) {
    std::filesystem::create_directory(logs + "/folder");
    ASSERT_EQ(::mkfifo((logs + "/fifo").c_str(), 0600), 0);
    write("a", "one\r\n");
    std::filesystem::create_symlink("a", logs + "/link");
    for (const char* name : {"gone", "folder", "fifo", "link", "a"}) read(name);
    EXPECT_EQ(all(), Lines{"one"});
    EXPECT_TRUE(reader.reading().isIncomplete);
}

TEST_F(HistoryReaderTest, FindsForwardsAndBackwardsAlsoInLinesThatJoin) {
    write("a", "Ab\r\nx\r\naB ab\r\n\\x\r\nM\xFC\r\n");
    write("b", "ab\r\n");
    read("a");
    find.find("AB", 1);
    loop.settle();
    EXPECT_EQ(view.found.matches, 2U) << "lines count, not places";
    EXPECT_EQ(view.found.position, 2U);
    for (int i = 0; i < 2; ++i) find.findNext();
    find.findPrevious();
    EXPECT_EQ(view.shown, (std::vector<std::size_t>{2, 0, 2, 0}));
    read("b");
    find.linesJoined();
    loop.settle();
    EXPECT_EQ(view.found.matches, 3U);
    EXPECT_EQ(view.shown.size(), 4U) << "what is shown stays";

    // What is shown is found, from the first line on when none follows; nothing finds nothing.
    for (const char* text : {"x", "m\\xfc", "none", ""}) {
        view.shown.clear();
        find.find(text, 5);
        loop.settle();
        find.findNext();
        const std::map<std::string, std::vector<std::size_t>> shown{{"x", {1, 3}}, {"m\\xfc", {4, 4}}};
        EXPECT_EQ(view.shown, shown.contains(text) ? shown.at(text) : std::vector<std::size_t>()) << text;
        EXPECT_EQ(view.found.isSearching, *text != 0);
        EXPECT_FALSE(view.found.isUnderWay);
    }
}

}  // namespace
}  // namespace vantrell::test
