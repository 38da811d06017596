// SPDX-License-Identifier: MIT
#include "transport/reject_file.h"

#include "base/date_text.h"
#include "base/shortened_name.h"

namespace vantrell {

namespace {

// Some file systems that encrypt names take no longer ones, whatever they say.
constexpr std::size_t kShortName = 140;
constexpr unsigned kMostNames = 1000;

bool isTaken(const RejectOrder& order, const std::string& name) {
    const EntryKind kind = order.toolbox.kindOf(joinPath(order.folder, name));
    return kind != EntryKind::missing && kind != EntryKind::unknown;
}

// A name that is free, shortened where it must be, with a number where the shortened one is taken.
std::string freeName(const RejectOrder& order, const std::string& name, std::size_t longest) {
    std::string free = shortenedName(name, longest, 0);
    for (unsigned number = 2; free != name && number < kMostNames && isTaken(order, free); ++number)
        free = shortenedName(name, longest, number);
    return free;
}

// The name with date and time before it, and a number where another file has come there in the same second.
std::string datedName(const RejectOrder& order, const std::string& name, std::size_t longest) {
    const std::string date = secondStamp(order.clock.now());
    std::string dated = freeName(order, date + "_" + name, longest);
    for (unsigned number = 2; number < kMostNames && isTaken(order, dated); ++number)
        dated = freeName(order, date + " " + std::to_string(number) + "_" + name, longest);
    return dated;
}

Task<Result<>> moveUnderShortName(RejectOrder order, std::string name, std::size_t longest) {
    const Path target = joinPath(order.folder, freeName(order, name, longest));
    co_return co_await order.toolbox.move({order.file, target, Replace::never, order.held});
}

}  // namespace

Task<Result<>> rejectFile(RejectOrder order) {
    const Message file = "File " + named(order.file);
    std::string name = nameOf(order.file);
    const std::size_t longest = order.toolbox.longestName(order.folder);
    const bool isRenamed = isTaken(order, name);
    bool isThere = false;
    if (isRenamed) {
        name = datedName(order, name, longest);
        order.report.showInPanel1(file + " File exists rename file to " + named(name));
        const Result<> renamed = co_await order.toolbox.rename(order.file, joinPath(order.folder, name));
        isThere = renamed.ok();  // never across file systems
    }
    Result<> moved;
    if (!isThere) moved = co_await moveUnderShortName(order, name, longest);
    if (moved.failedWith(FaultKind::nameTooLong)) moved = co_await moveUnderShortName(order, name, kShortName);
    if (!moved.ok() && isRenamed) order.report.showInPanel1(file + " did not rename file!");
    if (!moved.ok()) order.report.showInPanel1(file + " did not move to reject folder!");
    co_return moved;
}

}  // namespace vantrell
