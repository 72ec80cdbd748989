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

/// The token that a person's limits are requested with. Never to be stored, shown or logged.
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

    /// Calls `use` with the token, which may have expired if no better one was found: at once when
    /// the cached token is good for two minutes, else from the main thread once it has been read.
    /// Calls made meanwhile share that reading.
    void read(std::function<void(const Lookup &)> use);

    /// Makes the next call read anew.
    void forget() { m_cached.reset(); }

    /// The person allows another try at the secret store.
    void unblock() { m_tool->unblock(); }

    /// Parses Claude Code's own format, which its file and the secret store share.
    static std::optional<Credential> parse(const QByteArray &bytes);

private:
    static std::optional<Credential> search(SecurityTool &tool);
    bool isGood(const Credential &credential) const;
    void take(const std::optional<Credential> &found);
    Lookup lookup() const;

    Scheduler &m_scheduler;
    BackgroundPool &m_background;
    std::shared_ptr<SecurityTool> m_tool; ///< shared with the background job
    std::optional<Credential> m_cached;
    std::vector<std::function<void(const Lookup &)>> m_waiting; ///< for the reading, if any
};

} // namespace morvane
