// SPDX-License-Identifier: MIT
#pragma once

#include <openssl/types.h>

#include <array>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include "base/folded_name.h"
#include "simulation/world.h"

namespace vantrell::test {

/// Why a content, or its output, need not be there any more, or why something is not held against the program.
enum class Excuse : std::uint8_t {
    none,
    replacementAllowed,
    weeklyDelete,
    writersOwn,
    collected,
    killedBeforeTheNote,
    beforeTheFirstLine,
    notTheNewestLogs,
    logNotWritten,
    notSeenBySearch,
    inTheMomentOfTheMove,
    lostName,
    count
};
inline constexpr std::size_t kExcuses = static_cast<std::size_t>(Excuse::count);
/// In the order of the enumeration. Nothing else is excused.
inline constexpr std::array<const char*, kExcuses> kExcuseRows{
    "nothing is excused",
    "a newer file has taken its place, and the operator had allowed that for this file or for all",
    "it lay in Done for the days that were set, by the clock as it stood",
    "another program has itself changed, replaced or taken it",
    "its output was whole and was taken away by who collects outputs",
    "the program was killed between a flush that failed and the note of it",
    "what stands before the first line end of a log may be an editor's, and is left alone",
    "of the logs of other days only the newest earlier one is looked at",
    "a disk has said of this log that it could not be written, and has lost what was in it",
    "a file of the same name lay in a folder that could not be read when this one was carried",
    "another program changed it between the last look at it and its move, and it could not be put back, or the power "
    "was cut before",
    "a disk has lost a name of which it had said that it could not be written, and later that everything was"};

/// One content that was ever put in.
struct Content {
    Bytes bytes;
    std::string path;  ///< where it was put
    Where where = Where::source;
    Excuse excuse = Excuse::none;
    Excuse outputsExcuse = Excuse::none;
    std::uint64_t madeAt = 0;     ///< the number of the call before it
    std::set<unsigned> passes;    ///< that found it
    std::set<std::string> names;  ///< that it has borne in Source: one whose name is taken may come back under another
    bool hasLeftForGood = false;  ///< Source, since the pass in which it left has ended
};

/// Knows every content that was put in, and whether the promises hold: for what the running system sees, and for what
/// a cut of the power at this moment would leave. What it says of a broken promise is one sentence; nothing: all hold.
class Checker {
public:
    using Broken = std::optional<std::string>;

    explicit Checker(World& world);

    // What other programs and people do. They change files between `othersAct` and `othersActed`.
    void put(const std::string& path, Where where);
    /// What stands there is about to be changed or taken.
    void othersAct(const std::string& path);
    void othersActed();
    /// What lies there has another path from now on, and counts as if it had come anew.
    void pathsChange(const std::string& folder);
    /// Somebody is about to take an output away, and looks whether it is one.
    Broken collects(const std::string& path);
    /// Before they are saved.
    void settingsAre(const SettingsRecord& settings);
    void passwordIs(const std::string& password);
    /// The operator is about to save other passwords, and then has.
    void passwordsMayBe(const std::string& text);
    void passwordsAreSaved();
    void allowed(const std::string& question);

    // What the program does.
    void passBegins();
    Broken called(const CallRecord& call);
    Broken lineLogged(const std::string& line, Chance& chance);
    Broken questionAsked(const std::string& text);
    /// Of a cut at this moment.
    Broken afterCut(Chance& chance);
    /// After a cut, or when a disk was pulled out: what is left is all that there is from now on.
    Broken afterLoss();
    Broken afterEnd(bool wasKilled, bool isCut);
    /// At the end of a life in which nothing more went wrong.
    Broken atRest();

    /// Whether these bytes are known to stand in Done without an output.
    [[nodiscard]] bool isWithoutOutput(const Bytes& bytes);
    [[nodiscard]] const std::array<std::uint64_t, kExcuses>& excused() const { return excused_; }

private:
    using Id = int;
    static constexpr Id kUnknown = -1;
    struct Known {
        Bytes bytes;
        Id content = kUnknown;   ///< that these bytes are
        Id original = kUnknown;  ///< of which they are the output
        std::string password;
    };
    struct File {
        Where where;
        std::string path;
        Bytes bytes;
        const Known* known;
        [[nodiscard]] Id content() const { return known->content; }
        [[nodiscard]] Id original() const { return known->original; }
    };
    struct Publication {
        std::string folder;
        std::string key;  ///< the name, as the disk sees it
        Id original = kUnknown;
        unsigned pass = 0;
    };
    using State = std::vector<File>;
    using Copies = std::deque<SimulatedDisk>;
    struct Found {
        std::uint8_t places = 0;  ///< a bit for each Where
        bool isInPlace = false;
    };

