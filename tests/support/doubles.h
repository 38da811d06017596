// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "core/main_window.h"
#include "housekeeping/weekly_delete_window.h"
#include "passwords/password_window.h"
#include "platform/host.h"
#include "platform/notifier.h"
#include "platform/source_claim.h"
#include "platform/startup_entry.h"
#include "platform/tray.h"
#include "rig/settable_clock.h"

namespace vantrell::test {

/// A main window that remembers what it was told.
class RecordingWindow final : public MainWindow {
public:
    void setCaption(const std::string& text) override { caption = text; }
    void setLabel2(const std::string& text) override { label2 = text; }
    void setPanel1(const std::string& text) override { panel1.push_back(text); }
    void setWarning(const std::string& text) override { warning = text; }
    void setMode(Mode) override {}
    void setClock(const std::string& text) override { clock = text; }
    void setSchedule(const std::string&) override {}
    void setStartEnabled(bool) override {}
    void setStopEnabled(bool) override {}
    void setWaitPointer(bool waiting) override { waitPointer = waiting; }
    void setCurrentFile(const std::string&) override {}
    void setLastFile(const std::string&) override {}
    void setTotalFiles(std::uint64_t count) override { totalFiles = count; }
    void setProcessedCount(std::int32_t count) override { processed = count; }
    void setPassProgress(std::uint64_t, std::uint64_t) override {}
    void setFileProgress(std::uint64_t, std::uint64_t) override {}
    void setStopping(bool isIt) override { stopping = isIt; }
    void clearProgress() override { stopping = false; }
    void setFolder(FolderKind kind, const Path& folder) override { folders[kind] = folder; }
    void offerFolder(FolderKind kind, const Path& lost) override { offered[kind] = lost; }
    void setMinutes(const std::string& text) override { minutes = text; }
    void finishEditing() override {}
    void showSettings(const SettingsRecord& settings) override { shown = settings; }
    void setStartupEntry(StartupEntry::State state) override { entry = state; }
    void activityJoined() override {}
    [[nodiscard]] bool isActivityShown() const override { return activityShown; }
    void setActivityShown(bool value) override { activityShown = value; }
    void showWindow() override { visible = true; }
    void hideWindow() override { visible = false; }
    void minimizeWindow() override { minimizedState = true; }
    void closeWindow() override {}
    void setNormalState() override { minimizedState = false; }
    [[nodiscard]] bool isMinimized() const override { return minimizedState; }
    [[nodiscard]] bool isSeen() const override { return visible && !minimizedState; }
    void setNormalSize() override {}
    void bringToFront() override {}
    void showAbout(const AboutFacts&) override {}

    std::string caption, label2, minutes, warning, clock;
    std::vector<std::string> panel1;
    std::map<FolderKind, Path> folders, offered;
    SettingsRecord shown;
    StartupEntry::State entry = StartupEntry::State::none;
    bool waitPointer = false, activityShown = false, visible = false, minimizedState = false, stopping = false;
    std::uint64_t totalFiles = 0;
    std::int32_t processed = 0;
};

/// The window of the password editor, without a screen.
class FakePasswordWindow final : public PasswordWindow {
public:
    [[nodiscard]] std::string enteredPassword() const override { return text; }
    void setEnteredPassword(const std::string& password) override { text = password; }
    [[nodiscard]] bool isActiveSet() const override { return active; }
    void setActiveSet(bool set) override { active = set; }
    void showRows(const std::vector<PasswordRow>& list) override {
        rows.clear();
        for (const PasswordRow& row : list) rows.push_back(row.password + (row.activeText == "True" ? "=1" : "=0"));
        selected.reset();
    }
    [[nodiscard]] std::optional<std::size_t> selectedRow() const override { return selected; }
    void showControls(const PasswordControls& controls) override {
        shown.clear();
        if (controls.add) shown += "Add ";
        if (controls.edit) shown += "Edit ";
        if (controls.erase) shown += "Delete ";
        if (controls.active) shown += "Active ";
    }
    void setNote(const std::string& sentence) override { note = sentence; }
    void focusPassword() override { focus = "txtpassword"; }
    void focusActive() override { focus = "chkActive"; }
    void showWindow() override { isOpen = true; }
    void closeWindow() override { isOpen = false; }

    std::string text, note, focus, shown;
    bool active = false, isOpen = false;
    std::vector<std::string> rows;
    std::optional<std::size_t> selected;
};

class FakeWeeklyWindow final : public WeeklyDeleteWindow {
public:
    void fillLists(const WeeklyLists&) override {}
    void select(const WeeklyChoice&) override {}
    void setClock(const std::string&) override {}
    void showCentred() override {}
    void bringToFront() override {}
    void closeWindow() override {}
};

class FakeHost final : public Host {
public:
    explicit FakeHost(Path profileFolder = {}) : profile(std::move(profileFolder)) {}
    [[nodiscard]] Path profileFolder() const override { return profile; }
    [[nodiscard]] Path programFolder() const override { return "/opt/vantrell"; }
    bool startProgram(const Path& file) override {
        started.push_back(file);
        return true;
    }
    bool startFromSearchPath(const std::string&, const std::vector<std::string>&) override { return false; }
    [[nodiscard]] std::string environment(const std::string& name) const override {
        const auto found = variables.find(name);
        return found == variables.end() ? std::string() : found->second;
    }
    Path profile;
    std::vector<Path> started;
    std::map<std::string, std::string> variables;
};

class FakeTray final : public Tray {
public:
    [[nodiscard]] bool isAvailable() const override { return true; }
    void add(const std::string&) override {}
    void remove() override {}
};

class FakeStartupEntry final : public StartupEntry {
public:
    [[nodiscard]] State state() const override { return present; }
    bool add() override {
        present = State::works;
        return true;
    }
    bool remove() override {
        present = State::none;
        return true;
    }
    State present = State::none;
};

class RecordingNotifier final : public Notifier {
public:
    void show(const std::string& title, const std::string& text, Urgency) override {
        shown.push_back(title + ": " + text);
    }
    void click() { wasClicked(); }
    void withdraw() override { ++withdrawn; }
    std::vector<std::string> shown;
    int withdrawn = 0;
};

class FakeInstanceLock final : public InstanceLock {
public:
    Outcome tryLock(const Path&) override { return outcome; }
    Outcome outcome = Outcome::locked;
};

class FakeSourceClaim final : public SourceClaim {
public:
    Outcome claim(const Path& folder) override {
        claimed = outcome == Outcome::held ? folder : Path();
        return outcome;
    }
    void release() override { claimed.clear(); }
    Outcome outcome = Outcome::held;
    Path claimed;
};

}  // namespace vantrell::test
