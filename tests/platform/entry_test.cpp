// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cstdlib>

#include "platform/desktop/xdg_startup_entry.h"
#include "support/appears.h"
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
    static int run(const std::string& command) { return std::system(command.c_str()); }

    TemporaryFolder folder;
    Environment config{"XDG_CONFIG_HOME", (folder / "config").c_str()};
    Environment desktop{"XDG_CURRENT_DESKTOP", "Cinnamon:GNOME"};
    std::string autostart = folder / "config/autostart";
    std::string file = autostart + "/NRD-ZEP.desktop";
    std::string programs = makeProgram("bin");
    LinuxKernel kernel;
    XdgStartupEntry entry{kernel, programs};
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
        XdgStartupEntry nasty(kernel, programFolder);
        ASSERT_TRUE(nasty.add()) << name;
        EXPECT_EQ(nasty.state(), State::works) << name;
        EXPECT_EQ(entry.state(), State::elsewhere) << name;
        EXPECT_EQ(run("desktop-file-validate " + file), 0) << name;
        ASSERT_EQ(run("/usr/bin/python3 -B '" VANTRELL_LAUNCH_ENTRY "' " + file), 0) << name << "\n" << readFile(file);
        EXPECT_TRUE(appears(programFolder + "/ZEP.started")) << name << "\n" << readFile(file);
    }
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
        {works + "OnlyShowIn=KDE;LXQt;\n", State::switchedOff},
        {works + "TryExec=/no/such/program\n", State::elsewhere},
        {begin + "Exec=" + other + "/ZEP\n", State::elsewhere},
        {begin + "Exec=/bin/sh -c \"exit 1\" " + programs + "/ZEP\n", State::elsewhere},
        {"", State::elsewhere},
        {works + std::string(100000, '#'), State::elsewhere},
    };
    for (const auto& [text, state] : cases) {
        writeFile(file, text);
        EXPECT_EQ(entry.state(), state) << text.substr(0, 300);
        EXPECT_TRUE(entry.add());
        EXPECT_EQ(entry.state(), State::works);
    }
    fs::remove(programs + "/ZEP");
    EXPECT_EQ(entry.state(), State::elsewhere) << "nothing would start";
}

}  // namespace
}  // namespace vantrell::test
