#pragma once

#include <QLocalServer>
#include <QLockFile>
#include <QObject>

namespace morvane {

/// Lets one process run for each configuration folder: a second one tells the first that it was
/// started, and gives way. Owned by `main`; main thread.
class SingleInstance : public QObject {
    Q_OBJECT

public:
    /// Two processes with the same configuration folder are the same program to a person.
    explicit SingleInstance(const QString &configFolder);

    /// True when this process is the first. Otherwise the first has been told by now, unless it
    /// hasn't listened for a second.
    bool claim();

signals:
    /// The program was started again.
    void reopened();

private:
    void tellTheFirst() const;

    QString m_socketPath;
    QLockFile m_lock;
    QLocalServer m_server;
};

} // namespace morvane
