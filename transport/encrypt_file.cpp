// SPDX-License-Identifier: MIT
#include "transport/encrypt_file.h"

#include <utility>

#include "base/display_text.h"
#include "core/file_helpers.h"

namespace vantrell {

namespace {

constexpr char kEncrypted[] = ".enc";

// Taken for nothing, it would be replaced, or asked about, although it may be a namesake's or this file's own output.
Fault cannotBeLookedAt(const char* folder) {
    return {FaultKind::machine, "What stands in the " + std::string(folder) + " Folder cannot be looked at"};
}

}  // namespace

struct FileEncryption::Work {
    EncryptOrder order;
    std::string name;
    std::unique_ptr<FileReport> report;
    std::unique_ptr<CryptoComponent> component;
    std::unique_ptr<HeldFile> held;
    Result<> holding;         // whether it could be opened, and still is what it was then
    Result<> comparing;       // whether it could be done
    bool isCompared = false;  // with what stands under the output's name
    bool equals = false;
    bool isPrepared = false;
    bool isNameFree = false;  // as of the comparison
    Result<> preparing;
    bool isAhead = true;       // opened, and perhaps prepared, before its turn
    bool isAtItsTurn = false;  // its progress may be shown
    bool wasAsked = false;
    bool isNamed = false;  // ahead, with others
    Result<> naming;       // whether the name is on stable storage then

