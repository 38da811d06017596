// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QUrl>

#include "platform/file_toolbox.h"

namespace vantrell {

/// What the chooser shows beside its list: the whole computer, the home folder, disks that are mounted now, and the
/// bookmarks of the desktop's file managers.
[[nodiscard]] QList<QUrl> sidebarPlaces(const FileToolbox& toolbox);

}  // namespace vantrell
