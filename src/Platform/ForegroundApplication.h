#pragma once

#include <QObject>
#include <QString>

namespace morvane {

/// Tells when another application comes to the front. Main thread.
class ForegroundApplication : public QObject {
    Q_OBJECT

signals:
    /// An application has been activated. Where it is one that we have an identifier for, that is
    /// its bundle identifier; otherwise whatever the desktop calls it.
    void activated(const QString &bundleID);
};

} // namespace morvane
