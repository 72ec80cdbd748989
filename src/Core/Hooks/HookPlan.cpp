#include "Core/Hooks/HookPlan.h"

#include "Core/Adapters/AgentRegistry.h"
#include "Core/Agents/AgentAdapter.h"
#include "Core/Agents/HookTimeout.h"

#include <QDir>
#include <nlohmann/json.hpp>

#include <algorithm>

namespace morvane {

HookPlan::HookPlan(const AgentAdapter &adapter, bool approvalsEnabled)
    : m_adapter(adapter), m_approvalsEnabled(approvalsEnabled),
      m_decides(approvalsEnabled && adapter.supportsDecisions()) {}

QStringList HookPlan::installedEvents() const {
    QStringList events = m_adapter.nativeEvents();
    if (m_decides) {
        events += m_adapter.decisionEvents();
    }
    events.removeDuplicates();
    return events;
}

bool HookPlan::knows(const QString &event) const {
    return m_adapter.nativeEvents().contains(event) || m_adapter.decisionEvents().contains(event);
}

bool HookPlan::isDecisionEvent(const QString &event) const {
    return m_decides && m_adapter.decisionEvents().contains(event);
}

QString HookPlan::command(const QString &event) const {
    return QStringLiteral("%1/%2 %3 %4%5")
        .arg(QDir::homePath(), QLatin1String(hookScriptMarker),
             QString::fromLatin1(rawValue(m_adapter.kind())), event,
             QLatin1String(isDecisionEvent(event) ? " decide" : ""));
}

std::optional<QString> HookPlan::matcher(const QString &event) const {
    return m_adapter.matcher(event);
}

HookWait HookPlan::wait(const QString &event) const {
    if (isDecisionEvent(event)) {
        return {HookTimeout::decision, true};
    }
    if (m_adapter.contract().waitsAtSessionEnd && event == QLatin1String("SessionEnd")) {
        return {HookTimeout::sessionEnd, true};
    }
    return {HookTimeout::event, false};
}

nlohmann::json HookPlan::entry(const QString &event) const {
    return m_adapter.hookEntry(command(event), matcher(event), wait(event));
}

bool HookPlan::isOfAnotherRelease(const QString &event, const nlohmann::json &entry) const {
    const auto isOf = [&](const AgentAdapter *form) { return of(*form).entry(event) == entry; };
    return entry != this->entry(event) &&
           std::ranges::any_of(AgentRegistry::forms(m_adapter.kind()), isOf);
}

bool HookPlan::keepsEntries() const {
    return m_adapter.contract().reviewsHooks;
}

} // namespace morvane
