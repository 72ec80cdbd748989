#pragma once

#include "Platform/SecretStore.h"

#include <atomic>
#include <mutex>
#include <variant>

namespace morvane {

/// The guarded way to the desktop's secret store. A store that doesn't answer may be waiting for a
/// person's password, and one whose item is locked would have to: after that nothing is asked any
/// more until the person allows it. Safe from any thread; owned by those who ask.
class SecurityTool {
public:
    /// The store must outlive this.
    explicit SecurityTool(SecretStore &store) : m_store(store) {}

    struct TimedOut {};
    using Outcome = std::variant<QByteArray, TimedOut, Failure>;

    /// The secret of this service. One call after the other; blocks for up to 2.9 seconds once it
    /// is its turn, so not for the main thread.
    Outcome run(const QString &service);

    bool isBlocked() const { return m_isBlocked; }

    /// The person wants it tried once more.
    void unblock() { m_isBlocked = false; }

private:
    SecretStore &m_store;
    std::mutex m_gate; ///< held for the whole of a call
    std::atomic<bool> m_isBlocked = false;
};

} // namespace morvane
