// SPDX-License-Identifier: MIT
#include "platform/files/cross_mover.h"

#include <utility>
#include <vector>

#include "platform/files/file_attributes.h"
#include "platform/files/folder_flush.h"
#include "platform/files/posix_fault.h"

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

// Renaming renews the change time only; a write also moves the modification time or the size.
bool isUnwritten(const struct stat& now, const FileStamp& then) {
    const FileStamp stamp = stampOf(now);
    return stamp.identity == then.identity && stamp.size == then.size && stamp.modified == then.modified;
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
    void keep() { isUndone_ = false; }

private:
    const Place& place_;
    const PosixHeldFile& original_;
    FileIdentity copy_;
    bool isUndone_ = false;
};

Task<Result<>> CrossMover::move(MoveOrder order, FileIdentity source) {
    Result<std::unique_ptr<PosixHeldFile>> opened = PosixHeldFile::open(parts_.kernel, probe_, order.source);
    if (!opened.ok()) co_return opened.fault();
    std::unique_ptr<PosixHeldFile> original = opened.take();
    if (original->stamp().identity != source) co_return inUseFault();
    if (Result<> done = verifyBoth(order, *original); !done.ok()) co_return done.fault();
    PublishedCopy copy(to_, *original);
    // Made before anything is written: where it cannot be made, the source could not be removed either.
    PrivateFolder aside(from_.folder);
    if (aside.error() != 0) co_return faultFromErrno(aside.error(), "The source folder cannot be written");
    const Result<std::unique_ptr<PosixOutputFile>> created = PosixOutputFile::create(parts_, folderOf(order.target));
    if (!created.ok()) co_return created.fault();
    PosixOutputFile& output = *created.value();
    if (Result<> done = co_await makeCopy(*original, output); !done.ok()) co_return done.fault();
    if (Result<> done = verifyBoth(order, *original); !done.ok()) co_return done.fault();
    if (Result<> done = co_await publish(order, output, copy); !done.ok()) co_return done.fault();
    if (Result<> done = removeSource(aside, *original); !done.ok()) co_return done.fault();
    copy.keep();
    original.reset();
    parts_.disposer.disposeWhenUnused(std::move(removed_));
    // The copy stands whatever this says: at worst the source is there again after a crash.
    static_cast<void>(co_await flushFolder(parts_.loop, from_.folder));
    co_return Result<>();
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

Result<> CrossMover::removeSource(PrivateFolder& aside, const PosixHeldFile& original) {
    if (const int error = aside.take(from_.name); error != 0)
        return faultFromErrno(error, "The file cannot be removed from the source folder");
    struct stat status {};
    if (const int error = aside.folder().statusOf(from_.name.c_str(), status); error != 0)
        return faultFromErrno(error, "The file cannot be looked at");
    if (!isUnwritten(status, original.stamp()) || askForWriters(original.file()) == Use::writing) return inUseFault();
    removed_ = aside.folder().open(from_.name.c_str(), O_WRONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    return resultFromErrno(aside.removeTaken(), "The file cannot be removed from the source folder");
}

}  // namespace vantrell
