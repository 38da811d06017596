// SPDX-License-Identifier: MIT
#include "platform/qt/qt_tray.h"

#include <QApplication>
#include <QStyle>
#include <chrono>

namespace vantrell {

namespace {

constexpr std::chrono::milliseconds kWatch{500};

}  // namespace

QtTray::QtTray() {
    watch_.setInterval(kWatch);
    QObject::connect(&watch_, &QTimer::timeout, &watch_, [this] { watchAvailability(); });
}

QtTray::~QtTray() = default;

bool QtTray::isAvailable() const { return icon_ && QSystemTrayIcon::isSystemTrayAvailable(); }

void QtTray::add(const std::string& tip) {
    mPopupSys_ = std::make_unique<QMenu>();
    mPopupSys_->setObjectName(QStringLiteral("mPopupSys"));
    QAction* restore = mPopupSys_->addAction(QStringLiteral("Edit &Preferences"));
    restore->setObjectName(QStringLiteral("mpopRestore"));
    QAction* exit = mPopupSys_->addAction(QStringLiteral("&Exit"));
    exit->setObjectName(QStringLiteral("mPopExit"));
    QObject::connect(restore, &QAction::triggered, &watch_, [this] {
        if (events_) events_->editPreferencesChosen();
    });
    QObject::connect(exit, &QAction::triggered, &watch_, [this] {
        if (events_) events_->trayExitChosen();
    });
    icon_ = std::make_unique<QSystemTrayIcon>(QApplication::style()->standardIcon(QStyle::SP_ComputerIcon));
    icon_->setToolTip(QString::fromStdString(tip));
    icon_->setContextMenu(mPopupSys_.get());
    QObject::connect(icon_.get(), &QSystemTrayIcon::activated, &watch_, [this](QSystemTrayIcon::ActivationReason why) {
        const bool isLeft = why == QSystemTrayIcon::Trigger || why == QSystemTrayIcon::DoubleClick;
        if (isLeft && events_) events_->trayClicked();
    });
    icon_->show();
    wasAvailable_ = isAvailable();
    watch_.start();
}

void QtTray::remove() {
    watch_.stop();
    icon_.reset();
}

void QtTray::watchAvailability() {
    const bool available = isAvailable();
    if (std::exchange(wasAvailable_, available) != available && events_) events_->trayAvailabilityChanged(available);
}

}  // namespace vantrell
