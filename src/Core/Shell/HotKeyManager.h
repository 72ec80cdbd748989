#pragma once

#include "Platform/HotKeys.h"

#include <functional>
#include <optional>

namespace morvane {

class Scheduler;

/// One system-wide key and what it does. Gives the key back at its end. Main thread.
class HotKeyManager : public QObject {
    Q_OBJECT

public:
    /// Both must outlive it.
    HotKeyManager(HotKeys &hotKeys, Scheduler &scheduler);
    ~HotKeyManager() override;

    /// Holds this key from now on, in the place of the one before. The action runs on a later turn
    /// of the event loop than the press. `purpose` as in `HotKeys`.
    void registerKey(const HotKey &key, std::function<void()> action, const QString &purpose = {});

    /// What was pressed and hasn't been acted on is dropped. Does nothing without a key.
    void unregister();

    /// None while it holds no key.
    std::optional<HotKeys::State> state() const;

private:
    void dispatch(std::uint32_t id);

    HotKeys &m_hotKeys;
    Scheduler &m_scheduler;
    std::optional<std::uint32_t> m_id; ///< of the key in the port
    std::function<void()> m_action;
};

} // namespace morvane