    void take(Result<std::unique_ptr<HeldFile>> opened) {
        holding = opened.ok() ? Result<>() : Result<>(opened.fault());
        held = opened.ok() ? opened.take() : nullptr;
    }
};

// What is said about a file that has the name which is needed.
struct FileEncryption::Obstacle {
    Message status;
    std::string question;
};

void FileEncryption::DeleteWork::operator()(Work* work) const { std::default_delete<Work>()(work); }

FileEncryption::WorkPointer FileEncryption::begin(EncryptOrder order) {
    WorkPointer work(std::make_unique<Work>().release());
    work->name = FileNameOf(order.sourcePath);
    work->report = std::make_unique<FileReport>(p_.report, p_.log, order.leftBefore);
    work->order = std::move(order);
    makeComponentFor(*work);
    // Held from here to the move, so that what is moved is known to be what was read.
    work->take(p_.toolbox.hold(work->order.sourcePath));
    return work;
}

void FileEncryption::makeComponentFor(Work& work) {
    work.component = p_.makeComponent();
    work.component->setAlgorithm("aes");
    work.component->setCipherMode("ecb");
    work.component->setKeyLength(256);
    work.component->setSecretKey(work.order.password, "ascii");
    work.component->setInitialisationVector(work.order.password, "ascii");
    work.component->setProgress(
        [&window = p_.window, &isAtItsTurn = work.isAtItsTurn](std::uint64_t done, std::uint64_t total) {
            if (isAtItsTurn) window.setFileProgress(done, total);
        });
}

std::uint64_t FileEncryption::sizeOf(const Work& work) { return work.held ? work.held->size() : 0; }
EncryptOrder& FileEncryption::orderOf(Work& work) { return work.order; }

// What was true when the file was opened ahead of its turn need not be so now.
Task<void> FileEncryption::beginAnew(Work& work) {
    work.isAhead = work.isCompared = work.equals = work.isPrepared = false;
    work.comparing = work.preparing = {};
    work.held.reset();
    makeComponentFor(work);
    work.take(co_await p_.toolbox.holdInTurn(work.order.sourcePath, p_.isStopped));
}

// A crash, a log-out or a full Done folder may have left the output of this very file.
Task<void> FileEncryption::compare(Work& work) {
    const Path output = joinPath(work.order.destinationFolder, work.name + kEncrypted);
    if (!work.held || std::exchange(work.isCompared, true)) co_return;
    const EntryKind there = p_.toolbox.kindOf(output);
    work.isNameFree = there == EntryKind::missing;
    if (there == EntryKind::unknown) work.comparing = cannotBeLookedAt("Destination");
    if (there != EntryKind::regularFile) co_return;
    Result<bool> equal = co_await work.component->equalsStanding(*work.held, output, !p_.flushNote.stands());
    work.equals = equal.ok() && equal.value();
    work.comparing = equal.ok() ? Result<>() : Result<>(equal.fault());
}

Task<void> FileEncryption::prepare(Work& work) {
    co_await compare(work);
    const bool isThere = !work.comparing.ok() || (work.equals && !p_.flushNote.stands());
    if (!work.held || isThere || std::exchange(work.isPrepared, true)) co_return;
    work.preparing = co_await work.component->prepareFile(*work.held, work.order.destinationFolder);
}

void FileEncryption::clearReadOnly(const Work& work) {
    if (!work.held || work.held->isReadOnly()) (void)ClearFileAttributes(p_.toolbox, work.order.sourcePath);
}

bool FileEncryption::isReady(const Work& work) {
    return work.isCompared && work.comparing.ok() && work.holding.ok() && work.preparing.ok();
}

bool FileEncryption::nameAhead(Work& work) {
    const bool isPlain = isReady(work) && work.isPrepared && work.isNameFree && !p_.flushNote.stands();
    if (!isPlain || p_.isStopped()) return false;
    // What stands there would be asked about only when others already have their names.
    if (p_.toolbox.kindOf(joinPath(work.order.doneFolder, work.name)) != EntryKind::missing) return false;
    clearReadOnly(work);
    work.isNamed = work.component->nameFile(*work.held, work.name + kEncrypted).ok();
    // What stands there now may be its own output, which could not be taken back: then it begins anew.
    work.isCompared = work.isNamed;
    return work.isNamed;
}

Task<void> FileEncryption::settle(const std::vector<Work*>& named) {
    const Result<> flushed = co_await p_.toolbox.flushNames();
    for (Work* work : named) work->naming = flushed;
}

Task<EncryptResult> FileEncryption::finish(WorkPointer work) {
    work->isAtItsTurn = true;
    if (!work->isNamed) {
        clearReadOnly(*work);
        if (!isReady(*work)) co_await beginAnew(*work);
    }
    EncryptResult result = co_await encryptAndMove(*work);
    result.report = std::move(work->report);
    co_return result;
}

Task<EncryptResult> FileEncryption::encryptAndMove(Work& work) {
    std::optional<EncryptResult> notEncrypted = co_await encrypt(work);
    if (notEncrypted) co_return std::move(*notEncrypted);
    work.report->logEvent("Encryped:  " + named(work.name) + " - Sucessful: ");
    co_return co_await moveToDone(work);
}

// Nothing when the output stands whole under its name.
Task<std::optional<EncryptResult>> FileEncryption::encrypt(Work& work) {
    if (work.isNamed && work.naming.ok()) co_return std::nullopt;
    if (work.isNamed) co_return failedBy(work, work.naming.fault());
    if (!work.holding.ok()) {
        if (work.holding.failedWith(FaultKind::inUse) && p_.isStopped())
            co_return resultOf(work, EncryptOutcome::withdrawn);
        // Whether its output may be replaced need not be asked: there will be none.
        co_return failedBy(work, work.holding.fault());
    }
    Replace replace = Replace::never;
    const Permission permission = co_await mayWriteOutput(work, replace);
    if (!work.comparing.ok()) co_return failedBy(work, work.comparing.fault());
    if (permission != Permission::replace) co_return notPermitted(work, permission);
    const Result<> written = co_await writeOutput(work, replace);
    if (written.ok()) co_return std::nullopt;
    if (work.isAhead && !work.wasAsked && written.failedWith(FaultKind::inUse)) {
        co_await beginAnew(work);
        co_return co_await encrypt(work);
    }
    co_return failedBy(work, written.fault());
}

Task<FileEncryption::Permission> FileEncryption::mayWriteOutput(Work& work, Replace& replace) {
    const Path& folder = work.order.destinationFolder;
    const Path output = joinPath(folder, work.name + kEncrypted);
    const EntryKind there = p_.toolbox.kindOf(output);
    const bool isStanding = there == EntryKind::regularFile;
    const Result<bool> asked =
        isStanding ? p_.isNamesakes(work.order.sourcePath, folder, kEncrypted) : Result<bool>(false);
    if (there == EntryKind::unknown || !asked.ok()) work.comparing = cannotBeLookedAt("Destination");
    const bool isNamesakes = asked.ok() && asked.value();
    if (asked.ok() && !isNamesakes) co_await compare(work);
    if (!work.comparing.ok()) co_return Permission::refused;  // what is there may be its own output
    // The same bytes, newly written: nothing is lost, and nothing needs to be asked.
    if (work.equals && !isNamesakes) {
        replace = Replace::allowed;
        co_return Permission::replace;
    }
    if (!isStanding) co_return Permission::replace;
    replace = Replace::allowed;
    Obstacle obstacle{" Encrypting file " + named(work.order.sourcePath) + " already exists in the folder!.",
                      " Encrypting file \r\n" + displayText(work.order.sourcePath) + " already exists in the folder " +
                          displayText(folder) + ".\r\n\r\nDo you want to overwrite this file?\r\n" +
                          "If No Files will be moved to the folder " + displayText(work.order.rejectFolder) + " !"};
    co_return co_await mayReplace(work, std::move(obstacle), isNamesakes);
}

Task<Result<>> FileEncryption::writeOutput(Work& work, Replace replace) {
    if (!work.held) co_return work.holding;
    co_await prepare(work);
    if (!work.preparing.ok()) co_return work.preparing;
    co_return co_await work.component->publishFile(*work.held, work.name + kEncrypted, replace);
}

Task<EncryptResult> FileEncryption::moveToDone(Work& work) {
    const Path target = joinPath(work.order.doneFolder, work.name);
    MoveOrder order{work.order.sourcePath, target, Replace::never, work.held.get(), Durable::later};
    if (work.isNamed) {
        const Result<> moved = co_await p_.toolbox.move(order);
        if (!moved.failedWith(FaultKind::nameTaken)) co_return afterMove(work, moved);
    }
    const EntryKind there = p_.toolbox.kindOf(target);
    if (there == EntryKind::unknown) co_return afterMove(work, cannotBeLookedAt("Done"));
    if (there == EntryKind::regularFile) {
        const Result<bool> asked = p_.isNamesakes(work.order.sourcePath, work.order.doneFolder, "");
        if (!asked.ok()) co_return afterMove(work, cannotBeLookedAt("Done"));
        const bool isNamesakes = asked.value();
        if (!isNamesakes) {
            order.onEqual = p_.flushNote.stands() ? OnEqual::isReplaced : OnEqual::isTheSame;
            const Result<> moved = co_await p_.toolbox.move(order);
            if (!moved.failedWith(FaultKind::nameTaken)) co_return afterMove(work, moved);
        }
        Obstacle obstacle{
            " Moving orginal file " + named(target) + " already exists in the folder!.",
            " The orginal file  " + displayText(work.order.sourcePath) + " already exists in the folder " +
                displayText(work.order.doneFolder) +
                "!.\r\n\r\nDo you want to overwrite this file?\r\nIf No Files will be moved to the folder " +
                displayText(work.order.rejectFolder) + " !"};
        const Permission permission = co_await mayReplace(work, std::move(obstacle), isNamesakes);
        if (permission != Permission::replace) co_return notPermitted(work, permission);
        order.replace = Replace::allowed;
        order.onEqual = OnEqual::isAnother;
    }
    const Result<> moved = co_await p_.toolbox.move(order);
    co_return afterMove(work, moved);
}

EncryptResult FileEncryption::afterMove(Work& work, const Result<>& moved) {
    if (moved.ok()) return resultOf(work, EncryptOutcome::carried);
    if (moved.failedWith(FaultKind::inUse)) return failedBy(work, moved.fault());
    work.report->showInPanel1("File " + named(work.order.sourcePath) + " did move to " + named(work.order.doneFolder) +
                              "!");
    return resultOf(work, EncryptOutcome::carried, moved.fault());
}

Task<FileEncryption::Permission> FileEncryption::mayReplace(Work& work, Obstacle obstacle, bool isNamesakes) {
    if (p_.state.settings.OverwriteExistingFiles && !isNamesakes) co_return Permission::replace;
    work.report->showInPanel1(obstacle.status);
    logFailure(work, "");  // nothing has failed yet
    if (isNamesakes) co_return Permission::refused;

    work.report->speak();
    work.wasAsked = true;
    Box box{"Overwrite Files", std::move(obstacle.question), Buttons::yesNo, true};
    switch (co_await p_.questions.ask(std::move(box))) {
        case Answer::yes:
            break;
        case Answer::dismissed:
        case Answer::withdrawn:
            co_return Permission::withdrawn;
        default:
            co_return Permission::refused;
    }
    const Result<> unchanged = work.held ? work.held->verify() : Result<>();
    if (unchanged.failedWith(FaultKind::inUse)) {
        work.holding = unchanged;
        co_return Permission::inUse;
    }
    co_return Permission::replace;
}

EncryptResult FileEncryption::notPermitted(Work& work, Permission permission) {
    switch (permission) {
        case Permission::withdrawn:
            return resultOf(work, EncryptOutcome::withdrawn);
        case Permission::inUse:
            return failedBy(work, work.holding.fault());
        default:
            return resultOf(work, EncryptOutcome::failed);
    }
}

EncryptResult FileEncryption::failedBy(Work& work, const Fault& fault) {
    logFailure(work, fault.text);
    const bool inUse = fault.kind == FaultKind::inUse;
    return resultOf(work, inUse ? EncryptOutcome::inUse : EncryptOutcome::failed, fault);
}

void FileEncryption::logFailure(Work& work, const std::string& words) {
    work.report->logEvent("Encrypting:  " + named(work.name) + " - FAILED: " + failureWords(words));
}

EncryptResult FileEncryption::resultOf(Work& work, EncryptOutcome outcome, std::optional<Fault> fault) {
    return {outcome, std::move(fault), std::move(work.held)};
}

}  // namespace vantrell
