// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "simulation/actors.h"
#include "simulation/simulated_program.h"

namespace vantrell::test {

/// What happened in some lives.
struct Tally {
    std::uint64_t lives = 0, runs = 0, kills = 0, cuts = 0, exits = 0, questions = 0, passes = 0, calls = 0;
    std::array<std::uint64_t, static_cast<std::size_t>(Call::count)> faults{};  ///< by the call that failed
    std::array<std::uint64_t, kExcuses> excused{};
    Tally& operator+=(const Tally& other);
};

/// One life of a machine: files are put in, the program runs, is ended in some way and begins anew on what is left, and
/// in the end, when nothing more goes wrong, everything must come to rest. The same seed, the same life.
class Life {
public:
    using Trace = Actors::Trace;

    Life(std::uint64_t seed, const Hazards& hazards, Trace trace = {});

    /// The sentence of the first broken promise; nothing when all held.
    std::optional<std::string> run();
    [[nodiscard]] const Tally& tally() const { return tally_; }

private:
    enum class End { kill, cut, exit };

    void note(std::optional<std::string> broken);
    void tell(const std::string& line) const {
        if (trace_) trace_(line);
    }
    void heard(const CallRecord& call);
    void said(const std::string& line);
    void asked(Ticket<Answer> ticket, const Box& box);
    void act();

    void planTrouble();
    void setClock();
    void planFault();
    void begin();
    void live(std::size_t mostPasses);
    [[nodiscard]] bool step();
    void operate();
    void chooseAgain();
    void changeFolder();
    void useMenus();
    void vanish();
    void keepGoing();
    void end(End how);
    void becomeCalm();

    Hazards hazards_;
    World world_;
    Trace trace_;
    Chance chance_;
    Checker checker_;
    Actors actors_;
    std::unique_ptr<SimulatedProgram> program_;
    std::optional<std::string> broken_;
    Tally tally_;
    std::string password_ = "secret";
    bool isCalm_ = false;
    bool isVanishing_ = false;
    bool isAskedToChoose_ = false;
    bool hasOthers_, hasPeople_;
    bool isActing_ = false;
    std::size_t passes_ = 0;  ///< of this run
    unsigned edits_ = 1;
    unsigned namesToKill_ = 0;  ///< so many names that change below the folder, and the program is killed; 0 never
    std::string namesBelow_;
};

}  // namespace vantrell::test
