// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "simulation/checker.h"

namespace vantrell::test {

/// Puts files in, and does what other programs do with the files of the four folders while ours is at work. They keep
/// within what is promised: a writer that no lease shows never pauses for as long as the quiet time.
class Actors {
public:
    using Trace = std::function<void(const std::string& line)>;

    /// All of it outlives the actors.
    Actors(World& world, Checker& checker, Chance& chance, const Hazards& hazards, const Trace& trace);

    void putFirstFiles();
    /// One deed, and what writers at work have to do by now. Gives the sentence of a broken promise that shows in it.
    std::optional<std::string> act();
    [[nodiscard]] bool areWriting() const { return !writers_.empty(); }
    /// Writers at work write what they have to write by now.
    std::optional<std::string> write();
    /// The machine has lost its power, or the life becomes calm: nobody writes any more.
    void forget(bool closing);

private:
    struct Writer {
        std::string path;
        std::optional<std::size_t> held;
        unsigned left = 0;
        std::chrono::nanoseconds next{};
        Bytes last{};
    };
    enum class Way { append, rewrite };

    void told(const std::string& line) const {
        if (trace_) trace_("others " + line);
    }
    [[nodiscard]] std::string newContents();
    [[nodiscard]] bool isFolder(const std::string& path);
    [[nodiscard]] std::string someFile(const std::string& folder);
    void drop(const std::string& folder, const std::string& name);
    void put(const std::string& path, Where where);
    void takeFromSource();
    void renameIn();
    void beginWriting(const std::string& path);
    [[nodiscard]] bool isInDone(const Bytes& bytes);
    std::optional<std::string> writeOnce(Writer& writer);
    std::optional<std::string> collect();
    void swapFolder();

    World& world_;
    Checker& checker_;
    Chance& chance_;
    const Hazards& hazards_;
    const Trace& trace_;
    std::array<std::string, 4> names_;  ///< that files get in this life: few, so that they meet
    std::vector<Writer> writers_;
    unsigned lastContent_ = 0;
    bool isEmptyUsed_ = false;
};

}  // namespace vantrell::test
