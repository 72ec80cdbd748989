#pragma once

#include "Platform/HotKeys.h"

#include <functional>
#include <optional>

namespace morvane {

class Scheduler;

/// One system-wide key and what it does. The destructor gives the key back. Main thread.
class HotKeyManager : public QObject {
    Q_OBJECT

public:
    /// Both must outlive the manager.
    HotKeyManager(HotKeys &hotKeys, Scheduler &scheduler);
    ~HotKeyManager() override;

    /// Takes this key, in place of the one before. The action runs in a later turn of the event
    /// loop than the press. `purpose` as in `HotKeys`.
    void registerKey(const HotKey &key, std::function<void()> action, const QString &purpose = {});

    /// Gives the key back, and drops a press whose action hasn't run yet. Does nothing without a
    /// key.
    void unregister();

    /// None while it holds no key.
    std::optional<HotKeys::State> state() const;

private:
    void dispatch(std::uint32_t id);

    HotKeys &m_hotKeys;
    Scheduler &m_scheduler;
    std::optional<std::uint32_t> m_id; ///< the port's id of the key
    std::function<void()> m_action;
};

} // namespace morvane