    [[nodiscard]] State stateOf(const Copies& disks);
    void collect(const SimulatedDisk& disk, Node folder, const std::string& path, Where where, State& into);
    [[nodiscard]] bool isRegion(const std::string& path) const;
    [[nodiscard]] const Known& identify(const Bytes& bytes, bool maybeOutput);
    [[nodiscard]] Copies cutCopy(Chance& chance) const;
    [[nodiscard]] std::vector<Found> find(const State& state) const;
    static bool isIn(const Found& found, Where where) {
        return (found.places >> static_cast<unsigned>(where) & 1U) != 0;
    }
    [[nodiscard]] Content& at(Id id) { return contents_[static_cast<std::size_t>(id)]; }
    [[nodiscard]] const Content& at(Id id) const { return contents_[static_cast<std::size_t>(id)]; }
    [[nodiscard]] std::string keyOf(const std::string& name) const;
    void excuse(Excuse& of, Excuse why);

    [[nodiscard]] Broken check(const State& state);
    [[nodiscard]] Broken checkContents(const std::vector<Found>& found) const;
    [[nodiscard]] Broken checkOutputs(const State& state, const std::vector<Found>& found) const;
    [[nodiscard]] Broken checkOriginals(const State& state, const std::vector<Found>& found) const;
    [[nodiscard]] static bool hasBorne(const Content& content, const std::string& name);
    [[nodiscard]] bool isLaterOutput(const std::string& key, Id earlier, Id later) const;
    [[nodiscard]] Broken checkData(const Copies& disks) const;

    [[nodiscard]] Broken afterFullDisk(const std::string& line);
    void passHasEnded();
    [[nodiscard]] bool hasNamesake(const Content& content) const;
    void watchFaults(const CallRecord& call);
    [[nodiscard]] bool isFlushFaultUnnoted() const;
    void excuseFresh(const std::vector<Found>& found);
    /// What was changed in the moment of its move is put back at once.
    [[nodiscard]] bool isFresh(const Content& content) const;
    Broken judgeChanges(const State& now);
    void leavesSource(Id content, const State& now);
    Broken judge(const File& before, const File* after, const std::vector<Found>& found);
    Broken judgeNew(const File& file, const std::vector<Found>& found);
    [[nodiscard]] bool mayReplace(const File& before, const File& after, const Found& older) const;
    [[nodiscard]] bool isOldEnough(const File& file) const;
    void adopt(State state);
    [[nodiscard]] Broken checkLogs();

    World& world_;
    std::unique_ptr<EVP_CIPHER_CTX, void (*)(EVP_CIPHER_CTX*)> context_;
    std::vector<Content> contents_;
    std::set<std::string> settings_, passwords_, allowed_;
    std::vector<std::pair<std::string, Excuse>> passwordFiles_;
    std::string password_;
    bool isPasswordOfThePass_ = true;
    SettingsRecord inForce_, ofThePass_;
    bool mayOverwrite_ = false;
    std::size_t outside_ = 0;
    unsigned passes_ = 0;
    unsigned firstPassOfRun_ = 1;
    bool hasFlushFailed_ = false;      ///< since the pass began
    std::uint64_t flushFailedAt_ = 0;  ///< the call; 0 when it is noted
    bool isNameLost_ = false;
    std::set<Id> withoutRoom_;  ///< in Source when an output found no room just now
    bool isExcused_ = false;
    State before_;
    std::map<std::string, std::chrono::nanoseconds> arrivals_;  ///< in Done
    std::vector<Publication> published_;                        ///< in their order
    std::map<std::string, std::uint64_t> lines_;
    std::set<std::string> unwrittenLogs_;
    std::unordered_map<const std::string*, Known> known_;
    std::array<std::uint64_t, kExcuses> excused_{};
};

}  // namespace vantrell::test
