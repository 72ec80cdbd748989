#pragma once

#include "Platform/HotKeys.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QVariantMap>

#include <functional>
#include <map>

namespace morvane {

/// Hot keys of a Wayland desktop, which only its portal gives out. The portal asks the person once
/// which keys to use, and remembers them, so it has no keys for a moment only. Owned by the
/// application.
class GlobalShortcutsPortal : public HotKeys {
    Q_OBJECT

public:
    /// Needs a bus connection of its own: the program identifies itself on it, and a portal accepts
    /// that only as the first call.
    explicit GlobalShortcutsPortal(const QDBusConnection &bus);

    std::uint32_t registerKey(const HotKey &key, const QString &purpose) override;
    void unregisterKey(std::uint32_t id) override;
    State state(std::uint32_t id) const override;

    bool desktopChoosesKeys() const override { return true; }

    /// Does nothing, since no key is ever `taken`: the person has been asked and must not be asked
    /// again.
    void retry() override {}

private slots:
    void answered(const QDBusMessage &message);
    void activated(const QDBusMessage &message);
    void changed(const QDBusMessage &message);
    void closed(const QDBusMessage &message);

private:
    struct Key {
        HotKey key;
        QString purpose;
        State state = State::unavailable;
    };
    using Use = std::function<void(const QVariantMap &results)>;

    void introduce();
    void startAnew();
    void closeSession();
    void bindShortcuts();
    void takeShortcuts(const QVariant &list);
    void ask(const QString &method, QVariantList arguments, QVariantMap options, Use use);
    void send(const QDBusMessage &call);
    void endRequest();
    void setStates(const std::function<State(std::uint32_t id)> &stateOf);

    QDBusConnection m_bus;
    QDBusServiceWatcher m_watcher;
    std::map<std::uint32_t, Key> m_keys; ///< only keys with a purpose
    std::uint32_t m_lastID = 0;
    QString m_session; ///< the session's object path; empty without one
    QString
        m_request; ///< the object path of what the portal hasn't answered yet; empty without one
    Use m_use;     ///< called with that answer
    int m_tokens = 0;
};

} // namespace morvane
