// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <thread>

#include "platform/linux/desktop_entry.h"
#include "platform/linux/xdg_startup_entry.h"
#include "support/environment.h"
#include "support/toolbox_fixture.h"

namespace vantrell::test {
namespace {

namespace fs = std::filesystem;
using State = StartupEntry::State;

class EntryTest : public testing::Test {
protected:
    std::string makeProgram(const std::string& name) const {
        const std::string program = folder.makeFolder(name) + "/ZEP";
        writeFile(program, "#!/bin/sh\n: > \"$0.started\"\n");
        fs::permissions(program, fs::perms{0755});
        return folder / name;
    }
    State stateOf(const std::string& text) const {
        writeFile(file, text);
        return entry.state();
    }
    static int run(const std::string& command) { return std::system(command.c_str()); }

    TemporaryFolder folder;
    Environment config{"XDG_CONFIG_HOME", (folder / "config").c_str()};
    Environment desktop{"XDG_CURRENT_DESKTOP", "Cinnamon:GNOME"};
    std::string autostart = folder / "config/autostart";
    std::string file = autostart + "/NRD-ZEP.desktop";
    std::string programs = makeProgram("bin");
    XdgStartupEntry entry{programs};
};

TEST_F(EntryTest, IsMadeFoundAndRemoved) {
    EXPECT_EQ(entry.state(), State::none);
    EXPECT_TRUE(entry.remove());
    const mode_t before = ::umask(077);
    EXPECT_TRUE(entry.add());
    ::umask(before);
    EXPECT_EQ(entry.state(), State::works);
    EXPECT_EQ(statusAt(file).st_mode & 07777U, 0644U);
    EXPECT_EQ(namesIn(autostart), Names{"NRD-ZEP.desktop"});
    EXPECT_TRUE(entry.remove());
    EXPECT_EQ(entry.state(), State::none);
}

TEST_F(EntryTest, StandsInTheHomeFolderWithoutXdgVariables) {
    const Environment home("HOME", folder.path().c_str());
    for (const char* unusable : {"", "relative"}) {
        const Environment unset("XDG_CONFIG_HOME", unusable);
        ASSERT_TRUE(entry.add());
        EXPECT_TRUE(fs::remove(folder / ".config/autostart/NRD-ZEP.desktop"));
    }
}

// What reads the entry here is not ours: the validator, and the library by which desktops start it.
TEST_F(EntryTest, StartsAProgramOfAnyPath) {
    for (const char* name : {"a  b ", "q\"uo'te", "back\\slash\\n\\\\", "50%f %% %", "$HOME ${PATH}", "t`true`", "a=b",
                             "semi;&|<>()*?#~!", "\u00fcml\u00e4ut \u65e5\u672c", "-x"}) {
        const std::string programFolder = makeProgram(name);
        XdgStartupEntry nasty(programFolder);
        ASSERT_TRUE(nasty.add()) << name;
        EXPECT_EQ(nasty.state(), State::works) << name;
        EXPECT_EQ(entry.state(), State::elsewhere) << name;
        EXPECT_EQ(run("desktop-file-validate " + file), 0) << name;
        ASSERT_EQ(run("/usr/bin/python3 -B '" VANTRELL_LAUNCH_ENTRY "' " + file), 0) << name << "\n" << readFile(file);
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (!fs::exists(programFolder + "/ZEP.started") && std::chrono::steady_clock::now() < end)
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        EXPECT_TRUE(fs::exists(programFolder + "/ZEP.started")) << name << "\n" << readFile(file);
    }
}

TEST_F(EntryTest, IsNotMadeForAPathThatItCannotName) {
    for (const char* name : {"line\nbreak", "tab\t", "\x7f", "\xff\xfe", "\xc2\x85"}) {
        XdgStartupEntry unspeakable(makeProgram(name));
        EXPECT_FALSE(unspeakable.add()) << name;
    }
    EXPECT_FALSE(fs::exists(file));
}

TEST_F(EntryTest, EveryStateIsToldAndMended) {
    const std::string begin = "[Desktop Entry]\nType=Application\nName=x\n";
    const std::string works = begin + "Exec=\"" + programs + "/ZEP\"\n";
    fs::create_symlink(programs, folder / "link");
    const std::string other = makeProgram("other");
    folder.makeFolder("config/autostart");
    const std::pair<std::string, State> cases[] = {
        {works, State::works},
        {"# by hand\r\n\r\n[Desktop Entry]\r\nType = Application\r\nName[de]=y\r\nName=x\r\nExec = " + programs +
             "/ZEP  %u\r\n[Other]\r\nExec=/bin/true\r\nHidden=true\r\n",
         State::works},
        {begin + "Exec=" + (folder / "link/ZEP") + " --option\n", State::works},
        {works + "Hidden=true\n", State::switchedOff},
        {works + "X-GNOME-Autostart-enabled=false\n", State::switchedOff},
        {works + "X-GNOME-Autostart-enabled=true\nHidden=false\n", State::works},
        {works + "OnlyShowIn=KDE;LXQt;\n", State::switchedOff},
        {works + "OnlyShowIn=KDE;GNOME\n", State::works},
        {works + "NotShowIn=GNOME;\n", State::switchedOff},
        {works + "TryExec=/no/such/program\n", State::elsewhere},
        {begin + "Exec=" + other + "/ZEP\n", State::elsewhere},
        {begin + "Exec=/bin/sh -c \"exit 1\" " + programs + "/ZEP\n", State::elsewhere},
        {begin + "Exec=ZEP\n", State::elsewhere},
        {begin + "Exec=\"" + programs + "/ZEP\n", State::elsewhere},
        {begin, State::elsewhere},
        {"[Other]\n" + works, State::elsewhere},
        {"Exec=x\n" + works, State::elsewhere},
        {std::string("\0\xff\n", 3) + works, State::elsewhere},
        {"", State::elsewhere},
        {works + std::string(100000, '#'), State::elsewhere},
    };
    for (const auto& [text, state] : cases) {
        EXPECT_EQ(stateOf(text), state) << text.substr(0, 300);
        EXPECT_TRUE(entry.add());
        EXPECT_EQ(entry.state(), State::works);
    }
    fs::remove(programs + "/ZEP");
    EXPECT_EQ(stateOf(works), State::elsewhere) << "nothing would start";
}

TEST_F(EntryTest, WhatStandsInItsPlaceIsReplacedNotFollowed) {
    folder.makeFolder("config/autostart");
    writeFile(folder / "mine", "[Desktop Entry]\nHidden=true\n");
    for (const char* target : {"mine", "dangling"}) {
        fs::remove(file);
        fs::create_symlink(folder / target, file);
        EXPECT_TRUE(entry.add());
        EXPECT_FALSE(fs::is_symlink(file));
        EXPECT_EQ(entry.state(), State::works);
    }
    EXPECT_EQ(readFile(folder / "mine"), "[Desktop Entry]\nHidden=true\n");
    fs::remove(file);
    ASSERT_EQ(::mkfifo(file.c_str(), 0600), 0);
    EXPECT_EQ(entry.state(), State::elsewhere);
    EXPECT_TRUE(entry.add());
    fs::remove(file);
    fs::create_directories(file + "/full");
    EXPECT_EQ(entry.state(), State::elsewhere);
    EXPECT_FALSE(entry.add());
    EXPECT_FALSE(entry.remove());
    EXPECT_EQ(namesIn(autostart), Names{"NRD-ZEP.desktop"}) << "no temporary file is left";
}

TEST_F(EntryTest, AFolderThatCannotBeWrittenIsReported) {
    folder.makeFolder("config");
    writeFile(autostart, "a file");
    EXPECT_FALSE(entry.add());
    EXPECT_EQ(entry.state(), State::none);
    EXPECT_TRUE(entry.remove());
    fs::remove(autostart);
    ASSERT_TRUE(entry.add());
    const std::string before = readFile(file);
    fs::permissions(folder.path(), fs::perms{0755});
    fs::permissions(folder / "config", fs::perms{0755});
    fs::permissions(autostart, fs::perms{0555});
    {
        const OrdinaryUser user;
        EXPECT_FALSE(XdgStartupEntry("/elsewhere").add());
        EXPECT_FALSE(entry.remove());
        EXPECT_EQ(entry.state(), State::works);
    }
    fs::permissions(autostart, fs::perms{0755});
    EXPECT_EQ(readFile(file), before);
}

TEST(ExecWords, AreSplitAsTheyWereJoined) {
    using Words = std::vector<std::string>;
    EXPECT_EQ(wordsOfExec(" a  \"\" \"b c\"\td\\ e f%%g %U \"h\\\"\\x\" ").value(),
              (Words{"a", "", "b c", "d e", "f%g", "h\"\\x"}));
    EXPECT_FALSE(wordsOfExec("\"open"));
    EXPECT_FALSE(wordsOfExec("\"open\\\""));
    EXPECT_EQ(wordsOfExec("").value(), Words{});
    std::string all;
    for (int byte = 1; byte < 256; ++byte) all += static_cast<char>(byte);
    EXPECT_EQ(wordsOfExec(quotedForExec(all) + " " + quotedForExec("")).value(), (Words{all, ""}));
}

}  // namespace
}  // namespace vantrell::test
