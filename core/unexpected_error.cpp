// SPDX-License-Identifier: MIT
#include "core/unexpected_error.h"

#include <new>

namespace vantrell {

namespace {

// The program has always used these numbers and words for these errors.
constexpr char kOutOfMemory[] = "7  Out of memory";
constexpr char kInternalError[] = "51  Internal error";

}  // namespace

std::string unexpectedError() {
    try {
        throw;
    } catch (const std::bad_alloc&) {
        return kOutOfMemory;
    } catch (...) {
        return kInternalError;
    }
}

}  // namespace vantrell
