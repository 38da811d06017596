// SPDX-License-Identifier: MIT
#include "platform/qt/qt_text.h"

#include "base/display_text.h"

namespace vantrell {

QString shownText(std::string_view bytes) { return QString::fromStdString(displayText(bytes)); }

QString tipText(const QString& text) {
    return QStringLiteral("<p style=\"white-space:pre-wrap\">%1</p>").arg(text.toHtmlEscaped());
}

}  // namespace vantrell
