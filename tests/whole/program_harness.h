// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <QAction>
#include <QDeadlineTimer>
#include <QPushButton>
#include <functional>
#include <optional>

#include "app/program.h"
#include "platform/linux/system_clock.h"
#include "platform/qt/qt_timers.h"
#include "rig/profile.h"
#include "support/controls.h"

namespace vantrell::test {

/// The machine's clock, or one that is some time ahead of it.
class ShiftedClock final : public Clock {
public:
    [[nodiscard]] TimePoint now() const override { return machine_.now() + ahead; }
    [[nodiscard]] std::chrono::nanoseconds sinceBoot() const override { return machine_.sinceBoot() + ahead; }
    std::chrono::seconds ahead{0};

private:
    SystemClock machine_;
};

/// The whole program on a profile of its own, seen and driven through its window alone.
class ProgramTest : public ::testing::Test, protected Controls {
protected:
    /// Starts it and waits until its start is over: idle, or, when it is to process by itself, at its first pass.
    void startProgram() {
        profile.use();
        startOnProfile();
    }
    /// The same on the profile as it stands.
    void startOnProfile() {
        program.emplace(clock, timers);
        useWindow(program->window());
        ASSERT_TRUE(program->start());
        ASSERT_TRUE(waitFor([&] { return !program->engine().state.StartupPassMarker; }));
    }

    /// Looks at the condition whenever the event loop has had its turn; the time is a limit, not a measure.
    static bool waitFor(const std::function<bool()>& condition, int seconds = 60) {
        const QDeadlineTimer deadline(seconds * 1000);
        while (!condition()) {
            if (deadline.hasExpired()) return false;
            QTest::qWait(1);
        }
        return true;
    }

    /// Waits for the one box that is open, answers it, and returns what it said.
    std::string answer(QMessageBox::StandardButton button) {
        if (!waitFor([&] { return !openBoxes().isEmpty(); })) return "no box came";
        QMessageBox* box = openBoxes().front();
        const std::string text = box->text().toStdString();
        QTest::mouseClick(box->button(button), Qt::LeftButton);
        return text;
    }
    void pressStart(QMessageBox::StandardButton once) {
        click("cmdStartDir");
        EXPECT_EQ(answer(once), "Would you like to run one full pass once without running continuously?");
    }
    void trigger(const char* action) { find<QAction>(action)->trigger(); }

    bool isIdle() const { return !program->engine().state.PassInProgress; }
    bool isEnabled(const char* button) const { return find<QPushButton>(button)->isEnabled(); }
    bool reachesMode(const std::string& text) {
        return waitFor([&] { return textOf("lblMode") == text; });
    }
    bool isStopped() {
        return reachesMode("Mode: Stopped") && isEnabled("cmdStartDir") && !isEnabled("cmdStopDir") && isIdle();
    }
    bool hasLogged(const std::string& text) const { return profile.log().find(text) != std::string::npos; }
    void drop(const std::string& name, const std::string& bytes = "bytes") {
        writeFile(profile.in + "/" + name, bytes);
    }
    void expectCarried(const std::string& name) {
        EXPECT_TRUE(std::filesystem::exists(profile.out + "/" + name + ".enc")) << name;
        EXPECT_TRUE(std::filesystem::exists(profile.done + "/" + name)) << name;
        EXPECT_FALSE(std::filesystem::exists(profile.in + "/" + name)) << name;
    }
    TemporaryFolder folder;
    // Longer than the address of a socket can be.
    Profile profile{folder.makeFolder(std::string(120, 'p'))};
    ShiftedClock clock;
    QtTimers timers;
    std::optional<Program> program;
};

inline constexpr std::uint64_t kMiB = 1024 * 1024;

}  // namespace vantrell::test
