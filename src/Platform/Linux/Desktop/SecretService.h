#pragma once

#include "Platform/SecretStore.h"

#include <QDBusConnection>

namespace morvane {

/// The desktop's keyring or password safe, by the interface org.freedesktop.secrets. Secrets cross
/// the person's own bus as they are. Owned by the application.
class SecretService : public SecretStore {
public:
    explicit SecretService(const QDBusConnection &bus) : m_bus(bus) {}

    Answer secret(const QString &service, Seconds limit) override;

private:
    const QDBusConnection m_bus;
};

} // namespace morvane
