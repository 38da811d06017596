// SPDX-License-Identifier: MIT
#include "core/frmSteadyLabel.h"

#include <algorithm>

namespace vantrell {

frmSteadyLabel::frmSteadyLabel(QWidget* parent) : QLabel(parent) { setTextFormat(Qt::PlainText); }

void frmSteadyLabel::reserve(const QString& text) {
    reserved_ = text;
    updateGeometry();
}

QSize frmSteadyLabel::sizeHint() const {
    const QSize now = QLabel::sizeHint();
    if (measuredFont_ != font()) {
        measuredFont_ = font();
        widest_ = fontMetrics().horizontalAdvance(reserved_);
    }
    widest_ = std::max(widest_, now.width());
    return {widest_, now.height()};
}

}  // namespace vantrell
