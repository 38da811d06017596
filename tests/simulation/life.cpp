// SPDX-License-Identifier: MIT
#include "simulation/life.h"

#include <algorithm>

namespace vantrell::test {

namespace {

constexpr std::size_t kMostSteps = 60'000;
constexpr char kPassword[] = "secret";
constexpr std::array kNames{"a",     "b",       "A",           "report.pdf",        "Report.pdf",
                            "x.enc", ".hidden", "\xFF\xFEraw", "e\xCC\x81t\xC3\xA9"};

}  // namespace

Tally& Tally::operator+=(const Tally& other) {
    lives += other.lives;
    runs += other.runs;
    kills += other.kills;
    cuts += other.cuts;
    exits += other.exits;
    faults += other.faults;
    questions += other.questions;
    passes += other.passes;
    calls += other.calls;
    return *this;
}

Life::Life(std::uint64_t seed, const Hazards& hazards, Trace trace)
    : world_(seed, hazards),
      hazards_(hazards),
      trace_(std::move(trace)),
      chance_(world_.chance.split()),
      checker_(world_),
      actsLeft_(chance_.oneIn(hazards.others) ? chance_.below(80) : 0) {
    checker_.passwordIs(kPassword);
    world_.kernel.afterCall = [this](const CallRecord& call) { heard(call); };
}

void Life::note(std::optional<std::string> broken) {
    if (broken && !broken_) broken_ = std::move(broken);
    if (broken_ && trace_) trace_("BROKEN: " + *broken_);
}

void Life::heard(const CallRecord& call) {
    if (trace_) trace_(call.line());
    if (broken_ || call.changed == Changed::nothing || world_.kernel.isDead()) return;
    note(checker_.now());
    if (chance_.oneIn(12)) note(checker_.afterCut(chance_));
}

std::string Life::newContents() {
    std::string bytes = "content " + std::to_string(++lastContent_) + ":";
    const std::uint64_t kind = chance_.below(10);
    bytes.append(kind < 7 ? chance_.below(40) : 16 * chance_.below(4), 'x');
    if (chance_.oneIn(hazards_.largeFile)) bytes.append((std::size_t{1} << 20U) + chance_.below(1000), 'y');
    return bytes;
}

void Life::drop(const std::string& folder, const std::string& name) {
    const std::string path = folder + "/" + name;
    if (world_.others().at(path).node != kNoNode) return;
    const std::string bytes = newContents();
    if (!world_.others().makeFile(path, bytes)) {
        world_.others().remove(path);
        world_.others().flush(folder);
        return;
    }
    world_.others().flush(path);
    checker_.put(path, Where::source, bytes);
    if (trace_) trace_("others put " + path);
}

void Life::putFirstFiles() {
    const std::string& source = world_.folder(Where::source);
    const std::array<std::string, 3> folders{source, source + "/a", source + "/b"};
    for (std::uint64_t left = 1 + chance_.below(6); left > 0; --left) drop(chance_.pick(folders), chance_.pick(kNames));
    if (!chance_.oneIn(3)) return;
    const std::string name = chance_.pick(kNames);
    for (const auto& [where, path] :
         {std::pair{Where::destination, name + ".enc"}, {Where::done, name}, {Where::rejected, name}}) {
        if (!chance_.oneIn(2)) continue;
        const std::string full = world_.folder(where) + "/" + path;
        const std::string bytes = newContents();
        if (world_.others().at(full).node != kNoNode || !world_.others().makeFile(full, bytes)) continue;
        world_.others().flush(full);
        checker_.put(full, where, bytes);
    }
}

void Life::planTrouble() {
    SimulatedKernel& kernel = world_.kernel;
    kernel.faults.clear();
    world_.makeRoom();
    if (!chance_.oneIn(3)) kernel.killAt(kernel.calls() + 1 + chance_.below(chance_.oneIn(2) ? 150 : 900));
    if (!chance_.oneIn(hazards_.faults)) return;
    constexpr std::array kCalls{Call::openat,    Call::write,      Call::linkat,     Call::linkOpenFile,
                                Call::renameat2, Call::unlinkat,   Call::mkdirat,    Call::fsync,
                                Call::fdatasync, Call::startFlush, Call::startFlush, Call::pread,
                                Call::statx,     Call::fstatat,    Call::ftruncate,  Call::setLease};
    constexpr std::array kErrors{EIO, ENOSPC, EACCES, EMFILE, ENOMEM, EROFS, EPERM, EAGAIN, ESTALE};
    constexpr std::array kPlaces{Where::source, Where::destination, Where::done, Where::rejected, Where::data};
    PlannedFault fault;
    fault.call = chance_.pick(kCalls);
    fault.error = chance_.pick(kErrors);
    fault.from = kernel.calls() + 1 + chance_.below(300);
    fault.times = chance_.oneIn(2) ? 1 : chance_.oneIn(2) ? 1 + chance_.below(5) : PlannedFault::kAlways;
    if (!chance_.oneIn(4)) fault.below = world_.folder(chance_.pick(kPlaces));
    fault.losesData = fault.error == EIO && chance_.oneIn(2);
    if (fault.call == Call::setLease) fault.error = EACCES;
    kernel.faults.push_back(fault);
    if (chance_.oneIn(6)) kernel.shortOneIn = 3;
    if (chance_.oneIn(6)) kernel.interruptOneIn = 5;
    if (chance_.oneIn(6)) {
        SimulatedDisk& disk = world_.diskOf(chance_.pick(kPlaces));
        disk.traits.capacity = disk.used() + chance_.below(200);
    }
}

void Life::begin() {
    ++tally_.runs;
    program_ = std::make_unique<SimulatedProgram>(world_.clock, world_.kernel, world_.profile, kPassword);
    program_->lines.told = [this](const std::string& line) {
        if (trace_) trace_("says " + line);
        watchPass(line);
        if (!broken_ && !world_.kernel.isDead()) note(checker_.lineLogged(line, chance_));
    };
    program_->boxes.asked = [this](const Box& box) {
        ++tally_.questions;
        question_ = box.text;
        if (trace_) trace_("asks " + box.text);
        if (!broken_ && !world_.kernel.isDead()) note(checker_.questionAsked(box.text));
    };
    passes_ = ticks_ = 0;
    program_->engine.start();
}

// A pass over nothing can begin and end within one turn, but not without a word.
void Life::watchPass(const std::string& line) {
    const auto says = [&](const char* words) { return line.find(words) != std::string::npos; };
    if (says("Please Wait Encrypting files.")) checker_.passBegins();
    const bool isOver = says("ZEP Is PAUSED at ") || says("User Stopped Encrypting Files") ||
                        says("Source, Destination or Done Folders are missing");
    passes_ += isOver ? 1 : 0;
    tally_.passes += isOver ? 1 : 0;
}

void Life::operate() {
    if (!isCalm_ && chance_.oneIn(8)) {
        program_->engine.passes.stop();
        return;
    }
    const bool isYes = chance_.oneIn(2);
    const std::size_t end = question_.find(" already exists");
    const std::size_t begin = question_.rfind('/', end);
    if (isYes && end != std::string::npos) checker_.allowed(question_.substr(begin + 1, end - begin - 1));
    program_->boxes.answer(isYes ? Answer::yes : Answer::no);
}

// Nothing is left to do at this moment.
void Life::passTime() {
    if (program_->boxes.isOpen()) return operate();
    if (const std::chrono::nanoseconds* due = program_->loop.nextDue()) {
        world_.clock.advance(std::max(*due - world_.clock.sinceBoot(), std::chrono::nanoseconds(0)));
        return program_->loop.wakeDue();
    }
    Engine& engine = program_->engine;
    world_.clock.advance(std::chrono::milliseconds(100));
    if (program_->timers["timMax"].tickNow()) return;
    if (!engine.timRun->isEnabled() && !engine.state.PassInProgress) {
        engine.passes.takeStart(false);
        engine.mode.TurnOnTimRun();
    }
    world_.clock.advance(std::chrono::milliseconds(engine.timRun->interval()));
    program_->timers["timRun"].tickNow();
    ++ticks_;
}

bool Life::step() {
    if (world_.kernel.isDead() || broken_) return false;
    if (!isCalm_ && actsLeft_ > 0 && chance_.oneIn(6)) act();
    if (!program_->loop.turn(chance_)) passTime();
    return true;
}

void Life::act() {
    --actsLeft_;
    OtherPrograms& others = world_.others();
    const std::string& source = world_.folder(Where::source);
    const std::array<std::string, 3> folders{source, source + "/a", source + "/b"};
    switch (chance_.below(6)) {
        case 0:
        case 1:
            return drop(chance_.pick(folders), chance_.pick(kNames));
        case 2: {
            const std::vector<std::string> outputs = world_.filesBelow(world_.folder(Where::destination));
            if (outputs.empty()) return;
            const std::string path = chance_.pick(outputs);
            const std::string name = path.substr(path.rfind('/') + 1);
            if (!name.ends_with(".enc") || name == ".enc") return;
            checker_.touchedByOthers(path);
            checker_.collected(name.substr(0, name.size() - 4));
            if (trace_) trace_("others take " + path);
            others.remove(path);
            others.flush(world_.folder(Where::destination));
            return;
        }
        case 3: {
            const std::vector<std::string> files = world_.filesBelow(source);
            if (files.empty()) return;
            const std::string path = chance_.pick(files);
            const bool isInDone = path.starts_with(world_.folder(Where::done) + "/");
            if (isInDone || path.find("/.zep-") != std::string::npos || others.at(path).disk == nullptr) return;
            if (others.at(path).disk->traits.leases != Leases::honest) return;
            checker_.touchedByOthers(path);
            if (!others.append(path, "+")) return;
            others.flush(path);
            if (trace_) trace_("others append to " + path);
            return checker_.put(path, Where::source, *others.contents(path));
        }
        default:
            return;
    }
}

void Life::end(End how) {
    SimulatedKernel& kernel = world_.kernel;
    if (how == End::exit && !kernel.isDead()) program_->engine.ending.closeForGood();
    kernel.killAt(0);
    program_.reset();
    kernel.faults.clear();
    kernel.shortOneIn = kernel.interruptOneIn = 0;
    kernel.killAt(PlannedFault::kAlways);
    if (how == End::cut) {
        kernel.powerCut(chance_);
        for (SimulatedDisk& disk : world_.disks) disk.sync();
        ++tally_.cuts;
    } else {
        kernel.restart();
        ++(how == End::kill ? tally_.kills : tally_.exits);
    }
    if (trace_) trace_(how == End::cut ? "== the power is cut" : how == End::kill ? "== killed" : "== ended");
    if (!broken_) note(checker_.now());
}

void Life::runProgram(std::size_t mostPasses) {
    begin();
    // Where the settings cannot be read there is no pass.
    const std::size_t mostTicks = mostPasses + 4;
    for (std::size_t steps = 0; passes_ < mostPasses && ticks_ < mostTicks && step(); ++steps)
        if (steps > kMostSteps) note("a pass does not end");
    if (isCalm_ && ticks_ >= mostTicks) note("no pass begins");
}

std::optional<std::string> Life::run() {
    putFirstFiles();
    for (std::uint64_t left = 1 + chance_.below(3); left > 0 && !broken_; --left) {
        planTrouble();
        runProgram(1 + chance_.below(3));
        const bool isDead = world_.kernel.isDead();
        const std::uint64_t how = chance_.below(3);
        tally_.faults += world_.kernel.faultsMet;
        world_.kernel.faultsMet = 0;
        end(how == 0 && !isDead ? End::exit : how == 1 ? End::kill : End::cut);
    }
    isCalm_ = true;
    world_.makeRoom();
    if (!broken_) {
        runProgram(6);
        if (!broken_) note(checker_.atRest());
        end(End::exit);
    }
    ++tally_.lives;
    tally_.calls = world_.kernel.calls();
    return broken_;
}

}  // namespace vantrell::test
