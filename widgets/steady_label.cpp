// SPDX-License-Identifier: MIT
#include "widgets/steady_label.h"

#include <algorithm>

namespace vantrell {

SteadyLabel::SteadyLabel(QWidget* parent) : QLabel(parent) { setTextFormat(Qt::PlainText); }

void SteadyLabel::reserve(const QStringList& texts) {
    reserved_ = texts;
    measuredFont_.reset();
    updateGeometry();
}

QSize SteadyLabel::sizeHint() const {
    const QSize now = QLabel::sizeHint();
    if (measuredFont_ != font()) {
        measuredFont_ = font();
        widest_ = 0;
        for (const QString& text : reserved_) widest_ = std::max(widest_, fontMetrics().horizontalAdvance(text));
    }
    widest_ = std::max(widest_, now.width());
    return {widest_, now.height()};
}

}  // namespace vantrell
