// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "base/date_text.h"
#include "mainwindow/main_window_controller.h"
#include "platform/files/posix_data_files.h"
#include "platform/files/posix_toolbox.h"
#include "platform/openssl/openssl_cipher.h"
#include "rig/hand_cranked_loop.h"
#include "rig/temporary_folder.h"
#include "support/doubles.h"
#include "support/recording_kernel.h"
#include "support/scripted_boxes.h"
#include "transport/scan_pass.h"

namespace vantrell::test {

/// The engine on real folders: a pass and the controller over it, with a window that remembers, boxes that answer as
/// told, and a loop that is turned by hand.
class PassBench {
public:
    PassBench() {
        ::setenv("TZ", "UTC", 1);
        state.AppFolder = root.makeFolder("app");
        state.SettingsFilePath = state.AppFolder + "/ZEP.cfg";
        state.settings.SourceFolder = root.makeFolder("in");
        state.settings.DestinationFolder = root.makeFolder("out");
        state.settings.DoneFolder = root.makeFolder("done");
        state.settings.RejectFolder = root.makeFolder("rejected");
        state.settings.ScanIntervalMs = 65535;
        state.ActivePassword = "secret";
    }

    std::string in(const std::string& name) const { return state.settings.SourceFolder + "/" + name; }
    std::string out(const std::string& name) const { return state.settings.DestinationFolder + "/" + name; }
    std::string done(const std::string& name) const { return state.settings.DoneFolder + "/" + name; }
    std::string rejected(const std::string& name) const { return state.settings.RejectFolder + "/" + name; }

    /// Runs one pass to its end; False when it waits for an answer.
    bool runPass() { return loop.run(pass.timRun_Timer()); }

    void settle() {
        loop.turnUntil([] { return false; });
    }

    /// The messages of the activity lines since the last call, without their date and time.
    std::vector<std::string> messages() {
        const std::string prefix = generalDateText(clock.time) + " ";
        std::vector<std::string> texts;
        for (const std::string& line : std::exchange(window.lines, {}))
            texts.push_back(line.rfind(prefix, 0) == 0 ? line.substr(prefix.size()) : "no date: " + line);
        return texts;
    }
    std::string time() const { return timeText(clock.time); }

    static bool exists(const std::string& path) {
        return std::filesystem::symlink_status(path).type() != std::filesystem::file_type::not_found;
    }
    static std::vector<std::string> names(const std::string& folder) {
        std::vector<std::string> found;
        for (const auto& entry : std::filesystem::directory_iterator(folder)) found.push_back(entry.path().filename());
        std::sort(found.begin(), found.end());
        return found;
    }

    TemporaryFolder root;
    ProgramState state;
    HandCrankedLoop loop;
    SettableClock clock;
    RecordingWindow window;
    ScriptedBoxes boxes{loop.queue()};
    RecordingKernel kernel{loop.kernel(), root.path()};
    PosixDataFiles files{kernel};
    PosixToolbox toolbox{loop, kernel, clock};
    ManualTimer timRun;
    SettingsFile settings{state, files, clock};
    ActivityLog log{state, window, files, clock};
    StatusReport report{state, window, log};
    ModeDisplay mode{state, window, timRun};
    std::string passwordOfStore;  // what a lookup finds
    FakeTray tray;
    WindowPlace place{window, tray};
    RecordingNotifier notifier;
    Notices notices{notifier, clock, window, place};
    const std::function<Task<void>()> find = [this] { return lookUp(this); };
    ScanPass pass{{state, window, report, log, settings, toolbox, boxes, loop, clock, timRun, mode, notices},
                  [this] { return std::make_unique<CryptoComponent>(loop, toolbox, makeOpensslCipher); },
                  find};
    FakeHost host;
    const std::function<void()> none = [] {};
    OtherCommands others{none, none, none, none, none, none, none, none, none, none, none, none};
    FakeStartupEntry entry;
    OptionMenus menus{state, window, settings, boxes, place, entry, loop.queue()};
    MainWindowController controller{parts(), none};

    ControllerParts parts() {
        return {state, window, report, log,   settings, boxes, loop,  clock,   host,  timRun,
                mode,  pass,   find,   place, tray,     entry, menus, notices, others};
    }

private:
    static Task<void> lookUp(PassBench* bench) {
        bench->state.ActivePassword = bench->passwordOfStore;
        co_return;
    }
};

}  // namespace vantrell::test
