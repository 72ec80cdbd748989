#pragma once

#include "Platform/StatusItemHost.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>

namespace morvane {

/// The host of status notifier items, found through the watcher that all items share. The watcher
/// may be there long before a host, and Qt decides for good at a program's first item whether there
/// is a host; so `isPresent` needs both.
class StatusNotifierHost : public StatusItemHost {
    Q_OBJECT

public:
    /// Never present on a bus that isn't connected.
    explicit StatusNotifierHost(const QDBusConnection &bus);

    bool isPresent() const override { return m_isPresent; }

private slots:
    void ask();

private:
    void setPresent(bool isPresent);

    QDBusConnection m_bus;
    QDBusServiceWatcher m_watcher;
    bool m_isPresent = false;
};

} // namespace morvane
