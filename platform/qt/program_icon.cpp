// SPDX-License-Identifier: MIT
#include "platform/qt/program_icon.h"

#include <embedded_icon_128.h>
#include <embedded_icon_16.h>
#include <embedded_icon_22.h>
#include <embedded_icon_24.h>
#include <embedded_icon_256.h>
#include <embedded_icon_32.h>
#include <embedded_icon_48.h>
#include <embedded_icon_64.h>

#include <QPixmap>

namespace vantrell {

QIcon programIcon() {
    QIcon icon;
    const auto add = [&icon](const unsigned char* bytes, std::size_t size) {
        QPixmap picture;
        if (picture.loadFromData(bytes, static_cast<unsigned int>(size), "PNG")) icon.addPixmap(picture);
    };
    add(embedded_icon_16, embedded_icon_16_size);
    add(embedded_icon_22, embedded_icon_22_size);
    add(embedded_icon_24, embedded_icon_24_size);
    add(embedded_icon_32, embedded_icon_32_size);
    add(embedded_icon_48, embedded_icon_48_size);
    add(embedded_icon_64, embedded_icon_64_size);
    add(embedded_icon_128, embedded_icon_128_size);
    add(embedded_icon_256, embedded_icon_256_size);
    return icon;
}

}  // namespace vantrell
