// SPDX-License-Identifier: MIT
#pragma once

#include <QMenu>
#include <QSystemTrayIcon>
#include <QTimer>
#include <memory>

#include "platform/tray.h"

namespace vantrell {

/// Qt's tray icon: StatusNotifierItem or XEmbed, whichever the desktop has.
class QtTray final : public Tray {
public:
    QtTray();
    ~QtTray() override;

    void setEvents(TrayEvents* events) { events_ = events; }

    [[nodiscard]] bool isAvailable() const override;
    void add(const std::string& tip) override;
    void remove() override;

private:
    void watchAvailability();

    TrayEvents* events_ = nullptr;
    std::unique_ptr<QMenu> mPopupSys_;
    std::unique_ptr<QSystemTrayIcon> icon_;
    QTimer watch_;
    bool wasAvailable_ = false;
};

}  // namespace vantrell
