// SPDX-License-Identifier: MIT
#pragma once

namespace vantrell {

/// Something that may be at work, or open, when the program ends.
class Endable {
public:
    Endable() = default;
    Endable(const Endable&) = delete;
    Endable& operator=(const Endable&) = delete;
    virtual ~Endable() = default;

    /// Ends it at once, without a word: tasks are destroyed, which undoes what is not whole; questions are withdrawn,
    /// windows close. Not to be called from within one of its tasks.
    virtual void abort() = 0;
};

/// How the other rooms end the program.
class ProgramEnd {
public:
    ProgramEnd() = default;
    ProgramEnd(const ProgramEnd&) = delete;
    ProgramEnd& operator=(const ProgramEnd&) = delete;
    virtual ~ProgramEnd() = default;

    /// Writes down settings and log, and nothing else: the session may be about to end, or not after all.
    virtual void saveAll() = 0;
    /// The full closing, for every reason but the close box. Not to be called from within a task.
    virtual void closeForGood() = 0;
};

}  // namespace vantrell
