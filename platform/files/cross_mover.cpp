// SPDX-License-Identifier: MIT
#include "platform/files/cross_mover.h"

#include <string>
#include <utility>
#include <vector>

#include "platform/files/file_attributes.h"
#include "platform/files/folder_flush.h"
#include "platform/files/move_fault.h"

namespace vantrell {

namespace {

Result<> verifyBoth(const MoveOrder& order, PosixHeldFile& original) {
    if (Result<> done = original.verify(); !done.ok()) return done.fault();
    return order.expected == nullptr ? Result<>() : order.expected->verify();
}

constexpr std::size_t kPiece = std::size_t{256} << 10U;

// Fault `inUse` when there are more or fewer bytes than when the file was opened.
Task<Result<>> copyContents(HeldFile& from, OutputFile& to) {
    std::vector<std::byte> buffer(kPiece);
    std::uint64_t copied = 0;
    for (;;) {
        const Result<std::size_t> got = from.read(buffer);
        if (!got.ok()) co_return got.fault();
        if (got.value() == 0) break;
        copied += got.value();
        const Result<> written = co_await to.write(std::span(buffer).first(got.value()));
        if (!written.ok()) co_return written.fault();
    }
    if (copied != from.size()) co_return inUseFault();
    co_return Result<>();
}

// How much room is missing, where there is too little of it.
Fault withMissingRoom(Fault fault, const PosixHeldFile& original, const PosixOutputFile& output) {
    struct stat written {};
    const bool isKnown = fault.kind == FaultKind::noSpace && output.file().status(written) == 0;
    const auto size = static_cast<std::uint64_t>(isKnown ? written.st_size : 0);
    if (isKnown && size < original.size())
        fault.text += "; " + std::to_string(original.size() - size) + " bytes of room are missing";
    return fault;
}

}  // namespace

// Takes the copy's name away again unless the move succeeds, on a fault as on an abort.
class CrossMover::PublishedCopy {
public:
    PublishedCopy(const Place& place, const PosixHeldFile& original) : place_(place), original_(original) {}
    PublishedCopy(const PublishedCopy&) = delete;
    PublishedCopy& operator=(const PublishedCopy&) = delete;
    ~PublishedCopy() {
        struct stat original {};
        struct stat standing {};
        // Never the last copy: the original must still have a name somewhere.
        if (!isUndone_ || original_.file().status(original) != 0 || original.st_nlink == 0) return;
        if (place_.status(standing) != 0 || identityOf(standing) != copy_) return;
        // A copy that cannot be removed is one too many, which loses nothing.
        static_cast<void>(place_.folder.unlink(place_.name.c_str()));
    }

    void undoUnlessKept(const FileIdentity& copy) {
        copy_ = copy;
        isUndone_ = true;
    }
    void keep(bool kept = true) { isUndone_ = !kept; }
    [[nodiscard]] bool isKept() const { return !isUndone_; }
    [[nodiscard]] const FileIdentity& identity() const { return copy_; }

private:
    const Place& place_;
    const PosixHeldFile& original_;
    FileIdentity copy_;
    bool isUndone_ = false;
};

Task<Result<>> CrossMover::move(MoveOrder order, FileIdentity source) {
    Result<std::unique_ptr<PosixHeldFile>> opened =
        PosixHeldFile::open(parts_.kernel, parts_.source, probe_, order.source);
    if (!opened.ok()) co_return opened.fault();
    PosixHeldFile& original = *opened.value();
    if (original.stamp().identity != source) co_return inUseFault();
    if (Result<> done = verifyBoth(order, original); !done.ok()) co_return done.fault();
    // Nobody has looked at this one before.
    const bool isKnown = order.expected != nullptr || original.readiness().state == Readiness::State::free;
    if (!isKnown) co_return inUseFault();
    PublishedCopy copy(to_, original);
    // Made before anything is written: where it cannot be made, the source could not be removed either.
    SourceRemoval removal(parts_, from_, to_);
    if (removal.error() != 0) co_return moveFault(to_, removal.error(), "The source folder cannot be written");
    if (Result<> done = co_await copyAndPublish(order, original, copy); !done.ok()) co_return done.fault();
    const bool isReplacing = copy.isKept();
    copy.keep();
    const Result<> removed = co_await removal.remove(original.stamp(), original.file(), copy.identity());
    copy.keep(removed.ok() || isReplacing || !removal.isBack());
    if (!removed.ok()) co_return removed.fault();
    parts_.made.insert(copy.identity());
    // The copy stands whatever this says: at worst the source is there again after a crash.
    static_cast<void>(co_await flushFolder(parts_, from_.folder));
    co_return Result<>();
}

Task<Result<>> CrossMover::copyAndPublish(MoveOrder order, PosixHeldFile& original, PublishedCopy& copy) {
    const Result<std::unique_ptr<PosixOutputFile>> created = PosixOutputFile::create(parts_, folderOf(order.target));
    if (!created.ok()) co_return created.fault();
    PosixOutputFile& output = *created.value();
    const Result<> copied = co_await makeCopy(original, output);
    if (!copied.ok()) co_return withMissingRoom(copied.fault(), original, output);
    if (Result<> done = verifyBoth(order, original); !done.ok()) co_return done.fault();
    co_return co_await publish(order, output, copy);
}

Task<Result<>> CrossMover::makeCopy(PosixHeldFile& original, PosixOutputFile& output) {
    // Until it bears the original's permissions, it is nobody else's to read.
    if (Result<> done = output.setPermissions(S_IRUSR | S_IWUSR); !done.ok()) co_return done.fault();
    if (Result<> done = co_await copyContents(original, output); !done.ok()) co_return done.fault();
    copyAttributes(original.file(), original.status(), output.file());
    co_return co_await output.flush();
}

Task<Result<>> CrossMover::publish(const MoveOrder& order, PosixOutputFile& output, PublishedCopy& copy) {
    copy.undoUnlessKept(output.identity());
    const Result<> published = co_await output.publish(nameOf(order.target), Replace::never);
    if (!published.failedWith(FaultKind::nameTaken) || order.replace == Replace::never) co_return published;
    // An old file that has been replaced does not come back, so its successor stays in any case.
    copy.keep();
    co_return co_await output.publish(nameOf(order.target), Replace::allowed);
}

}  // namespace vantrell
