#pragma once

#include "Platform/HostWindows.h"

#include <QMap>
#include <QStringList>

namespace morvane {

/// Programs and windows of the test's own. It writes down what is asked of it, and answers at once.
class FakeHostWindows : public HostWindows {
public:
    void find(const QString &bundleID, Found found) override {
        found(running.contains(bundleID) ? std::optional(running.value(bundleID)) : std::nullopt);
    }
    void raise(const HostWindow &window) override { deeds << "raise " + window.id; }
    void activate(const RunningHost &host) override { deeds << "activate " + host.id; }
    void launch(const QString &bundleID) override { deeds << "launch " + bundleID; }
    void showTerminal(const QString &tty, Shown shown) override {
        deeds << "show " + tty;
        shown(terminals.contains(tty));
    }

    QStringList deeds;
    QMap<QString, RunningHost> running; ///< by their bundle identifiers
    QStringList terminals;              ///< those that can be shown
};

} // namespace morvane
