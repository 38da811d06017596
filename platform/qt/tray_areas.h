// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusServiceWatcher>
#include <QObject>
#include <QTimer>
#include <cstdint>
#include <functional>

namespace vantrell {

/// The notification areas of the desktop, watched: hosts of StatusNotifierItems on the session bus, and the XEmbed tray
/// of the X display. Qt's own question whether there is one is not used for this: its first answer about hosts stands
/// for the life of the process, so a panel that starts after the program would never be found.
class TrayAreas final : public QObject {
    Q_OBJECT

public:
    explicit TrayAreas(std::function<void()> changed);

    /// From now on `changed` is called, from the event loop, whenever an answer below may have changed.
    void watch();
    /// Whether the session bus has answered for the first time, or there is none.
    [[nodiscard]] bool isKnown() const { return isKnown_; }
    [[nodiscard]] bool hasStatusNotifierHost() const { return hasHost_; }
    /// Asks the X server. False without one.
    [[nodiscard]] bool hasXEmbedTray() const;

private Q_SLOTS:
    void askForHost();

private:
    void hostAnswered(bool hasHost);
    void lookForXEmbedTray();

    std::function<void()> changed_;
    QDBusServiceWatcher watcher_;
    QTimer timer_;
    std::uint64_t question_ = 0;
    std::uint32_t selection_ = 0;
    bool isKnown_ = false;
    bool hasHost_ = false;
    bool hadXEmbedTray_ = false;
};

}  // namespace vantrell
