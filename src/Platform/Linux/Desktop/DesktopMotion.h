#pragma once

#include "Platform/MotionPreference.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QMap>
#include <QString>
#include <QVariantMap>

namespace morvane {

/// Reads the motion settings from the desktop's settings portal; each desktop has its own key.
/// Until the portal has answered, and where there is none, motion is not reduced. Owned by the
/// application; main thread.
class DesktopMotion : public MotionPreference {
    Q_OBJECT

public:
    explicit DesktopMotion(const QDBusConnection &bus);

    bool isReduced() const override { return m_isReduced; }

private slots:
    void settingChanged(const QDBusMessage &message);

private:
    void ask();
    void refresh();
    bool isAskedFor() const;

    QDBusConnection m_bus;
    QDBusServiceWatcher m_watcher;
    QMap<QString, QVariantMap> m_settings; ///< by namespace, as the portal reports them
    bool m_isReduced = false;
};

} // namespace morvane
