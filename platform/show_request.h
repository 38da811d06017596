// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "base/path.h"

namespace vantrell {

/// Where the running program of a data folder hears that it is to show its window. Nothing else can be asked for.
class ShowRequestListener {
public:
    ShowRequestListener() = default;
    ShowRequestListener(const ShowRequestListener&) = delete;
    ShowRequestListener& operator=(const ShowRequestListener&) = delete;
    virtual ~ShowRequestListener() = default;

    /// To be called by the holder of the folder's instance lock only: what an earlier holder left behind is replaced.
    /// False when nothing can be heard; the program does without. `show` is called from the event loop and must not
    /// destroy the listener.
    virtual bool listen(const Path& folder, std::function<void()> show) = 0;
};

/// One request to the running program of a data folder.
class ShowRequest {
public:
    enum class Answer {
        pending,     ///< not yet; more may come
        shown,       ///< the window is shown
        notRunning,  ///< nobody listens in this folder
        refused,     ///< somebody listens, and did not do it
    };

    ShowRequest() = default;
    ShowRequest(const ShowRequest&) = delete;
    ShowRequest& operator=(const ShowRequest&) = delete;
    virtual ~ShowRequest() = default;

    /// Never waits. To be asked again, after a while, as long as the answer is pending.
    virtual Answer answer() = 0;
};

}  // namespace vantrell
