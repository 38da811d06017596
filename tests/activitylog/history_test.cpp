// SPDX-License-Identifier: MIT
#include <chrono>
#include <optional>

#include "activitylog/activity_log.h"
#include "activitylog/history_find.h"
#include "activitylog/history_list.h"
#include "activitylog/history_reader.h"
#include "platform/linux/posix_file_reading.h"
#include "support/toolbox_fixture.h"

namespace vantrell::test {

namespace {

/// A file that cannot be read from some place on.
class FailingReading final : public FileReading {
public:
    explicit FailingReading(std::uint64_t failsFrom) : failsFrom_(failsFrom) {}
    [[nodiscard]] Opened openForReading(const Path& path) const override {
        return {std::make_unique<File>(real_.openForReading(path).file, failsFrom_), {}};
    }

private:
    class File final : public ReadableFile {
    public:
        File(std::unique_ptr<ReadableFile> real, std::uint64_t failsFrom)
            : real_(std::move(real)), failsFrom_(failsFrom) {}
        FileFault readAt(std::uint64_t offset, std::span<char> into, std::size_t& got) const override {
            if (offset + into.size() > failsFrom_) return {FaultKind::other, "the medium has a fault"};
            return real_->readAt(offset, into, got);
        }

    private:
        std::unique_ptr<ReadableFile> real_;
        std::uint64_t failsFrom_;
    };

    PosixFileReading real_;
    std::uint64_t failsFrom_;
};

class RecordedReader final : public HistoryReaderView, public HistoryFindView {
public:
    void readingWentOn() override { ++pieces; }
    void takeCopy(std::string text) override { copied = std::move(text); }
    void refuseCopy() override { refused = true; }
    void showMatch(std::size_t line) override { shown.push_back(line); }
    void showFindState(const FindState& state) override { found = state; }

    int pieces = 0;
    std::optional<std::string> copied;
    bool refused = false;
    std::vector<std::size_t> shown;
    FindState found;
};

std::string numberedLines(int count) {
    std::string text;
    for (int line = 0; line < count; ++line) text += "line " + std::to_string(line) + "\r\n";
    return text;
}

}  // namespace

class HistoryReaderTest : public testing::Test {
protected:
    HistoryReaderTest() {
        state.AppFolder = folder.path();
        logs = folder.makeFolder("Daily Activity Logs");
    }
    void write(const std::string& name, const std::string& bytes) const { writeFile(logs + "/" + name, bytes); }
    void read(const std::string& name) {
        reader.readtheHistoryfile(name);
        run();
    }
    void run() {
        while (loop.turn()) {
        }
    }
    std::vector<std::string> all() {
        std::vector<std::string> lines;
        for (std::size_t i = 0; i < reader.lines().size(); ++i) lines.push_back(reader.lines().line(i));
        return lines;
    }

