#pragma once

#include "Support/TemporaryHome.h"

#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

namespace morvane {

/// A home folder for one run of the program, which exists as long as this object. What is started
/// with its environment can't reach the person's own home, settings or running program.
class ProgramHome : public TemporaryHome {
public:
    /// By its settings the welcome is completed, the program is visible also when idle, its port is
    /// free, and nothing is asked of the network.
    ProgramHome();

    /// Without a display and without a session bus, whatever the test itself has.
    const QProcessEnvironment &environment() const { return m_environment; }
    void setVariable(const QString &name, const QString &value) {
        m_environment.insert(name, value);
    }

    /// The command of a hook, for `ChildProcess`.
    QStringList hook(const QStringList &arguments) const;

    /// Waits until the program has written its forwarder, which it does once it listens. False when
    /// it never does.
    bool waitForHook() const;

private:
    QProcessEnvironment m_environment;
};

} // namespace morvane
