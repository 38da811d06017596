// SPDX-License-Identifier: MIT
#include "mainwindow/diagnostics.h"

#include <gtest/gtest.h>

#include "mainwindow/system_information.h"
#include "support/doubles.h"
#include "support/pass_bench.h"

namespace vantrell::test {
namespace {

TEST(Message, ShowsStrangersTheProgramsOwnWordsAlone) {
    const Message message = "File " + named("/in/a") + " did not encrypt!";
    EXPECT_EQ(message.text(), "File /in/a did not encrypt!");
    EXPECT_EQ(message.masked(), "File <…> did not encrypt!");
    EXPECT_EQ(failureWords("/x/y: No space left on device").masked(), "<…>: No space left on device");
    EXPECT_EQ(failureWords("/x: no such thing").masked(), "<…>");
}

// What the program really logs, with names that would be noticed anywhere.
class DiagnosticsTest : public ::testing::Test {
protected:
    [[nodiscard]] std::string text() { return bench.engine.about.diagnosticsWanted("Qt 6.4.2 (xcb)"); }
    PassBench bench;
};

TEST_F(DiagnosticsTest, TellsSettingsAndEventsWithoutNames) {
    bench.state.settings.DestinationFolder = bench.root.makeFolder("zanzibar");
    bench.state.settings.WeeklyDeleteAmPm = "zanzibar";
    bench.state.settings.RejectFolder = bench.root.makeFolder("rejected quagga");
    bench.engine.activePassword.set("hunter2");
    bench.host.variables = {{"XDG_CURRENT_DESKTOP", "XFCE"}, {"XDG_SESSION_TYPE", "/home/zanzibar"}};
    writeFile(bench.in("quagga.txt"), "a");
    writeFile(bench.in("zanzibar"), "b");
    writeFile(bench.done("quagga.txt"), "older");
    bench.boxes.answerNext(Answer::no);
    EXPECT_TRUE(bench.runPass());
    for (const char* secret : {"zanzibar", "quagga", "hunter2", "vantrell-test", "/"})
        EXPECT_EQ(text().find(secret), std::string::npos) << secret << " in\n" << text();
    for (const char* part :
         {"Vantrell: ", "OpenSSL: 3", "SQLite: 3", "liburing: ", "Linux: ", "Toolkit: Qt 6.4.2 (xcb)", "Desktop: XFCE",
          "SourceFolder: <source>", "ScanIntervalMs: 65535", "RunContinuallyAtStartup: False",
          "20361116 140000 Encryped:  <…> - Sucessful: \n"}) {
        EXPECT_NE(text().find(part), std::string::npos) << part << " not in\n" << text();
    }
    for (int i = 0; i < 60; ++i) bench.engine.log.logEvent(i < 10 ? Message("Loading") : Message("Loaded"));
    EXPECT_EQ(text().find("Loading"), std::string::npos) << "fifty events are enough";
}

}  // namespace
}  // namespace vantrell::test
