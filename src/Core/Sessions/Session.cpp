#include "Core/Sessions/Session.h"

#include "Core/Adapters/AgentRegistry.h"
#include "Core/Agents/AgentAdapter.h"

#include <QDir>

namespace morvane {

QString Session::displayName() const {
    if (customName && !customName->isEmpty()) {
        return *customName;
    }
    return nameOf(cwd);
}

QString Session::nameOf(const QString &cwd) {
    if (cwd.isEmpty()) {
        return QStringLiteral("session");
    }
    const QString path = QDir::cleanPath(cwd);
    const QString folder = QDir(path).dirName();
    return folder.isEmpty() ? path : folder; // the root has no name but its path
}

std::optional<QString> Session::contextLabel() const {
    if (!contextTokens) {
        return std::nullopt;
    }
    return *contextTokens > 999 ? tr("%1k").arg(*contextTokens / 1000)
                                : QString::number(*contextTokens);
}

std::optional<ContextPressure> Session::contextPressure() const {
    if (!contextTokens) {
        return std::nullopt;
    }
    if (*contextTokens < 140'000) {
        return ContextPressure::comfortable;
    }
    if (*contextTokens < 180'000) {
        return ContextPressure::filling;
    }
    return *contextTokens < 200'000 ? ContextPressure::tight : ContextPressure::large;
}

std::optional<QString> Session::notablePermissionMode() const {
    if (!permissionMode || permissionMode->isEmpty()) {
        return std::nullopt;
    }
    const auto usual = AgentRegistry::adapter(agent).defaultPermissionModes();
    return usual.contains(*permissionMode) ? std::nullopt : permissionMode;
}

std::optional<QString> Session::pendingDecisionID() const {
    if (pendingApproval) {
        return pendingApproval->id;
    }
    return pendingQuestion ? std::optional(pendingQuestion->id) : std::nullopt;
}

bool Session::isAtWork() const {
    return state == SessionState::working || state == SessionState::needsInput;
}

bool Session::isFinished() const {
    return state == SessionState::done || state == SessionState::failed;
}

} // namespace morvane
