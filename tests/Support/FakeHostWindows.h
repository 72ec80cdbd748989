#pragma once

#include "Platform/HostWindows.h"

#include <QMap>

namespace morvane {

/// Programs and windows that a test makes up. Records the calls in `calls`, and answers at once.
class FakeHostWindows : public HostWindows {
public:
    bool canFocusWindows() const override { return letsFocus; }
    void find(const QString &bundleID, Found found) override {
        found(tellsWindows ? std::optional(running.value(bundleID)) : std::nullopt);
    }
    void activate(const HostWindow &window) override { calls << "activate " + window.id; }
    void launch(const QString &bundleID) override { calls << "launch " + bundleID; }
    void showTerminal(const TerminalDevice &terminal, Shown shown) override {
        calls << "show " + terminal.path;
        const bool isHere = terminals.contains(terminal.path) && openedAt <= terminal.knownAt;
        shown(isHere ? Showing::shown : otherwise);
    }

    bool letsFocus = false;
    bool tellsWindows = true;
    QStringList calls;
    QMap<QString, QList<HostWindow>> running; ///< by their bundle identifiers
    QStringList terminals;                    ///< the ones that can be shown
    Date openedAt;                            ///< when all of them were opened
    Showing otherwise = Showing::unknown;     ///< for any other terminal
};

} // namespace morvane
