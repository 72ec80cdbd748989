#pragma once

#include "Core/Agents/AgentKind.h"
#include "Presentation/Windows/ManagedWindow.h"

#include <variant>
#include <vector>

namespace morvane {

/// Greets a new user, and later tells of agents that have appeared on the machine. It stays above
/// other windows, since nobody asked for it and it would be lost among them. Owned by
/// `AppDelegate`, which forgets it when it is closed.
class OnboardingWindow : public ManagedWindow {
    Q_OBJECT

public:
    struct FirstRun {};
    using NewAgents = std::vector<AgentKind>;
    using Mode = std::variant<FirstRun, NewAgents>;

    explicit OnboardingWindow(const Mode &mode);

signals:
    /// The window has been closed.
    void finished();

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void write(const QString &heading, const QString &text);
};

} // namespace morvane
