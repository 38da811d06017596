// SPDX-License-Identifier: MIT
#pragma once

#include <QSocketNotifier>
#include <memory>

#include "platform/event_source.h"

namespace vantrell {

/// Has Qt's event loop serve an event source for as long as this lives. The source outlives it.
class QtEventWatch {
public:
    explicit QtEventWatch(EventSource& source);

private:
    std::unique_ptr<QSocketNotifier> signalled_;  // null for a source from which nothing comes
};

}  // namespace vantrell
