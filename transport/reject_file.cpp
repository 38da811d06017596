// SPDX-License-Identifier: MIT
#include "transport/reject_file.h"

#include "base/date_text.h"

namespace vantrell {

Task<Result<>> rejectFile(RejectOrder order) {
    const Message file = "File " + named(order.file);
    const Path name = nameOf(order.file);
    Path target = joinPath(order.folder, name);
    bool isThere = false;
    if (order.toolbox.kindOf(target) != EntryKind::missing) {
        const Path newName = secondStamp(order.clock.now()) + "_" + name;
        target = joinPath(order.folder, newName);
        order.report.showInPanel1(file + " File exists rename file to " + named(newName));
        const Result<> renamed = co_await order.toolbox.rename(order.file, target);
        isThere = renamed.ok();
        if (!isThere) order.report.showInPanel1(file + " did not rename file!");
    }
    Result<> moved;
    if (!isThere) moved = co_await order.toolbox.move({order.file, target, Replace::never, order.held});
    if (!moved.ok()) order.report.showInPanel1(file + " did not move to reject folder!");
    co_return moved;
}

}  // namespace vantrell
