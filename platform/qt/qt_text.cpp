// SPDX-License-Identifier: MIT
#include "platform/qt/qt_text.h"

#include "base/display_text.h"

namespace vantrell {

QString shownText(std::string_view bytes) { return QString::fromStdString(displayText(bytes)); }

QString tipText(const QString& text) {
    return QStringLiteral("<p style=\"white-space:pre-wrap\">%1</p>").arg(text.toHtmlEscaped());
}

QString breakableText(const QString& text) {
    constexpr int kLongestRun = 40;
    constexpr QChar kZeroWidthSpace(0x200B);
    QString result;
    int run = 0;
    for (const QChar character : text) {
        if (run >= kLongestRun && !character.isLowSurrogate() && !character.isMark()) {
            result += kZeroWidthSpace;
            run = 0;
        }
        result += character;
        run = character.isSpace() || character == QLatin1Char('/') ? 0 : run + 1;
    }
    return result;
}

}  // namespace vantrell
