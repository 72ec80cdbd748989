#pragma once

#include <QObject>
#include <QString>

namespace morvane {

/// Tells when another application comes to the front. Main thread.
class ForegroundApplication : public QObject {
    Q_OBJECT

signals:
    /// An application has been activated. Carries its bundle identifier if we know one, otherwise
    /// the desktop's name for it.
    void activated(const QString &bundleID);
};

} // namespace morvane
