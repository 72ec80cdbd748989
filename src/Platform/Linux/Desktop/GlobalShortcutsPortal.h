#pragma once

#include "Platform/HotKeys.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QVariantMap>

#include <functional>
#include <map>

namespace morvane {

/// Keys of a Wayland desktop, which gives them away by its portal alone: it asks the person which
/// keys they shall be, once, and remembers that. So it has none that are only needed for a moment.
/// Owned by the application.
class GlobalShortcutsPortal : public HotKeys {
    Q_OBJECT

public:
    /// The bus should be of no other use to the program, which says on it who it is: a portal
    /// doesn't listen to that after anything else.
    explicit GlobalShortcutsPortal(const QDBusConnection &bus);

    std::uint32_t registerKey(const HotKey &key, const QString &purpose) override;
    void unregisterKey(std::uint32_t id) override;
    State state(std::uint32_t id) const override;

    bool desktopChoosesKeys() const override { return true; }

    /// Nothing, since none is ever taken: the person has been asked, and isn't to be again.
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
    std::map<std::uint32_t, Key> m_keys; ///< those that have a purpose
    std::uint32_t m_lastID = 0;
    QString m_session; ///< its object; empty without one
    QString
        m_request; ///< the object of what the desktop has been asked; empty when all is answered
    Use m_use;     ///< of the answer to that
    int m_tokens = 0;
};

} // namespace morvane
