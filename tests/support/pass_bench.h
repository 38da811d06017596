// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "assembly/engine.h"
#include "base/date_text.h"
#include "passwords/supplied_password_file.h"
#include "platform/files/posix_data_files.h"
#include "platform/files/posix_toolbox.h"
#include "platform/files/spilled_lines.h"
#include "platform/openssl/openssl_cipher.h"
#include "platform/sqlite/sqlite_copier.h"
#include "platform/sqlite/sqlite_database.h"
#include "rig/hand_cranked_loop.h"
#include "rig/hand_driven_timers.h"
#include "rig/temporary_folder.h"
#include "support/doubles.h"
#include "support/kernel_beside_loop.h"
#include "support/scripted_boxes.h"

namespace vantrell::test {

/// The engine on real folders, with a window that remembers, boxes that answer as told, and a loop that is turned by
/// hand.
class PassBench {
public:
    PassBench() {
        ::setenv("TZ", "UTC", 1);
        (void)files.makePrivateFolders(state.AppFolder);
        writeFile(passwordFile, std::string(suppliedPasswordFile()));
        state.settings.SourceFolder = root.makeFolder("in");
        state.settings.DestinationFolder = root.makeFolder("out");
        state.settings.DoneFolder = root.makeFolder("done");
        state.settings.RejectFolder = root.makeFolder("rejected");
        state.settings.ScanIntervalMs = 65535;
        engine.activePassword.set("secret");
    }

    std::string in(const std::string& name) const { return state.settings.SourceFolder + "/" + name; }
    std::string out(const std::string& name) const { return state.settings.DestinationFolder + "/" + name; }
    std::string done(const std::string& name) const { return state.settings.DoneFolder + "/" + name; }
    std::string rejected(const std::string& name) const { return state.settings.RejectFolder + "/" + name; }

    /// Runs one pass to its end; False when it waits for an answer.
    bool runPass() { return loop.run(pass.timRun_Timer()); }

    /// What a pass works with, on another toolbox.
    PassParts partsOn(FileToolbox& other) {
        return {state,
                window,
                engine.report,
                engine.log,
                engine.settings,
                other,
                boxes,
                loop,
                clock,
                timRun,
                engine.mode,
                engine.notices,
                engine.activePassword,
                engine.noActivePassword,
                engine.flushNote,
                engine.namesakes,
                engine.mounts,
                claim};
    }

    void settle() {
        loop.turnUntil([] { return false; });
    }

    /// The messages of the activity lines since the last call, without their date and time.
    std::vector<std::string> messages() {
        const std::string prefix = generalDateText(clock.time) + " ";
        std::vector<std::string> texts;
        for (; told < lines.size(); ++told) {
            const std::string line = lines.line(told);
            texts.push_back(line.rfind(prefix, 0) == 0 ? line.substr(prefix.size()) : "no date: " + line);
        }
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
    HandCrankedLoop loop;
    /// Long after the files were written: their stamps count.
    SettableClock clock{std::chrono::sys_days(std::chrono::year(2036) / 11 / 16) + std::chrono::hours(14)};
    HandDrivenTimers timers;
    KernelBesideLoop kernel{loop.kernel()};
    PosixDataFiles files{kernel};
    PosixToolbox toolbox{loop, kernel, clock};
    SqliteDatabase database{loop};
    SqliteCopier databaseCopier;
    const Path folderOfLines = root.path();
    SpilledLines lines{loop.kernel(), folderOfLines, folderOfLines};
    std::size_t told = 0;
    FakeHost host{root.path()};
    FakeInstanceLock instance;
    FakeSourceClaim claim;
    FakeStartupEntry entry;
    RecordingWindow window;
    FakePasswordWindow passwordWindow;
    FakeWeeklyWindow weeklyWindow;
    ScriptedBoxes boxes{loop.queue()};
    FakeTray tray;
    RecordingNotifier notifier;
    Engine engine{{clock, timers, loop, host, instance, claim, entry, toolbox, files, database, databaseCopier, lines,
                   makeOpensslCipher},
                  {window, passwordWindow, weeklyWindow, boxes, tray, notifier, {}},
                  [] {}};
    ProgramState& state = engine.state;
    const std::string passwordFile = state.AppFolder + "/EDPasswords.mdb";
    const std::string settingsFile = state.AppFolder + "/ZEP.cfg";
    ScanPass& pass = engine.pass;
    Timer& timRun = *engine.timRun;
};

}  // namespace vantrell::test
