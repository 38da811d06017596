// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusServiceWatcher>
#include <QDBusUnixFileDescriptor>
#include <QObject>
#include <QSessionManager>
#include <functional>

namespace vantrell {

/// The end of the session, from the X session manager, from logind, or by Qt's own quitting. Neither is ever refused.
///
/// A session manager first asks everyone to save, and the log-out may still be called off by another program, or only
/// the state of the session is to be written: then `save` is called and the program goes on. When it says that the
/// session ends, and when logind is about to shut the machine down, `closeForGood` is called, which saves and ends the
/// event loop; logind waits for it (5 s unless it is set up otherwise). `closeForGood` may be called more than once.
class QtSessionEnd final : public QObject {
    Q_OBJECT

public:
    QtSessionEnd(std::function<void()> save, std::function<void()> closeForGood);

    /// Begins to listen, and asks logind to wait for us. Nothing happens where there is no such thing.
    void start();

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private Q_SLOTS:
    void prepareForShutdown(bool begins);

private:
    void listenToSessionManager();
    void listenToLogind();
    void delayShutdown();

    std::function<void()> save_;
    std::function<void()> closeForGood_;
    QDBusServiceWatcher logind_;
    QDBusUnixFileDescriptor delay_;
};

}  // namespace vantrell
