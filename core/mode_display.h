// SPDX-License-Identifier: MIT
#pragma once

#include "core/main_window.h"
#include "core/program_state.h"
#include "platform/timers.h"

namespace vantrell {

/// The mode follows from the scan timer and the pass; the label and the two buttons follow from the mode.
class ModeDisplay {
public:
    ModeDisplay(const ProgramState& state, MainWindow& window, Timer& timRun)
        : state_(state), window_(window), timRun_(timRun) {}

    /// Stopped, automatic or running.
    [[nodiscard]] Mode mode() const {
        if (timRun_.isEnabled()) return Mode::automatic;
        return state_.PassInProgress ? Mode::running : Mode::stopped;
    }

    void tmchkTimer_Timer() {
        const Mode now = mode();
        window_.setMode(now);
        window_.setStartEnabled(now == Mode::stopped);
        window_.setStopEnabled(now != Mode::stopped);
    }

    /// How often processing has been switched on or off, by whomever.
    [[nodiscard]] unsigned switches() const { return switches_; }

    void TurnOffTimRun() { setTimRun(false); }
    /// Does nothing while processing is held.
    void TurnOnTimRun() {
        if (!isHeld_) setTimRun(true);
    }
    /// Switches processing off and keeps it off, whoever would switch it on, until it is let go.
    void hold() {
        isHeld_ = true;
        setTimRun(false);
    }
    void letGo() { isHeld_ = false; }

private:
    void setTimRun(bool enabled) {
        ++switches_;
        timRun_.setEnabled(enabled);
        tmchkTimer_Timer();
    }

    const ProgramState& state_;
    MainWindow& window_;
    Timer& timRun_;
    unsigned switches_ = 0;
    bool isHeld_ = false;
};

}  // namespace vantrell
