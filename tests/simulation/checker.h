// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "base/folded_name.h"
#include "simulation/world.h"

namespace vantrell::test {

/// Why a content need not be there any more. Nothing else is excused.
enum class Excuse {
    none,
    replaced,         ///< by a newer file of its name, and replacing was allowed
    changedByOthers,  ///< another program has rewritten, moved or removed it
};

/// One content that was ever put in.
struct Content {
    std::string bytes;
    std::string path;  ///< where it was put
    Where where = Where::source;
    Excuse excuse = Excuse::none;
    std::set<unsigned> passes;  ///< at whose beginning it lay in Source
    bool hasLeft = false;       ///< Source
    std::string successor{};    ///< the name of what has replaced it
};

/// Knows every content that was put in, and whether the promises hold: for what the running system sees, and for what
/// a cut of the power at this moment would leave.
class Checker {
public:
    explicit Checker(World& world);

    // What happens besides the program.
    void put(const std::string& path, Where where, const std::string& bytes);
    void passBegins();
    /// Another program has taken away or changed what stands there.
    void touchedByOthers(const std::string& path);
    void collected(const std::string& name) { collected_.insert(foldedName(name)); }
    /// The operator has answered Yes for a file of this name.
    void allowed(const std::string& name) { allowed_.insert(name); }
    void settingsMayBe(const std::string& line) { settings_.insert(line); }
    void passwordIs(const std::string& password) { passwords_.insert(password); }

    // Each gives the sentence of a broken promise, or nothing.
    std::optional<std::string> now();
    std::optional<std::string> afterCut(Chance& chance) const;
    std::optional<std::string> lineLogged(const std::string& line, Chance& chance);
    std::optional<std::string> questionAsked(const std::string& text) const;
    /// At the end of a life in which nothing more went wrong.
    std::optional<std::string> atRest();

private:
    using Broken = std::optional<std::string>;
    struct File {
        std::string path;
        const std::string* bytes;
    };
    /// What lies in the folders, on the disks as they are or as copies of them would be left.
    struct State {
        std::array<std::vector<File>, 6> files;
        [[nodiscard]] const std::vector<File>& in(Where where) const { return files[static_cast<std::size_t>(where)]; }
    };
    struct Region {
        std::size_t disk;
        Node node;
        std::string path;
    };

    [[nodiscard]] State stateOf(const std::deque<SimulatedDisk>& disks) const;
    void collect(const SimulatedDisk& disk, Node folder, const std::string& path, Where where, State& into) const;
    [[nodiscard]] std::deque<SimulatedDisk> cutCopy(Chance& chance) const;
    [[nodiscard]] bool stands(const State& state, Where where, const std::string& bytes) const;
    [[nodiscard]] Broken check(const State& state, bool isCut) const;
    [[nodiscard]] Broken contents(const State& state) const;
    [[nodiscard]] Broken outputs(const State& state) const;
    [[nodiscard]] Broken originals(const State& state) const;
    [[nodiscard]] Broken foreign(const State& state) const;
    [[nodiscard]] Broken dataFolder(const State& state) const;
    [[nodiscard]] bool isAllowed(const std::string& name) const;
    void excuseReplaced(const State& state);
    [[nodiscard]] bool mayBeReplacedBy(const Content& old, const Content& newer) const;
    [[nodiscard]] bool isOutputOf(const std::string& bytes, const Content& content) const;
    [[nodiscard]] const Content* contentOf(const std::string& bytes) const;
    [[nodiscard]] bool isSame(const std::string& one, const std::string& other) const;

    World& world_;
    std::array<Region, 6> regions_;
    std::vector<Content> contents_;
    std::set<std::string> collected_, allowed_, settings_, passwords_;
    unsigned passes_ = 0;
    mutable std::map<std::pair<std::string, std::string>, std::string> outputs_;  ///< by password and contents
};

}  // namespace vantrell::test
