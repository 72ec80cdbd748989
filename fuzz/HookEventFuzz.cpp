#include "Core/Adapters/AgentRegistry.h"
#include "Core/Agents/AgentAdapter.h"
#include "Core/Ground/JsonObject.h"
#include "Core/Intake/HookEvent.h"

#include <cstdint>
#include <cstdlib>

// The first byte chooses the agent and its event, the rest is the payload. Whatever the payload,
// decoding it must end well, and answering it with its own input must give JSON.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    using namespace morvane;
    if (size == 0) {
        return 0;
    }
    const AgentAdapter &adapter = *AgentRegistry::all()[data[0] % AgentRegistry::all().size()];
    const QStringList names = adapter.nativeEvents() + adapter.decisionEvents();
    const QString name = names[data[0] / 16 % names.size()];
    const QByteArrayView body(data + 1, static_cast<qsizetype>(size - 1));
    if (const auto event = HookEvent::decode(adapter, name, body, HookOrigin())) {
        const auto answer =
            adapter.encodeDecision(AgentDecision::answer({{event->sessionID, event->sessionID}}),
                                   event->toolName, body, name);
        if (answer && !JsonObject::parse(*answer)) {
            std::abort();
        }
        adapter.encodeDecision(AgentDecision::allowRemembering(AgentDecision::Scope::permanent),
                               event->toolName, body, name);
    }
    return 0;
}
