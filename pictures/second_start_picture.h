// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "helpers/OpenedMsg/opened_msg_window.h"
#include "platform/linux/unix_show_listener.h"
#include "rig/temporary_folder.h"

namespace vantrell::test {

/// Draws the window that a second start opens, as "second-start".
inline void drawSecondStart(const std::function<void(QWidget&, const QString&)>& save) {
    const TemporaryFolder folder;
    UnixShowListener program;
    if (!program.listen(folder.path(), [] {})) qFatal("cannot listen");
    OpenedMsgWindow window(folder.path());
    window.start();
    save(window, QStringLiteral("second-start"));
}

}  // namespace vantrell::test