    TemporaryFolder folder;
    std::string logs;
    ProgramState state;
    HandCrankedLoop loop;
    RecordedReader view;
    PosixFileReading files;
    HistoryReader reader{state, files, loop, view};
    HistoryFind find{loop, reader.lines(), view};
};

using Lines = std::vector<std::string>;

TEST_F(HistoryReaderTest, ShowsLineForLine) {
    write("a", "one\r\n\r\ntwo \r\nbare\nnot\rended");
    read("a");
    EXPECT_EQ(all(), (Lines{"one", "", "two ", "bare", "not\\x0Dended"}));
    EXPECT_FALSE(reader.reading().isUnderWay);
    EXPECT_FALSE(reader.reading().isIncomplete);
}

TEST_F(HistoryReaderTest, ShowsWhatIsNoText) {
    write("a", std::string("M\xFCller\0\t\xC3\xBC\r\n", 12));
    read("a");
    EXPECT_EQ(all(), Lines{"M\\xFCller\\x00\\x09\xC3\xBC"});
}

TEST_F(HistoryReaderTest, AppendsASecondFile) {
    write("a", numberedLines(100));
    write("empty", "");
    write("b", "second\r\nlast");
    for (const char* name : {"a", "empty", "b"}) reader.readtheHistoryfile(name);
    run();
    Lines lines = all();
    ASSERT_EQ(lines.size(), 102U);
    EXPECT_EQ(lines[63], "line 63");
    EXPECT_EQ(lines[64], "line 64");
    EXPECT_EQ(lines[99], "line 99");
    EXPECT_EQ(lines[100], "second");
    EXPECT_EQ(lines[101], "last");
    EXPECT_EQ(reader.reading().files, "a, empty, b");
    reader.clear();
    EXPECT_EQ(reader.lines().size(), 0U);
    read("b");
    EXPECT_EQ(all(), (Lines{"second", "last"}));
}

TEST_F(HistoryReaderTest, KeepsTheLinesReadBeforeAFault) {
    write("a", numberedLines(100'000));
    write("b", "another file\r\n");
    const FailingReading failing(600'000);
    HistoryReader faulty(state, failing, loop, view);
    faulty.readtheHistoryfile("a");
    faulty.readtheHistoryfile("b");
    run();
    EXPECT_GT(faulty.lines().size(), 10'000U);
    EXPECT_LT(faulty.lines().size(), 100'000U);
    EXPECT_EQ(faulty.lines().line(10'000), "line 10000");
    EXPECT_EQ(faulty.lines().line(faulty.lines().size() - 1), "another file");
    EXPECT_TRUE(faulty.reading().isIncomplete);
    EXPECT_FALSE(faulty.reading().isUnderWay);
}

TEST_F(HistoryReaderTest, SaysNothingOfWhatCannotBeOpened) {
    std::filesystem::create_directory(logs + "/folder");
    ASSERT_EQ(::mkfifo((logs + "/fifo").c_str(), 0600), 0);
    write("a", "one\r\n");
    std::filesystem::create_symlink("a", logs + "/link");
    for (const char* name : {"gone", "folder", "fifo", "link", "a"}) read(name);
    EXPECT_EQ(all(), Lines{"one"});
}

TEST_F(HistoryReaderTest, ReadsOnInAFileThatVanishedAndBearsOneThatWasCut) {
    write("a", numberedLines(200));
    write("b", numberedLines(200));
    read("a");
    read("b");
    std::filesystem::remove(logs + "/a");
    std::filesystem::resize_file(logs + "/b", 5);
    EXPECT_EQ(reader.lines().line(150), "line 150");
    EXPECT_EQ(reader.lines().line(399), "(this line cannot be read again)");
}

TEST_F(HistoryReaderTest, LeavesOutWhatIsAppendedLater) {
    write("a", "one\r\ntor");
    read("a");
    write("a", "one\r\ntorn\r\nthree\r\n");
    write("b", "b\r\n");
    read("b");
    EXPECT_EQ(all(), (Lines{"one", "tor", "b"}));
}

TEST_F(HistoryReaderTest, BreaksALineThatNeverEnds) {
    constexpr std::size_t kLongest = HistoryLines::kLongestLine;
    write("a", std::string(5 * kLongest + 7, 'x') + "\r\nafter\r\n");
    read("a");
    const Lines lines = all();
    ASSERT_EQ(lines.size(), 7U);
    EXPECT_EQ(lines[4], std::string(kLongest, 'x'));
    EXPECT_EQ(lines[5], "xxxxxxx");
    EXPECT_EQ(lines[6], "after");
}

TEST_F(HistoryReaderTest, KnowsTheWidestLine) {
    ByteWidths widths{};
    widths['i'] = 10;
    widths['W'] = 50;
    reader.lines().setByteWidths(widths);
    write("a", "iiiiiii\r\nWWW\r\niii\r\n");
    read("a");
    EXPECT_EQ(reader.lines().widestLine(), 1U);
}

TEST_F(HistoryReaderTest, CopiesInOrder) {
    write("a", numberedLines(300));
    read("a");
    reader.copy({{250, 251}, {63, 64}});
    run();
    EXPECT_EQ(view.copied, "line 63\nline 64\nline 250\nline 251\n");
    reader.copy({{7, 7}});
    run();
    EXPECT_EQ(view.copied, "line 7");
}

TEST_F(HistoryReaderTest, RefusesToCopyMoreThanProgramsCanTake) {
    const std::size_t lines = HistoryReader::kLargestCopy / 60'000 + 2;
    std::string text;
    for (std::size_t i = 0; i < lines; ++i) text.append(60'000, 'x').append("\n");
    write("a", text);
    read("a");
    reader.copy({{0, lines - 1}});
    run();
    EXPECT_TRUE(view.refused);
    EXPECT_FALSE(view.copied.has_value());
}

TEST_F(HistoryReaderTest, FindsForwardsAndBackwards) {
    write("a", "Ab\r\nx\r\naB ab\r\n\\x\r\nM\xFC\r\n");
    read("a");
    find.find("AB", 1);
    run();
    EXPECT_EQ(view.shown, std::vector<std::size_t>{2});
    EXPECT_EQ(view.found.matches, 2U) << "lines count, not places";
    EXPECT_EQ(view.found.position, 2U);
    find.findNext();
    find.findNext();
    find.findPrevious();
    EXPECT_EQ(view.shown, (std::vector<std::size_t>{2, 0, 2, 0}));

    view.shown.clear();
    find.find("m\\xfc", 0);
    run();
    EXPECT_EQ(view.shown, std::vector<std::size_t>{4}) << "what is shown is found";
    view.shown.clear();
    find.find("none", 0);
    run();
    EXPECT_TRUE(view.found.isSearching);
    EXPECT_FALSE(view.found.isUnderWay);
    EXPECT_EQ(view.found.matches, 0U);
    find.findNext();
    find.find("", 0);
    run();
    EXPECT_TRUE(view.shown.empty());
    EXPECT_FALSE(view.found.isSearching);
}

TEST_F(HistoryReaderTest, WrapsAroundToTheFirstMatch) {
    write("a", numberedLines(500));
    read("a");
    find.find("line 12", 400);
    run();
    EXPECT_EQ(view.shown, std::vector<std::size_t>{12});
    EXPECT_EQ(view.found.matches, 11U);
}

TEST_F(HistoryReaderTest, SearchesTheLinesThatJoin) {
    write("a", "needle\r\n");
    write("b", "needle\r\nhay\r\n");
    read("a");
    find.find("needle", 0);
    run();
    read("b");
    find.linesJoined();
    run();
    EXPECT_EQ(view.found.matches, 2U);
    EXPECT_EQ(view.shown, std::vector<std::size_t>{0}) << "what is shown stays";
}

TEST_F(HistoryReaderTest, GivesTheWindowItsTurnsInALargeLog) {
    constexpr int kLines = 500'000;
    const std::string filler(80, '.');
    std::string text;
    for (int line = 0; line < kLines; ++line) text += std::to_string(line) + filler + "\r\n";
    write("a", text);
    std::chrono::steady_clock::duration longest{};
    int count = 0;
    const auto turns = [&] {
        for (bool more = true; more;) {
            const auto began = std::chrono::steady_clock::now();
            more = loop.turn();
            longest = std::max(longest, std::chrono::steady_clock::now() - began);
            ++count;
        }
    };
    reader.readtheHistoryfile("a");
    loop.turn();
    EXPECT_GT(reader.lines().size(), 1000U) << "the first lines are there after the first turn";
    turns();
    ASSERT_EQ(reader.lines().size(), std::size_t{kLines});
    EXPECT_EQ(reader.lines().line(kLines - 1), std::to_string(kLines - 1) + filler);
    find.find("499999", 0);
    turns();
    EXPECT_EQ(view.shown, std::vector<std::size_t>{kLines - 1});
    reader.copy({{0, kLines - 1}});
    turns();
    EXPECT_EQ(view.copied.value_or("").size(), text.size() - kLines);
    EXPECT_GT(count, 8) << "each of the three takes several turns on any machine";
    EXPECT_LT(longest, std::chrono::milliseconds(1000)) << "meant to be 20; the machine may be busy";
}

namespace {

class RecordedList final : public HistoryListView, public HistoryOpener {
public:
    void rowsChanged() override {}
    void marksChanged() override {}
    void showLoadHistory(bool shown) override { isLoadShown = shown; }
    void closeList() override { ++closed; }
    void openHistory(const Path& fileName) override { opened.push_back(fileName); }

    bool isLoadShown = false;
    int closed = 0;
    std::vector<Path> opened;
};

}  // namespace

class HistoryListTest : public WithToolbox {
protected:
    HistoryListTest() { state.AppFolder = folder.path(); }
    void fill(const std::vector<std::string>& names) {
        const std::string logs = folder.makeFolder("Daily Activity Logs");
        for (const std::string& name : names) writeFile(logs + "/" + name, "x");
        list.FillHistoryList();
        loop.turnUntil([this] { return view.isLoadShown; });
    }
    [[nodiscard]] std::vector<std::size_t> checked() const {
        std::vector<std::size_t> found;
        for (std::size_t row = 1; row <= list.rows().size(); ++row)
            if (list.rows()[row - 1].isChecked) found.push_back(row);
        return found;
    }

    ProgramState state;
    RecordedList view;
    HistoryList list{state, toolbox, loop, view, view};
};

TEST_F(HistoryListTest, ListsEveryFileOfTheFolderInOrder) {
    folder.makeFolder("Daily Activity Logs/below");
    writeFile(folder / "Daily Activity Logs/below/20250101 Activity.Log", "x");
    fill({"20261117 Activity.Log", "20261116 Activity.Log", ".hidden", "notes", "M\xFCller.txt"});
    std::vector<Path> names;
    for (const HistoryList::Row& row : list.rows()) names.push_back(row.fileName);
    EXPECT_EQ(names, (std::vector<Path>{".hidden", "20261116 Activity.Log", "20261117 Activity.Log", "M\xFCller.txt",
                                        "notes"}));
    EXPECT_EQ(list.ListedFileCount(), 5U);
    EXPECT_EQ(list.currentRow(), 5U);
    EXPECT_TRUE(checked().empty());
    EXPECT_EQ(state.LogFolder, logFolderBelow(folder.path()));
}

TEST_F(HistoryListTest, OpensTheLastFileWhenNoneWasClicked) {
    fill({"a", "b"});
    list.OpenHistoryFile();
    EXPECT_EQ(view.opened, std::vector<Path>{"b"});
    EXPECT_EQ(view.closed, 1);
}

TEST_F(HistoryListTest, ChecksTheClickedRowAlone) {
    fill({"a", "b", "c"});
    list.gridClicked(1);
    list.gridClicked(2);
    EXPECT_EQ(checked(), std::vector<std::size_t>{2});
    list.gridClicked(2);
    EXPECT_EQ(checked(), std::vector<std::size_t>{2});
    list.OpenHistoryFile();
    EXPECT_EQ(view.opened, std::vector<Path>{"b"});
}

TEST_F(HistoryListTest, DoesNothingWithAFileThatHasGone) {
    fill({"a", "b"});
    std::filesystem::remove(folder / "Daily Activity Logs/b");
    list.OpenHistoryFile();
    EXPECT_TRUE(view.opened.empty());
    EXPECT_EQ(view.closed, 0);
}

TEST_F(HistoryListTest, StaysEmptyWithoutALogFolder) {
    list.FillHistoryList();
    EXPECT_FALSE(view.isLoadShown);
    loop.turnUntil([this] { return view.isLoadShown; });
    EXPECT_TRUE(view.isLoadShown);
    list.gridClicked(1);
    list.OpenHistoryFile();
    EXPECT_TRUE(view.opened.empty());
    EXPECT_EQ(view.closed, 0);
}

TEST_F(HistoryListTest, IsBuiltAnewWhenItOpensAgain) {
    fill({"a"});
    list.clear();
    EXPECT_EQ(list.ListedFileCount(), 0U);
    EXPECT_FALSE(view.isLoadShown);
    fill({"b"});
    EXPECT_EQ(list.ListedFileCount(), 2U);
}

}  // namespace vantrell::test
