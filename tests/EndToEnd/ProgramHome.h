#pragma once

#include "Support/TemporaryHome.h"

#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

namespace morvane {

/// A home folder for one run of the program, for as long as it lives: nothing of the person's own
/// home, settings or running program is in reach of what is started with its environment.
class ProgramHome : public TemporaryHome {
public:
    /// The settings are those of a person who has long been through the welcome, who sees it also
    /// while nothing happens, with a free port and no network beyond the machine.
    ProgramHome();

    /// Without a display and without a session bus, whatever the test itself has.
    const QProcessEnvironment &environment() const { return m_environment; }
    void setVariable(const QString &name, const QString &value) {
        m_environment.insert(name, value);
    }

    /// The command of a hook, for `ChildProcess`.
    QStringList hook(const QStringList &arguments) const;

    /// True when the program has written its forwarder, which it does once it listens.
    bool waitForHook() const;

private:
    QProcessEnvironment m_environment;
};

} // namespace morvane
