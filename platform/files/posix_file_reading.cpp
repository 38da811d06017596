// SPDX-License-Identifier: MIT
#include "platform/files/posix_file_reading.h"

#include <sys/stat.h>

#include <cerrno>
#include <utility>

#include "platform/files/place.h"
#include "platform/files/posix_fault.h"
#include "platform/files/posix_io.h"

namespace vantrell {

namespace {

class PosixReadableFile final : public ReadableFile {
public:
    PosixReadableFile(UniqueFd file, Path path) : file_(std::move(file)), path_(std::move(path)) {}

    FileFault readAt(std::uint64_t offset, std::span<char> into, std::size_t& got) const override {
        return vantrell::readAt(file_.get(), into, offset, got, path_);
    }

private:
    UniqueFd file_;
    Path path_;
};

}  // namespace

FileReading::Opened PosixFileReading::openForReading(const Path& path) const {
    UniqueFd file = vantrell::openForReading(path);
    if (!file) return {nullptr, faultFromErrno(errno, path)};
    struct stat status {};
    if (::fstat(file.get(), &status) != 0) return {nullptr, faultFromErrno(errno, path)};
    if (!S_ISREG(status.st_mode)) return {nullptr, {FaultKind::other, path + ": is no regular file"}};
    return {std::make_unique<PosixReadableFile>(std::move(file), path), {}};
}

}  // namespace vantrell
