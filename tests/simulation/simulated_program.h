// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "assembly/engine.h"
#include "platform/files/posix_data_files.h"
#include "platform/files/posix_toolbox.h"
#include "platform/openssl/openssl_cipher.h"
#include "platform/sqlite/sqlite_database.h"
#include "simulation/simulated_loop.h"
#include "support/doubles.h"

namespace vantrell::test {

/// The lines of the activity box; whoever is set is told of each.
class ToldLines final : public LineStore {
public:
    void append(std::string_view line) override {
        lines_.emplace_back(line);
        if (told) told(lines_.back());
    }
    [[nodiscard]] std::size_t size() const override { return lines_.size(); }
    [[nodiscard]] std::string line(std::size_t index) const override { return lines_[index]; }
    std::function<void(const std::string&)> told;

private:
    std::vector<std::string> lines_;
};

/// Boxes that wait until somebody answers them.
class WaitingBoxes final : public MessageBoxes {
public:
    using MessageBoxes::MessageBoxes;
    void inform(const Box&) override {}
    [[nodiscard]] bool isBeingRead(const std::string&) const override { return false; }
    void showAgain(Ticket<Answer>) override {}
    /// Nothing happens when the box is no longer open.
    void answer(Ticket<Answer> ticket, Answer answer) {
        if (std::erase(open_, ticket) != 0) queue().wake(ticket, answer);
    }
    [[nodiscard]] bool isOpen(Ticket<Answer> ticket) const {
        return std::find(open_.begin(), open_.end(), ticket) != open_.end();
    }
    [[nodiscard]] bool areOpen() const { return !open_.empty(); }
    /// Is told of each box that waits for an answer.
    std::function<void(Ticket<Answer>, const Box&)> asked;

protected:
    void open(Ticket<Answer> ticket, const Box& box) override {
        open_.push_back(ticket);
        if (asked) asked(ticket, box);
    }
    void close(Ticket<Answer> ticket) override { std::erase(open_, ticket); }

private:
    std::vector<Ticket<Answer>> open_;
};

/// Password files whose contents are one text. What SQLite keeps is proved on a real disk, by kill tests.
class WholeFileCopier final : public DatabaseCopier {
public:
    explicit WholeFileCopier(DataFiles& files) : files_(files) {}
    [[nodiscard]] Contents read(const Path& file) override {
        const Result<std::string> bytes = files_.read(file, 4096);
        return bytes.ok() ? Contents{bytes.value(), DatabaseFault::none} : Contents{{}, DatabaseFault::failed};
    }
    [[nodiscard]] DatabaseFault replace(const Path& file, const std::string& contents, const Keep& keep) override {
        const Contents old = read(file);
        if (old.fault != DatabaseFault::none || (old.bytes != contents && !keep(old.bytes)))
            return DatabaseFault::failed;
        return files_.writeAtomically(file, contents).ok() ? DatabaseFault::none : DatabaseFault::failed;
    }
    [[nodiscard]] bool holdsTable(const std::string&, std::string_view,
                                  const std::vector<std::string>&) const override {
        return true;
    }
    [[nodiscard]] std::vector<std::string> companionEndings() const override { return {}; }

private:
    DataFiles& files_;
};

/// One run of the program, from its start to its end: the engine as it is, on a simulated machine.
struct SimulatedProgram {
    SimulatedProgram(SimulatedClock& time, SimulatedKernel& kernel, const Path& profile, const std::string& password)
        : loop(time, kernel),
          timers(loop),
          toolbox(loop, kernel, time),
          files(kernel),
          database(loop),
          copier(files),
          host(profile),
          boxes(loop.queue()),
          engine({time, timers, loop, host, instance, claim, entry, toolbox, files, database, copier, lines,
                  makeOpensslCipher},
                 {window, passwordWindow, weeklyWindow, boxes, tray, notifier, {}}, [this] { hasQuit = true; }) {
        engine.activePassword.set(password);
    }

    bool hasQuit = false;
    SimulatedLoop loop;
    SimulatedTimers timers;
    PosixToolbox toolbox;
    PosixDataFiles files;
    SqliteDatabase database;
    WholeFileCopier copier;
    FakeHost host;
    FakeInstanceLock instance;
    FakeSourceClaim claim;
    FakeStartupEntry entry;
    ToldLines lines;
    RecordingWindow window;
    FakePasswordWindow passwordWindow;
    FakeWeeklyWindow weeklyWindow;
    WaitingBoxes boxes;
    FakeTray tray;
    RecordingNotifier notifier;
    Engine engine;
};

}  // namespace vantrell::test
