// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "simulation/checker.h"
#include "simulation/simulated_program.h"

namespace vantrell::test {

/// What happened in some lives.
struct Tally {
    std::uint64_t lives = 0, runs = 0, kills = 0, cuts = 0, exits = 0, faults = 0, questions = 0, passes = 0, calls = 0;
    Tally& operator+=(const Tally& other);
};

/// One life of a machine: files are put in, the program runs, is ended in some way and begins anew on what is left, and
/// in the end, when nothing more goes wrong, everything must come to rest. The same seed, the same life.
class Life {
public:
    using Trace = std::function<void(const std::string& line)>;

    Life(std::uint64_t seed, const Hazards& hazards, Trace trace = {});

    /// The sentence of the first broken promise; nothing when all held.
    std::optional<std::string> run();
    [[nodiscard]] const Tally& tally() const { return tally_; }

private:
    enum class End { kill, cut, exit };

    void putFirstFiles();
    void drop(const std::string& folder, const std::string& name);
    std::string newContents();
    void planTrouble();
    void runProgram(std::size_t mostPasses);
    void begin();
    void end(End how);
    bool step();
    void passTime();
    void operate();
    void act();
    void note(std::optional<std::string> broken);
    void heard(const CallRecord& call);
    void watchPass(const std::string& line);

    World world_;
    Hazards hazards_;
    Trace trace_;
    Chance chance_;
    Checker checker_;
    std::unique_ptr<SimulatedProgram> program_;
    std::optional<std::string> broken_;
    Tally tally_;
    bool isCalm_ = false;
    std::uint64_t actsLeft_ = 0;  ///< of other programs
    std::size_t passes_ = 0;
    std::size_t ticks_ = 0;
    unsigned lastContent_ = 0;
    std::string question_;
};

}  // namespace vantrell::test
