// SPDX-License-Identifier: MIT
#include "platform/qt/qt_event_watch.h"

namespace vantrell {

QtEventWatch::QtEventWatch(EventSource& source) {
    if (source.handle() == EventSource::kNothing) return;
    signalled_ = std::make_unique<QSocketNotifier>(source.handle(), QSocketNotifier::Read);
    QObject::connect(signalled_.get(), &QSocketNotifier::activated, signalled_.get(), [&source] { source.serve(); });
}

}  // namespace vantrell
