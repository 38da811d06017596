// SPDX-License-Identifier: MIT
#include "platform/qt/qt_tray.h"

#include <utility>

#include "platform/qt/program_icon.h"

namespace vantrell {

QtTray::QtTray() : areas_([this] { areasChanged(); }) {}

QtTray::~QtTray() = default;

bool QtTray::isAvailable() const {
    if (!icon_) return false;
    return kind_ == Kind::statusNotifier ? areas_.hasStatusNotifierHost() : areas_.hasXEmbedTray();
}

void QtTray::add(const std::string& tip) {
    tip_ = QString::fromStdString(tip);
    isWanted_ = true;
    makeMenu();
    areas_.watch();
    areasChanged();
}

void QtTray::remove() {
    isWanted_ = false;
    icon_.reset();
}

// The entries are carried out later, from the event loop, since the last entry removes the icon together with this
// menu.
void QtTray::makeMenu() {
    mPopupSys_ = std::make_unique<QMenu>(QStringLiteral("&SysTray"));
    mPopupSys_->setObjectName(QStringLiteral("mPopupSys"));
    const auto add = [this](const QString& caption, const QString& name, void (TrayEvents::*chosen)()) {
        QAction* entry = mPopupSys_->addAction(caption);
        entry->setObjectName(name);
        QObject::connect(
            entry, &QAction::triggered, &areas_,
            [this, chosen] {
                if (events_) (events_->*chosen)();
            },
            Qt::QueuedConnection);
    };
    add(QStringLiteral("Edit &Preferences"), QStringLiteral("mpopRestore"), &TrayEvents::editPreferencesChosen);
    add(QStringLiteral("&Exit"), QStringLiteral("mPopExit"), &TrayEvents::trayExitChosen);
}

void QtTray::areasChanged() {
    if (!isWanted_) return;
    if (!icon_) makeIcon();
    const bool available = isAvailable();
    if (std::exchange(wasAvailable_, available) != available && events_) events_->trayAvailabilityChanged(available);
}

QtTray::Kind QtTray::kindOfArea() const {
    if (!areas_.isKnown()) return Kind::none;
    if (areas_.hasStatusNotifierHost()) return Kind::statusNotifier;
    return areas_.hasXEmbedTray() ? Kind::xEmbed : Kind::none;
}

// Qt looks for a notification area only once. It must therefore not look before there is one.
void QtTray::makeIcon() {
    kind_ = kindOfArea();
    if (kind_ == Kind::none || !QSystemTrayIcon::isSystemTrayAvailable()) return;
    icon_ = std::make_unique<QSystemTrayIcon>(programIcon());
    icon_->setObjectName(QStringLiteral("trayIcon"));
    icon_->setToolTip(tip_);
    icon_->setContextMenu(mPopupSys_.get());
    QObject::connect(
        icon_.get(), &QSystemTrayIcon::activated, &areas_,
        [this](QSystemTrayIcon::ActivationReason why) {
            const bool isLeft = why == QSystemTrayIcon::Trigger || why == QSystemTrayIcon::DoubleClick;
            if (isLeft && events_) events_->trayClicked();
        },
        Qt::QueuedConnection);
    icon_->show();
}

}  // namespace vantrell
