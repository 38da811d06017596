// SPDX-License-Identifier: MIT
#include "transport/flush_note.h"

namespace vantrell {

namespace {

constexpr char kText[] =
    "Bringing a file to the disk has failed. Until a pass has carried everything, nothing that stands in the "
    "folders\r\n"
    "already is believed to be on the disk.\r\n";

}  // namespace

// Where it cannot be written, it holds for this run, and the next failure tries again.
void FlushNote::write() {
    ++failures_;
    stands_ = true;
    if (!isWritten_) isWritten_ = files_.writeAtomically(file_, kText).ok();
}

bool FlushNote::stands() {
    // One that is there and cannot be read stands as well.
    if (!stands_) stands_ = isWritten_ = !files_.read(file_, 1).failedWith(FaultKind::notThere);
    return *stands_;
}

void FlushNote::clear() {
    if (!stands()) return;
    if (isWritten_ && !files_.remove(file_).ok()) return;
    stands_ = isWritten_ = false;
}

}  // namespace vantrell
