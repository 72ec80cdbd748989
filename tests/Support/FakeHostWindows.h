#pragma once

#include "Platform/HostWindows.h"

#include <QMap>

namespace morvane {

/// Programs and windows of the test's own. It writes down what is asked of it, and answers at once.
class FakeHostWindows : public HostWindows {
public:
    bool canFocusWindows() const override { return letsFocus; }
    void find(const QString &bundleID, Found found) override {
        found(tellsWindows ? std::optional(running.value(bundleID)) : std::nullopt);
    }
    void activate(const HostWindow &window) override { deeds << "activate " + window.id; }
    void launch(const QString &bundleID) override { deeds << "launch " + bundleID; }
    void showTerminal(const TerminalDevice &terminal, Shown shown) override {
        deeds << "show " + terminal.path;
        const bool isHere = terminals.contains(terminal.path) && openedAt <= terminal.knownAt;
        shown(isHere ? Showing::shown : otherwise);
    }

    bool letsFocus = false;
    bool tellsWindows = true;
    QStringList deeds;
    QMap<QString, QList<HostWindow>> running; ///< by their bundle identifiers
    QStringList terminals;                    ///< those that can be shown
    Date openedAt;                            ///< all of them
    Showing otherwise = Showing::unknown;     ///< of any other
};

} // namespace morvane
