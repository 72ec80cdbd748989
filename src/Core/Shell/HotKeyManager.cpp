#include "Core/Shell/HotKeyManager.h"

#include "Platform/Scheduler.h"

#include <QPointer>

#include <utility>

namespace morvane {

HotKeyManager::HotKeyManager(HotKeys &hotKeys, Scheduler &scheduler)
    : m_hotKeys(hotKeys), m_scheduler(scheduler) {
    connect(&m_hotKeys, &HotKeys::pressed, this, &HotKeyManager::dispatch);
}

HotKeyManager::~HotKeyManager() {
    unregister();
}

void HotKeyManager::registerKey(const HotKey &key, std::function<void()> action,
                                const QString &purpose) {
    unregister();
    m_action = std::move(action);
    m_id = m_hotKeys.registerKey(key, purpose);
}

void HotKeyManager::unregister() {
    if (const auto id = std::exchange(m_id, std::nullopt)) {
        m_hotKeys.unregisterKey(*id);
    }
}

std::optional<HotKeys::State> HotKeyManager::state() const {
    return m_id ? std::optional(m_hotKeys.state(*m_id)) : std::nullopt;
}

void HotKeyManager::dispatch(std::uint32_t id) {
    if (id != m_id) {
        return;
    }
    m_scheduler.post([weak = QPointer(this), id] {
        if (weak && weak->m_id == id) {
            // A copy, since the action may end its own registration.
            const auto action = weak->m_action;
            action();
        }
    });
}

} // namespace morvane

#include "moc_HotKeyManager.cpp"
