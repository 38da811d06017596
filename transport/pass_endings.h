// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

#include "transport/pass_parts.h"

namespace vantrell {

/// How a pass ends: what is shown and logged, and what is put in order.
class PassEndings {
public:
    /// The caption of an ending that a person has to see to.
    static constexpr char kProblem[] = "Problem.... ";

    explicit PassEndings(PassParts parts) : p_(parts) {}

    /// The next tick of the timer goes on, unless it was one full pass. `trouble` and `words` say what an operator who
    /// does not look at the window should know; `rejected` is the number of files that this pass has rejected.
    void paused(bool goesOn, Trouble trouble, const std::string& words, std::uint64_t rejected);
    void stopped(std::uint64_t rejected);
    void missingFolders(const std::string& words, std::uint64_t rejected);
    void noPassword(std::uint64_t rejected);

private:
    using Then = Notices::Then;
    void finish(Then then, Trouble trouble, const std::string& words, std::uint64_t rejected);

    PassParts p_;
};

}  // namespace vantrell
