// SPDX-License-Identifier: MIT
#pragma once

#include <QMenu>
#include <QSystemTrayIcon>
#include <memory>

#include "platform/qt/tray_areas.h"
#include "platform/tray.h"

namespace vantrell {

/// Qt's tray icon: a StatusNotifierItem, or an XEmbed window where there is no host for one. Which of the two is
/// settled when the first area appears; Qt cannot change it afterwards.
class QtTray final : public Tray {
public:
    QtTray();
    ~QtTray() override;

    void setEvents(TrayEvents* events) { events_ = events; }

    [[nodiscard]] bool isAvailable() const override;
    void add(const std::string& tip) override;
    void remove() override;

private:
    enum class Kind { none, statusNotifier, xEmbed };

    void makeMenu();
    void areasChanged();
    void makeIcon();
    [[nodiscard]] Kind kindOfArea() const;

    TrayEvents* events_ = nullptr;
    TrayAreas areas_;
    QString tip_;
    std::unique_ptr<QMenu> mPopupSys_;
    std::unique_ptr<QSystemTrayIcon> icon_;
    Kind kind_ = Kind::none;
    bool isWanted_ = false;
    bool wasAvailable_ = false;
};

}  // namespace vantrell
