#pragma once

#include "Core/Sessions/SessionState.h"

#include <QObject>

#include <optional>

class QMenu;
class QSystemTrayIcon;

namespace morvane {

class MorvaneSettings;
class SessionStore;
class StatusItemHost;

/// The icon among the desktop's status items, in the colour of the sessions' aggregate state. It
/// exists while the person wants it and the desktop has a place for it: made before there is one,
/// it would never appear. Owned by `AppDelegate`; main thread.
class StatusItem : public QObject {
    Q_OBJECT

public:
    /// All must outlive the item.
    StatusItem(SessionStore &store, MorvaneSettings &settings, StatusItemHost &host, QMenu &menu);

    /// False while the person doesn't want it, or the desktop has no place for it.
    bool isShown() const { return m_item != nullptr; }

signals:
    /// The icon itself was clicked, not its menu.
    void activated();

private:
    void refreshVisibility();
    void build();
    void updateIcon();

    SessionStore &m_store;
    MorvaneSettings &m_settings;
    StatusItemHost &m_host;
    QMenu &m_menu;
    QSystemTrayIcon *m_item = nullptr;        ///< null while it isn't shown
    std::optional<SessionState> m_shownState; ///< what the item's colour stands for
};

} // namespace morvane
