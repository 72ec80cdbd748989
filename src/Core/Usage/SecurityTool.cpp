#include "Core/Usage/SecurityTool.h"

namespace morvane {

namespace {

/// Any store answers sooner than that, unless somebody has to do something first.
constexpr Seconds answerLimit(2.5);

} // namespace

SecurityTool::Outcome SecurityTool::run(const QString &service) {
    const std::lock_guard lock(m_gate);
    if (m_isBlocked) {
        return TimedOut{};
    }
    const SecretStore::Answer answer = m_store.secret(service, answerLimit);
    if (std::holds_alternative<SecretStore::Withheld>(answer)) {
        m_isBlocked = true;
        return TimedOut{};
    }
    if (const auto *failure = std::get_if<Failure>(&answer)) {
        return *failure;
    }
    return std::get<QByteArray>(answer);
}

} // namespace morvane
