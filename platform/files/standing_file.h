// SPDX-License-Identifier: MIT
#pragma once

#include "platform/file_toolbox.h"
#include "platform/files/held_file.h"
#include "platform/files/output_parts.h"
#include "platform/files/place.h"

namespace vantrell {

/// What stands under a name, held open together with its folder.
class PosixStandingFile final : public StandingFile {
public:
    /// Parts and probe outlive it.
    static Result<std::unique_ptr<PosixStandingFile>> open(OutputParts& parts, UseProbe& probe, const Path& path);

    PosixStandingFile(OutputParts& parts, UseProbe& probe, Place place, std::unique_ptr<PosixHeldFile> file)
        : parts_(parts), probe_(probe), place_(std::move(place)), file_(std::move(file)) {}

    [[nodiscard]] std::uint64_t size() const override { return file_->size(); }
    Result<std::size_t> read(std::span<std::byte> into) override { return file_->read(into); }
    Task<Result<>> confirm() override;
    /// The file counts as arrived now, and is brought to stable storage with its name. Otherwise as `confirm`.
    Task<Result<>> confirmArrival();
    [[nodiscard]] FileIdentity identity() const { return file_->stamp().identity; }

private:
    [[nodiscard]] Result<> checkUnchanged(bool withChangeTime) const;

    OutputParts& parts_;
    UseProbe& probe_;
    Place place_;
    std::unique_ptr<PosixHeldFile> file_;
};

}  // namespace vantrell
