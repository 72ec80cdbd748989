#pragma once

#include "Platform/Time.h"

#include <QByteArray>
#include <QString>

#include <variant>

namespace morvane {

/// Where the desktop keeps people's secrets.
class SecretStore {
public:
    SecretStore() = default;
    SecretStore(const SecretStore &) = delete;
    SecretStore &operator=(const SecretStore &) = delete;
    virtual ~SecretStore() = default;

    /// The secret would have to be unlocked first, or the store didn't answer in time.
    struct Withheld {};

    /// Nothing is stored, or there is no store.
    struct Missing {};

    using Answer = std::variant<QByteArray, Withheld, Missing>;

    /// The secret that some program has stored for this service. Opens no dialog: what is locked
    /// stays locked. Blocks for up to `limit`; safe from any thread but the main one.
    virtual Answer secret(const QString &service, Seconds limit) = 0;
};

/// For a machine without a secret store.
class NullSecretStore final : public SecretStore {
public:
    Answer secret(const QString &, Seconds) override { return Missing{}; }
};

} // namespace morvane
