// SPDX-License-Identifier: MIT
#include "platform/files/file_copier.h"

#include <utility>

#include "platform/files/place.h"

namespace vantrell {

namespace {
constexpr std::size_t kPiece = std::size_t{256} << 10U;
}  // namespace

Task<FileFault> copyContents(HeldFile& from, OutputFile& to) {
    std::vector<std::byte> buffer(kPiece);
    std::uint64_t copied = 0;
    for (;;) {
        std::size_t got = 0;
        if (FileFault fault = from.read(buffer, got)) co_return fault;
        if (got == 0) break;
        copied += got;
        if (FileFault fault = co_await to.write(std::span(buffer).first(got))) co_return fault;
    }
    co_return copied == from.size() ? FileFault{} : inUseFault();
}

Task<FileFault> copyFile(OutputParts& parts, UseProbe& probe, Path source, Path target, unsigned permissions) {
    auto [from, cannotRead] = PosixHeldFile::open(probe, source);
    if (!from) co_return cannotRead;
    auto [to, cannotWrite] = PosixOutputFile::create(parts, folderOf(target));
    if (!to) co_return cannotWrite;
    // First of all: nobody is to read it under a temporary name either.
    if (FileFault fault = to->setPermissions(permissions)) co_return fault;
    if (FileFault fault = co_await copyContents(*from, *to)) co_return fault;
    if (FileFault fault = co_await to->flush()) co_return fault;
    co_return co_await to->publish(std::move(target), Replace::allowed);
}

}  // namespace vantrell
