#pragma once

#include "Core/Settings/DisplayTargetMode.h"
#include "Core/Settings/FloatingPosition.h"
#include "Platform/HotKey.h"
#include "Platform/Time.h"

#include <QMap>
#include <QObject>
#include <QStringList>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <optional>

namespace morvane {

class Defaults;

/// A person's preferences, and a few facts that must survive a restart. Every property is one key
/// of the defaults: read once at creation, written back at once on every assignment, even of an
/// equal value. Main thread only.
///
/// A new property needs its accessors and member here, and a row in the table of keys.
///
/// There is one instance over the standard defaults, `shared`; `launch` takes it and passes it to
/// whoever needs it.
class MorvaneSettings : public QObject {
    Q_OBJECT

public:
    /// The defaults must outlive the settings. Makes the token on the first start, after taking
    /// over what an installation under the application's former identifier has stored.
    explicit MorvaneSettings(Defaults &defaults);

    static MorvaneSettings &shared();

    /// Every key that the application may have written, retired ones too.
    static const QStringList &allKeys();

    /// Removes every key from the defaults, which then write nothing any more. The properties keep
    /// their values for this run. False if some of it is still on the disk.
    [[nodiscard]] bool removeStored();

    Defaults &defaults() const { return m_defaults; }

    /// The secret that the forwarders share with the event server. Never to be shown.
    const QString &eventToken() const { return m_eventToken; }

    std::uint16_t port() const { return m_port; }
    void setPort(std::uint16_t port) { assign(m_port, port); }
    DisplayTargetMode displayMode() const { return m_displayMode; }
    void setDisplayMode(DisplayTargetMode mode) { assign(m_displayMode, mode); }
    FloatingPosition floatingPosition() const { return m_floatingPosition; }
    void setFloatingPosition(FloatingPosition position) { assign(m_floatingPosition, position); }
    bool hideOverFullscreen() const { return m_hideOverFullscreen; }
    void setHideOverFullscreen(bool hide) { assign(m_hideOverFullscreen, hide); }
    bool showWhenIdle() const { return m_showWhenIdle; }
    void setShowWhenIdle(bool show) { assign(m_showWhenIdle, show); }
    bool showMenuBarIcon() const { return m_showMenuBarIcon; }
    void setShowMenuBarIcon(bool show) { assign(m_showMenuBarIcon, show); }
    bool soundEnabled() const { return m_soundEnabled; }
    void setSoundEnabled(bool enabled) { assign(m_soundEnabled, enabled); }
    bool soundOnNeedsInput() const { return m_soundOnNeedsInput; }
    void setSoundOnNeedsInput(bool enabled) { assign(m_soundOnNeedsInput, enabled); }
    bool soundOnDone() const { return m_soundOnDone; }
    void setSoundOnDone(bool enabled) { assign(m_soundOnDone, enabled); }
    bool showFableBar() const { return m_showFableBar; }
    void setShowFableBar(bool show) { assign(m_showFableBar, show); }
    /// Minutes after which a finished or idle session leaves the list.
    int autoClearMinutes() const { return m_autoClearMinutes; }
    void setAutoClearMinutes(int minutes) { assign(m_autoClearMinutes, minutes); }
    /// At most a century: the file may hold more minutes than can be added to a date.
    Seconds autoClearAfter() const {
        constexpr int century = 100 * 366 * 24 * 60;
        return std::chrono::minutes(std::clamp(m_autoClearMinutes, -century, century));
    }
    /// Working directory to the person's own name for it.
    const QMap<QString, QString> &sessionNames() const { return m_sessionNames; }
    void setSessionNames(const QMap<QString, QString> &names) { assign(m_sessionNames, names); }
    bool usageEnabled() const { return m_usageEnabled; }
    void setUsageEnabled(bool enabled) { assign(m_usageEnabled, enabled); }
    /// Safe from any thread: the server asks it for every hook that could wait.
    bool approvalsEnabled() const { return m_approvalsEnabled; }
    void setApprovalsEnabled(bool enabled) { assign(m_approvalsEnabled, enabled); }
    bool soundOnUsageLimit() const { return m_soundOnUsageLimit; }
    void setSoundOnUsageLimit(bool enabled) { assign(m_soundOnUsageLimit, enabled); }
    bool hasCompletedFirstRun() const { return m_hasCompletedFirstRun; }
    void setHasCompletedFirstRun(bool completed) { assign(m_hasCompletedFirstRun, completed); }
    bool installPingEnabled() const { return m_installPingEnabled; }
    void setInstallPingEnabled(bool enabled) { assign(m_installPingEnabled, enabled); }
    bool installPingSent() const { return m_installPingSent; }
    void setInstallPingSent(bool sent) { assign(m_installPingSent, sent); }
    /// The raw values of the agents that were offered; none where no list was ever made, which is
    /// not the same as an empty one.
    const std::optional<QStringList> &knownAgents() const { return m_knownAgents; }
    void setKnownAgents(const std::optional<QStringList> &agents) { assign(m_knownAgents, agents); }
    /// The key that opens the panel.
    const HotKey &panelKey() const { return m_panelKey; }
    void setPanelKey(const HotKey &key) { assign(m_panelKey, key); }

    /// The person's own name for a working directory.
    std::optional<QString> name(const QString &cwd) const;

    /// Names a working directory; an absent or empty name takes the present one away.
    void setName(const std::optional<QString> &name, const QString &cwd);

signals:
    /// A property is about to change.
    void willChange();
    /// A property has been assigned.
    void changed();

private:
    /// Calls `visit` with each row of the table of keys, in its order.
    template <typename Visit>
    static void forEachRow(Visit visit);

    void migrateLegacyDefaults();
    void readAll();

    template <typename Property, typename Value>
    void assign(Property &property, const Value &value) {
        emit willChange();
        property = value;
        store(&property);
        emit changed();
    }

    /// Writes the property at this address under the key of its row.
    void store(const void *property);

    Defaults &m_defaults;
    QString m_eventToken;
    std::uint16_t m_port;
    DisplayTargetMode m_displayMode;
    FloatingPosition m_floatingPosition;
    bool m_hideOverFullscreen;
    bool m_showWhenIdle;
    bool m_showMenuBarIcon;
    bool m_soundEnabled;
    bool m_soundOnNeedsInput;
    bool m_soundOnDone;
    bool m_showFableBar;
    int m_autoClearMinutes;
    QMap<QString, QString> m_sessionNames;
    bool m_usageEnabled;
    std::atomic<bool> m_approvalsEnabled;
    bool m_soundOnUsageLimit;
    bool m_hasCompletedFirstRun;
    bool m_installPingEnabled;
    bool m_installPingSent;
    std::optional<QStringList> m_knownAgents;
    HotKey m_panelKey;
};

} // namespace morvane
