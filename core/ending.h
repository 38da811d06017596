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

    /// Ends it at once and says nothing: its tasks are destroyed, which undoes what they had only half done, its
    /// questions are taken back and its windows close. Must not be called from within one of its own tasks.
    virtual void abort() = 0;
};

/// How the other rooms end the program.
class ProgramEnd {
public:
    ProgramEnd() = default;
    ProgramEnd(const ProgramEnd&) = delete;
    ProgramEnd& operator=(const ProgramEnd&) = delete;
    virtual ~ProgramEnd() = default;

    /// Saves settings and log, and changes nothing else, since the end of the session may still be called off.
    virtual void saveAll() = 0;
    /// The full closing, for every reason but the close box. Not to be called from within a task.
    virtual void closeForGood() = 0;
};

}  // namespace vantrell
