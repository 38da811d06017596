// SPDX-License-Identifier: MIT
#include "transport/encrypt_file.h"

#include <utility>

#include "base/display_text.h"
#include "core/file_helpers.h"

namespace vantrell {

struct FileEncryption::Work {
    EncryptOrder order;
    std::string name;
    std::unique_ptr<CryptoComponent> component;
    std::unique_ptr<HeldFile> held;
    Result<> holding;  // whether it could be opened, and still is what it was then
    bool isPrepared = false;
    Result<> preparing;
    bool isAtItsTurn = false;  // its progress may be shown
};

// What is said about a file that has the name which is needed.
struct FileEncryption::Obstacle {
    Message status;
    std::string question;
};

FileEncryption::FileEncryption(const ProgramState& state, MainWindow& window, StatusReport& report, ActivityLog& log,
                               FileToolbox& toolbox, CryptoFactory makeComponent, QuestionDesk& questions)
    : state_(state),
      window_(window),
      report_(report),
      log_(log),
      toolbox_(toolbox),
      makeComponent_(std::move(makeComponent)),
      questions_(questions) {}

void FileEncryption::DeleteWork::operator()(Work* work) const { std::default_delete<Work>()(work); }

FileEncryption::WorkPointer FileEncryption::begin(EncryptOrder order) {
    WorkPointer work(std::make_unique<Work>().release());
    work->name = FileNameOf(order.sourcePath);
    work->order = std::move(order);
    work->component = makeComponent_();
    work->component->setAlgorithm("aes");
    work->component->setCipherMode("ecb");
    work->component->setKeyLength(256);
    work->component->setSecretKey(work->order.password, "ascii");
    work->component->setInitialisationVector(work->order.password, "ascii");
    work->component->setProgress(
        [&window = window_, &isAtItsTurn = work->isAtItsTurn](std::uint64_t done, std::uint64_t total) {
            if (isAtItsTurn) window.setFileProgress(done, total);
        });

    // Held from here to the move, so that what is moved is known to be what was read.
    Result<std::unique_ptr<HeldFile>> held = toolbox_.hold(work->order.sourcePath);
    if (held.ok())
        work->held = held.take();
    else
        work->holding = held.fault();
    return work;
}

std::uint64_t FileEncryption::sizeOf(const Work& work) { return work.held ? work.held->size() : 0; }
EncryptOrder& FileEncryption::orderOf(Work& work) { return work.order; }

Task<void> FileEncryption::prepare(Work& work) {
    if (!work.held || work.isPrepared) co_return;
    work.isPrepared = true;
    work.preparing = co_await work.component->prepareFile(*work.held, work.order.destinationFolder);
}

Task<EncryptResult> FileEncryption::finish(WorkPointer work) {
    work->isAtItsTurn = true;
    co_return co_await encryptAndMove(*work);
}

Task<EncryptResult> FileEncryption::encryptAndMove(Work& work) {
    if (work.holding.failedWith(FaultKind::inUse)) co_return failedBy(work, work.holding.fault());

    const Path output = joinPath(work.order.destinationFolder, work.name + ".enc");
    const std::string shownSource = displayText(work.order.sourcePath);
    const std::string refusal =
        "If No Files will be moved to the folder " + displayText(work.order.rejectFolder) + " !";
    Replace replace = Replace::never;
    if (FileExists(toolbox_, output)) {
        const Permission permission = co_await mayReplace(
            work, {" Encrypting file " + named(work.order.sourcePath) + " already exists in the folder!.",
                   " Encrypting file \r\n" + shownSource + " already exists in the folder " +
                       displayText(work.order.destinationFolder) + ".\r\n\r\nDo you want to overwrite this file?\r\n" +
                       refusal});
        if (permission != Permission::replace) co_return notPermitted(work, permission);
        replace = Replace::allowed;
    }

    const Result<> written = co_await writeOutput(work, replace);
    if (!written.ok()) co_return failedBy(work, written.fault());
    if (!FileExists(toolbox_, output)) co_return resultOf(work, EncryptOutcome::carried);

    log_.logEvent("Encryped:  " + named(work.name) + " - Sucessful: ");
    log_.saveWhenOn();
    co_return co_await moveToDone(work);
}

Task<Result<>> FileEncryption::writeOutput(Work& work, Replace replace) {
    if (!work.held) co_return work.holding;
    co_await prepare(work);
    if (!work.preparing.ok()) co_return work.preparing;
    co_return co_await work.component->publishFile(*work.held, work.name + ".enc", replace);
}

Task<EncryptResult> FileEncryption::moveToDone(Work& work) {
    const Path target = joinPath(work.order.doneFolder, work.name);
    Replace replace = Replace::never;
    if (FileExists(toolbox_, target)) {
        const Permission permission = co_await mayReplace(
            work, {" Moving orginal file " + named(target) + " already exists in the folder!.",
                   " The orginal file  " + displayText(work.order.sourcePath) + " already exists in the folder " +
                       displayText(work.order.doneFolder) +
                       "!.\r\n\r\nDo you want to overwrite this file?\r\nIf No Files will be moved to the folder " +
                       displayText(work.order.rejectFolder) + " !"});
        if (permission != Permission::replace) co_return notPermitted(work, permission);
        replace = Replace::allowed;
    }

    const Result<> moved =
        co_await toolbox_.move({work.order.sourcePath, target, replace, work.held.get(), Durable::later});
    if (moved.ok()) co_return resultOf(work, EncryptOutcome::carried);
    if (moved.failedWith(FaultKind::inUse)) co_return failedBy(work, moved.fault());
    report_.showInPanel1("File " + named(work.order.sourcePath) + " did move to " + named(work.order.doneFolder) + "!");
    co_return resultOf(work, EncryptOutcome::carried, moved.fault());
}

Task<FileEncryption::Permission> FileEncryption::mayReplace(Work& work, Obstacle obstacle) {
    if (state_.settings.OverwriteExistingFiles && !work.order.nameWasCarried) co_return Permission::replace;
    report_.showInPanel1(obstacle.status);
    logFailure(work, "");  // nothing has failed yet
    if (work.order.nameWasCarried) co_return Permission::refused;

    Box box{"Overwrite Files", std::move(obstacle.question), Buttons::yesNo, true};
    switch (co_await questions_.ask(std::move(box))) {
        case Answer::yes:
            break;
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
    const bool inUse = fault.kind == FaultKind::inUse;
    if (!inUse || !work.order.inUseWasTold) logFailure(work, fault.text);
    return resultOf(work, inUse ? EncryptOutcome::inUse : EncryptOutcome::failed, fault);
}

void FileEncryption::logFailure(const Work& work, const std::string& words) {
    log_.logEvent("Encrypting:  " + named(work.name) + " - FAILED: " + failureWords(words));
    log_.saveWhenOn();
}

EncryptResult FileEncryption::resultOf(Work& work, EncryptOutcome outcome, std::optional<Fault> fault) {
    return {outcome, std::move(fault), std::move(work.held)};
}

}  // namespace vantrell
