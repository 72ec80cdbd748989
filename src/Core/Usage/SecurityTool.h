#pragma once

#include "Platform/SecretStore.h"

#include <atomic>
#include <mutex>

namespace morvane {

/// Guarded access to the desktop's secret store. A store that doesn't answer may be waiting for a
/// person's password, and one whose item is locked would have to. After either, the store isn't
/// asked again until the person allows it. Safe from any thread; owned by those who ask.
class SecurityTool {
public:
    /// The store must outlive this.
    explicit SecurityTool(SecretStore &store) : m_store(store) {}

    /// The secret of this service; `Withheld`, without asking, while the tool is blocked. Calls run
    /// one after the other, and each blocks for up to 2.5 seconds once it is its turn, so not for
    /// the main thread.
    SecretStore::Answer run(const QString &service);

    bool isBlocked() const { return m_isBlocked; }

    /// The person wants it tried once more.
    void unblock() { m_isBlocked = false; }

private:
    SecretStore &m_store;
    std::mutex m_gate; ///< held for the whole of a call
    std::atomic<bool> m_isBlocked = false;
};

} // namespace morvane
