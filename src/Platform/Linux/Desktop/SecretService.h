#pragma once

#include "Platform/SecretStore.h"

#include <QDBusConnection>

namespace morvane {

/// The desktop's keyring or password safe, through org.freedesktop.secrets. Secrets cross the
/// person's own bus unencrypted. Owned by the application.
class SecretService : public SecretStore {
public:
    explicit SecretService(const QDBusConnection &bus) : m_bus(bus) {}

    Answer secret(const QString &service, Seconds limit) override;

private:
    const QDBusConnection m_bus;
};

} // namespace morvane
