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

FaultKind kindOnOutputSide(int number) {
    const FaultKind kind = kindOf(number);
    const bool isTheFiles = number == EFBIG || number == EILSEQ;
    return kind == FaultKind::other && !isTheFiles ? FaultKind::machine : kind;
}

FaultKind kindOnSourceSide(int number) {
    switch (number) {
        case EBUSY:
        case ETXTBSY:
        case EAGAIN:
            return FaultKind::inUse;
        case EMFILE:
        case ENFILE:
        case ENOMEM:
        case ESTALE:
        case ETIMEDOUT:
        case ENOTCONN:
        case EHOSTDOWN:
        case ENODEV:
        case ENXIO:
            return FaultKind::machine;
        case ENOENT:
            return FaultKind::notThere;
        default:
            return FaultKind::other;
    }
}

Fault faultOf(FaultKind kind, int number, std::string_view what) {
    return {kind, std::string(what) + ": " + std::generic_category().message(number)};
}

}  // namespace

Fault faultFromErrno(int number, std::string_view what) { return faultOf(kindOf(number), number, what); }
Fault outputFault(int number, std::string_view what) { return faultOf(kindOnOutputSide(number), number, what); }
Fault namingFault(int number, std::string_view what) {
    return faultOf(number == EINVAL ? FaultKind::other : kindOnOutputSide(number), number, what);
}
Fault sourceFault(int number, std::string_view what) { return faultOf(kindOnSourceSide(number), number, what); }

Result<> resultFromErrno(int number, std::string_view what) {
    if (number == 0) return {};
    return faultFromErrno(number, what);
}

}  // namespace vantrell
