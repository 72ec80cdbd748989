#include "Core/Usage/SecurityTool.h"

#include <variant>

namespace morvane {

namespace {

/// Any store answers sooner, unless it waits for a person.
constexpr Seconds answerLimit(2.5);

} // namespace

SecretStore::Answer SecurityTool::run(const QString &service) {
    const std::lock_guard lock(m_gate);
    if (m_isBlocked) {
        return SecretStore::Withheld{};
    }
    SecretStore::Answer answer = m_store.secret(service, answerLimit);
    m_isBlocked = std::holds_alternative<SecretStore::Withheld>(answer);
    return answer;
}

} // namespace morvane
