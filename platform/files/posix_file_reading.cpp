// SPDX-License-Identifier: MIT
#include "platform/files/posix_file_reading.h"

#include <utility>

#include "platform/files/place.h"
#include "platform/files/posix_fault.h"
#include "platform/files/posix_io.h"

namespace vantrell {

namespace {

class PosixReadableFile final : public ReadableFile {
public:
    PosixReadableFile(UniqueFd file, Path path) : file_(std::move(file)), path_(std::move(path)) {}

    [[nodiscard]] Result<std::size_t> readAt(std::uint64_t offset, std::span<char> into) const override {
        return vantrell::readAt(file_, into, offset, path_);
    }

private:
    UniqueFd file_;
    Path path_;
};

}  // namespace

Result<std::unique_ptr<ReadableFile>> PosixFileReading::openForReading(const Path& path) const {
    UniqueFd file = vantrell::openForReading(kernel_, path);
    struct stat status {};
    const int error = file ? file.status(status) : file.error();
    if (error != 0) return faultFromErrno(error, path);
    if (!S_ISREG(status.st_mode)) return Fault{FaultKind::other, path + ": is no regular file"};
    return std::make_unique<PosixReadableFile>(std::move(file), path);
}

}  // namespace vantrell
