// SPDX-License-Identifier: MIT
#include "platform/files/file_copier.h"

#include <utility>

#include "platform/files/place.h"

namespace vantrell {

namespace {
constexpr std::size_t kPiece = std::size_t{256} << 10U;
}  // namespace

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
    co_return copied == from.size() ? Result<>() : inUseFault();
}

Task<Result<>> copyFile(OutputParts& parts, UseProbe& probe, Path source, Path target, unsigned permissions) {
    const Result<std::unique_ptr<PosixHeldFile>> opened = PosixHeldFile::open(probe, source);
    if (!opened.ok()) co_return opened.fault();
    PosixHeldFile& from = *opened.value();
    const Result<std::unique_ptr<PosixOutputFile>> created = PosixOutputFile::create(parts, folderOf(target));
    if (!created.ok()) co_return created.fault();
    PosixOutputFile& to = *created.value();
    // First of all: nobody is to read it under a temporary name either.
    if (Result<> done = to.setPermissions(permissions); !done.ok()) co_return done.fault();
    if (Result<> done = co_await copyContents(from, to); !done.ok()) co_return done.fault();
    if (Result<> done = co_await to.flush(); !done.ok()) co_return done.fault();
    co_return co_await to.publish(std::move(target), Replace::allowed);
}

}  // namespace vantrell
