// SPDX-License-Identifier: MIT
#include "simulation/life.h"

#include <algorithm>

#include "core/data_folder.h"

namespace vantrell::test {

namespace {

constexpr std::chrono::hours kLongestPass{2};
constexpr std::chrono::seconds kLongestStep{20};
constexpr std::array kFolders{Where::source, Where::destination, Where::done, Where::rejected, Where::data};

template <std::size_t Count>
void add(std::array<std::uint64_t, Count>& to, const std::array<std::uint64_t, Count>& more) {
    for (std::size_t i = 0; i < Count; ++i) to[i] += more[i];
}

}  // namespace

Tally& Tally::operator+=(const Tally& other) {
    for (const auto count : {&Tally::lives, &Tally::runs, &Tally::kills, &Tally::cuts, &Tally::exits, &Tally::questions,
                             &Tally::passes, &Tally::calls})
        this->*count += other.*count;
    add(faults, other.faults);
    add(excused, other.excused);
    return *this;
}

Life::Life(std::uint64_t seed, const Hazards& hazards, Trace trace)
    : hazards_(hazards),
      world_(seed, hazards),
      trace_(std::move(trace)),
      chance_(world_.chance.split()),
      checker_(world_),
      actors_(world_, checker_, chance_, hazards_, trace_),
      hasOthers_(chance_.oneIn(hazards.others)),
      hasPeople_(chance_.oneIn(hazards.people)) {
    checker_.passwordIs(password_);
    world_.kernel.afterCall = [this](const CallRecord& call) { heard(call); };
}

void Life::note(std::optional<std::string> broken) {
    if (!broken || broken_) return;
    broken_ = std::move(broken);
    tell("BROKEN: " + *broken_);
}

// What happens

void Life::heard(const CallRecord& call) {
    if (trace_) {
        const auto passed = std::chrono::floor<std::chrono::milliseconds>(world_.clock.sinceBoot());
        trace_(std::to_string(passed.count()) + " ms: " + call.line());
    }
    if (broken_ || isActing_) return;
    if (program_) checker_.settingsAre(program_->engine.state.settings);
    note(checker_.called(call));
    const bool isFlush = call.call == Call::fsync || call.call == Call::fdatasync || call.call == Call::startFlush;
    if (isFlush && call.answer != 0 && !isCalm_ && chance_.oneIn(3))
        world_.kernel.killAt(world_.kernel.calls() + 1 + chance_.below(100));
    if (call.changed == Changed::names && namesToKill_ > 0 && call.path().starts_with(namesBelow_ + "/") &&
        --namesToKill_ == 0)
        world_.kernel.killAt(world_.kernel.calls() + 1 + chance_.below(3));
    const bool isRisky = call.changed == Changed::names || call.changed == Changed::contents;
    if (isRisky && chance_.oneIn(16)) note(checker_.afterCut(chance_));
    if (!isCalm_ && hasOthers_ && chance_.oneIn(hazards_.betweenCalls)) act();
}

void Life::act() {
    isActing_ = true;
    note(chance_.oneIn(2) ? actors_.write() : actors_.act());
    isActing_ = false;
}

// A pass over nothing can begin and end within one turn, but not without a word.
void Life::said(const std::string& line) {
    tell("says " + line);
    if (broken_ || world_.kernel.isDead()) return;
    const auto says = [&](const char* words) { return line.find(words) != std::string::npos; };
    if (says("Please Wait Encrypting files.")) {
        checker_.settingsAre(program_->engine.state.settings);
        checker_.passBegins();
    }
    isAskedToChoose_ |= isCalm_ && says("Choose it again");
    const bool isOver = says("ZEP Is PAUSED at ") || says("User Stopped Encrypting Files") ||
                        says("Source, Destination or Done Folders are missing");
    passes_ += isOver ? 1 : 0;
    tally_.passes += isOver ? 1 : 0;
    note(checker_.lineLogged(line, chance_));
}

void Life::asked(Ticket<Answer> ticket, const Box& box) {
    tell("asks " + box.text);
    if (broken_ || world_.kernel.isDead()) return;
    ++tally_.questions;
    note(checker_.questionAsked(box.text));
    const bool isYes = chance_.oneIn(2);
    const bool isDismissed = !isYes && !isCalm_ && chance_.oneIn(4);
    const std::chrono::milliseconds wait(chance_.oneIn(4) ? chance_.below(600'000) : chance_.below(3000));
    program_->loop.later(wait, [this, ticket, box, isYes, isDismissed] {
        if (!program_->boxes.isOpen(ticket)) return;
        if (isYes) checker_.allowed(box.text);
        tell(isYes ? "answered with Yes" : isDismissed ? "dismissed" : "answered with No");
        program_->boxes.answer(ticket, box.buttons == Buttons::ok ? Answer::ok
                                       : isYes                    ? Answer::yes
                                       : isDismissed              ? Answer::dismissed
                                                                  : Answer::no);
    });
}

// A run of the program

void Life::planFault() {
    constexpr std::array kCalls{Call::openat,   Call::write,   Call::linkat,     Call::linkOpenFile, Call::renameat2,
                                Call::unlinkat, Call::mkdirat, Call::fsync,      Call::fdatasync,    Call::startFlush,
                                Call::openat2,  Call::pread,   Call::statx,      Call::fstatat,      Call::ftruncate,
                                Call::setLease, Call::read,    Call::getdents64, Call::fstatfs,      Call::futimens,
                                Call::fstat,    Call::pwrite,  Call::flock,      Call::fchmod,       Call::any};
    constexpr std::array kErrors{EIO, ENOSPC, EACCES, EMFILE, ENOMEM, EROFS, EPERM, EAGAIN, ESTALE, EBUSY, ENXIO};
    PlannedFault fault;
    fault.call = chance_.pick(kCalls);
    fault.error = chance_.pick(kErrors);
    // Of a lease it would say that somebody writes.
    const bool isLease = fault.call == Call::setLease || fault.call == Call::any;
    if (isLease && fault.error == EAGAIN) fault.error = EIO;
    fault.from = world_.kernel.calls() + 1 + chance_.below(400);
    fault.times = chance_.oneIn(2) ? 1 : chance_.oneIn(2) ? 1 + chance_.below(5) : PlannedFault::kAlways;
    if (!chance_.oneIn(4)) fault.below = world_.folder(chance_.pick(kFolders));
    const bool isFlush = fault.call == Call::fsync || fault.call == Call::fdatasync || fault.call == Call::startFlush;
    if (isFlush && !chance_.oneIn(3)) fault.error = EIO;
    fault.losesData = isFlush && fault.error == EIO && !chance_.oneIn(4);
    tell("from call " + std::to_string(fault.from) + " on " + nameOf(fault.call) + " fails below " + fault.below +
         ", error " + std::to_string(fault.error) +
         (fault.times == 1  ? ", once"
          : fault.losesData ? ", and loses data"
                            : ""));
    world_.kernel.faults.push_back(std::move(fault));
}

void Life::planTrouble() {
    SimulatedKernel& kernel = world_.kernel;
    if (!chance_.oneIn(4)) kernel.killAt(kernel.calls() + 1 + chance_.below(std::uint64_t{32} << chance_.below(6)));
    namesToKill_ = chance_.oneIn(hazards_.killsAtNames) ? 1 + static_cast<unsigned>(chance_.below(8)) : 0;
    namesBelow_ = world_.folder(chance_.pick(kFolders));
    if (chance_.oneIn(hazards_.faults)) planFault();
    if (chance_.oneIn(hazards_.shortCalls)) kernel.shortOneIn = 3;
    if (chance_.oneIn(hazards_.shortCalls)) kernel.interruptOneIn = 5;
    if (chance_.oneIn(hazards_.clockJumps)) setClock();
    isVanishing_ = chance_.oneIn(hazards_.vanishing);
    if (chance_.oneIn(8)) {
        // Nobody pauses for that long in the middle of a file.
        actors_.forget(true);
        world_.clock.advance(std::chrono::hours(chance_.below(240)));
    }
    if (!chance_.oneIn(hazards_.fullDisk)) return;
    SimulatedDisk& disk = world_.diskOf(chance_.pick(kFolders));
    disk.traits.capacity = disk.used() + chance_.below(200);
}

void Life::setClock() {
    const auto minutes = std::chrono::minutes(chance_.below(40'000));
    const bool isForwards = chance_.oneIn(2);
    tell("== the clock is set " + std::string(isForwards ? "forwards" : "back"));
    world_.clock.jump(isForwards ? minutes : -minutes);
}

void Life::begin() {
    ++tally_.runs;
    program_ = std::make_unique<SimulatedProgram>(world_.clock, world_.kernel, world_.profile, password_);
    program_->lines.told = [this](const std::string& line) { said(line); };
    program_->boxes.asked = [this](Ticket<Answer> ticket, const Box& box) { asked(ticket, box); };
    passes_ = 0;
    program_->engine.start();
}

void Life::live(std::size_t mostPasses) {
    begin();
    std::size_t before = passes_;
    std::chrono::nanoseconds longest = world_.clock.sinceBoot() + kLongestPass;
    while (passes_ < mostPasses && step()) {
        if (passes_ != before || program_->boxes.areOpen()) longest = world_.clock.sinceBoot() + kLongestPass;
        before = passes_;
        if (world_.clock.sinceBoot() <= longest) continue;
        // There is no pass where the settings could not be read.
        if (!isCalm_ && program_->engine.state.anyFolderIsEmpty()) return;
        note("a pass does not end, or the next one does not begin");
    }
}

bool Life::step() {
    if (world_.kernel.isDead() || broken_ || program_->hasQuit) return false;
    if (!isCalm_ && hasOthers_ && chance_.oneIn(12)) act();
    if (!isCalm_ && hasPeople_ && chance_.oneIn(20)) operate();
    // One that goes while a file is at work is noticed with the next file.
    if (isVanishing_ && !program_->engine.state.PassInProgress && chance_.oneIn(10)) vanish();
    if (!isCalm_ && chance_.oneIn(50 * hazards_.clockJumps)) setClock();
    if (program_->hasQuit || program_->loop.turn(chance_)) return true;
    if (hasOthers_) note(actors_.write());
    keepGoing();
    program_->loop.passTime(actors_.areWriting() ? std::chrono::milliseconds(500) : kLongestStep);
    return true;
}

// A disk goes without a word, or comes back. Before the first pass nobody knows where the folders lie.
void Life::vanish() {
    if (world_.others().at(world_.dataFile(kFolderMountsName)).node == kNoNode) return;
    if (world_.isAnyOut()) {
        tell("== a disk is back");
        return world_.plugIn();
    }
    if (!world_.pullOut(chance_.pick(kFolders))) return;
    actors_.forget(true);  // nobody has a file on it open any more
    tell("== a disk is gone");
    note(checker_.afterLoss());
}

// Somebody presses Start when the program stands still.
void Life::keepGoing() {
    Engine& engine = program_->engine;
    if (std::exchange(isAskedToChoose_, isAskedToChoose_ && engine.state.PassInProgress)) chooseAgain();
    if (engine.timRun->isEnabled() || engine.state.PassInProgress || program_->boxes.areOpen()) return;
    if (engine.activePassword.known().empty() && !engine.activePassword.isBeingLookedUp())
        engine.activePassword.set(password_);
    if (engine.state.anyFolderIsEmpty()) engine.fields.folderChosen(FolderKind::reject, world_.folder(Where::rejected));
    if (!chance_.oneIn(4)) return;
    tell("presses Start");
    engine.passes.takeStart(false);
    engine.mode.TurnOnTimRun();
}

// The operator

void Life::operate() {
    Engine& engine = program_->engine;
    switch (chance_.below(8)) {
        case 0:
            tell("presses Stop");
            return engine.controller.stopPressed();
        case 1:
            tell("presses Start");
            return engine.controller.startPressed();
        case 2:
            return changeFolder();
        case 3:
            tell("chooses overwriting");
            return engine.optionMenus.mnOW();
        case 4:
            password_ = chance_.oneIn(2) ? "secret" : "another secret";
            tell("makes active " + password_);
            checker_.passwordIs(password_);
            return engine.activePassword.set(password_);
        case 5:
            tell("ends the program");
            return engine.ending.closeForGood();
        default:
            return useMenus();
    }
}

// A run that never saw a disk takes the folder under its mount point for the right one.
void Life::chooseAgain() {
    const SettingsRecord settings = program_->engine.state.settings;
    tell("chooses all folders again");
    for (const auto& [kind, folder] : {std::pair(FolderKind::source, settings.SourceFolder),
                                       {FolderKind::destination, settings.DestinationFolder},
                                       {FolderKind::done, settings.DoneFolder},
                                       {FolderKind::reject, settings.RejectFolder}})
        program_->engine.fields.folderChosen(kind, folder);
}

void Life::changeFolder() {
    constexpr std::array kKinds{std::pair{FolderKind::destination, Where::destination},
                                std::pair{FolderKind::done, Where::done},
                                std::pair{FolderKind::reject, Where::rejected}};
    Engine& engine = program_->engine;
    const auto& [kind, where] = chance_.pick(kKinds);
    // What lies in Source, and is no longer set, is searched like the rest of it.
    if (world_.folder(where).starts_with(world_.folder(Where::source) + "/")) return;
    if (!engine.fields.folderPressed(kind)) return;
    const std::string folder = chance_.oneIn(2) ? world_.folder(where) : world_.otherFolder(where);
    tell("chooses " + folder);
    engine.fields.folderChosen(kind, folder);
}

void Life::useMenus() {
    Engine& engine = program_->engine;
    const std::uint64_t entry = chance_.below(7);
    tell("chooses menu entry " + std::to_string(entry));
    if (entry == 0) {
        const std::string text = "passwords " + std::to_string(++edits_);
        checker_.passwordsMayBe(text);
        if (program_->files.writeAtomically(world_.dataFile(kPasswordFileName), text).ok())
            checker_.passwordsAreSaved();
    }
    if (entry == 1) engine.backupMenus.mnBackup();
    if (entry == 2) engine.backupMenus.mnONLBackup();
    if (entry == 3) engine.backupMenus.mnuNBU();
    if (entry == 4) engine.backupMenus.mnuRPassOn();
    if (entry == 5) engine.backupMenus.mnuPassNormal();
    if (entry == 6) engine.weekly.mnDeleteDone();
}

// The end of a run

void Life::end(End how) {
    SimulatedKernel& kernel = world_.kernel;
    const bool wasKilled = kernel.isDead() || how != End::exit;
    if (!wasKilled && !program_->hasQuit) program_->engine.ending.closeForGood();
    kernel.killAt(0);
    namesToKill_ = 0;
    program_.reset();
    kernel.faults.clear();
    kernel.shortOneIn = kernel.interruptOneIn = 0;
    world_.makeRoom();
    isVanishing_ = false;
    world_.plugIn();
    if (how == End::cut) {
        kernel.powerCut(chance_);
        actors_.forget(false);
    } else {
        kernel.restart();
    }
    ++(how == End::cut ? tally_.cuts : wasKilled ? tally_.kills : tally_.exits);
    tell(how == End::cut ? "== the power is cut" : wasKilled ? "== killed" : "== ended");
    if (!broken_) note(checker_.afterEnd(wasKilled, how == End::cut));
}

void Life::becomeCalm() {
    isCalm_ = true;
    actors_.forget(true);
    tell("== from here on nothing goes wrong");
}

std::optional<std::string> Life::run() {
    actors_.putFirstFiles();
    for (std::uint64_t left = 1 + chance_.below(3); left > 0 && !broken_; --left) {
        planTrouble();
        live(1 + chance_.below(3));
        const bool isOver = world_.kernel.isDead() || program_->hasQuit;
        const std::uint64_t how = chance_.below(3);
        end(how == 0 && !isOver ? End::exit : how == 1 ? End::kill : End::cut);
    }
    becomeCalm();
    if (!broken_) {
        live(5);
        end(End::exit);
        if (!broken_) note(checker_.atRest());
    }
    ++tally_.lives;
    tally_.calls = world_.kernel.calls();
    tally_.faults = world_.kernel.faultsMet;
    tally_.excused = checker_.excused();
    return broken_;
}

}  // namespace vantrell::test
