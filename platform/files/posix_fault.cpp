// SPDX-License-Identifier: MIT
#include "platform/files/posix_fault.h"

#include <cerrno>
#include <string>
#include <system_error>

namespace vantrell {

namespace {

FaultKind kindOf(int number) {
    switch (number) {
        case ENOENT:
            return FaultKind::notThere;
        case EEXIST:
            return FaultKind::nameTaken;
        case ENAMETOOLONG:
            return FaultKind::nameTooLong;
        case ENOSPC:
        case EDQUOT:
            return FaultKind::noSpace;
        case EROFS:
        case EIO:
            return FaultKind::deviceFailing;
        default:
            return FaultKind::other;
    }
}

}  // namespace

Fault faultFromErrno(int number, std::string_view what) {
    return {kindOf(number), std::string(what) + ": " + std::generic_category().message(number)};
}

Result<> resultFromErrno(int number, std::string_view what) {
    if (number == 0) return {};
    return faultFromErrno(number, what);
}

}  // namespace vantrell
