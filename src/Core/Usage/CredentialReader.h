#pragma once

#include "Core/Usage/SecurityTool.h"
#include "Platform/BackgroundPool.h"

#include <QByteArray>
#include <QObject>

#include <functional>
#include <memory>
#include <optional>
#include <variant>
#include <vector>

namespace morvane {

/// What lets its bearer ask for a person's limits. Never to be stored, shown or logged.
struct Credential {
    QByteArray accessToken; ///< never empty
    std::optional<Date> expiresAt;

    friend bool operator==(const Credential &, const Credential &) = default;
};

/// Finds the token that Claude Code has stored for itself: in its file, or else in the desktop's
/// secret store. Keeps it in memory alone. Main thread.
class CredentialReader : public QObject {
    Q_OBJECT

public:
    struct Missing {};
    struct KeychainUnavailable {}; ///< until the person allows another try
    using Lookup = std::variant<Credential, Missing, KeychainUnavailable>;

    /// All must outlive the reader; the store must outlive what runs in the background.
    CredentialReader(SecretStore &store, Scheduler &scheduler, BackgroundPool &background);

    /// Hands on the token, which may have expired where no better one was found: at once when the
    /// last one is good for two minutes, else from the main thread when it has been read. Those who
    /// ask meanwhile wait for the same reading.
    void read(std::function<void(const Lookup &)> use);

    /// Makes the next call read anew.
    void forget() { m_cached.reset(); }

    /// The person allows another try at the secret store.
    void unblock() { m_tool->unblock(); }

    /// The token in Claude Code's own form, of the file and of the secret store alike.
    static std::optional<Credential> parse(const QByteArray &bytes);

private:
    static std::optional<Credential> search(SecurityTool &tool);
    bool isGood(const Credential &credential) const;
    void take(const std::optional<Credential> &found);
    Lookup lookup() const;

    Scheduler &m_scheduler;
    BackgroundPool &m_background;
    std::shared_ptr<SecurityTool> m_tool; ///< shared with the reading
    std::optional<Credential> m_cached;
    std::vector<std::function<void(const Lookup &)>> m_waiting; ///< for the reading, if any
};

} // namespace morvane
