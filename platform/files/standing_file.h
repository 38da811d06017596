// SPDX-License-Identifier: MIT
#pragma once

#include "platform/event_loop.h"
#include "platform/file_toolbox.h"
#include "platform/files/held_file.h"
#include "platform/files/place.h"

namespace vantrell {

/// What stands under a name, held open together with its folder.
class PosixStandingFile final : public StandingFile {
public:
    /// Loop, kernel and probe outlive it.
    static Result<std::unique_ptr<PosixStandingFile>> open(EventLoop& loop, Kernel& kernel, UseProbe& probe,
                                                           const Path& path);

    PosixStandingFile(EventLoop& loop, Place place, std::unique_ptr<PosixHeldFile> file)
        : loop_(loop), place_(std::move(place)), file_(std::move(file)) {}

    [[nodiscard]] std::uint64_t size() const override { return file_->size(); }
    Result<std::size_t> read(std::span<std::byte> into) override { return file_->read(into); }
    Task<Result<>> confirm() override;

private:
    [[nodiscard]] Result<> checkUnchanged() const;

    EventLoop& loop_;
    Place place_;
    std::unique_ptr<PosixHeldFile> file_;
};

}  // namespace vantrell
