#include "Core/Adapters/AgentRegistry.h"
#include "Core/Hooks/HookInstaller.h"
#include "Core/Settings/Defaults.h"
#include "Core/Settings/MorvaneSettings.h"

#include <QTextStream>

// install_agent AGENT [disconnect]: connects or disconnects one agent in the home folder of the
// environment, and says on standard error why it can't. A program of its own, so that it can be
// ended in the middle.

int main(int argc, char **argv) {
    using namespace morvane;
    const auto kind = agentKind(argc > 1 ? argv[1] : "");
    if (!kind) {
        return 2;
    }
    const MorvaneSettings settings(Defaults::standard());
    const HookInstaller installer(AgentRegistry::adapter(*kind), settings, settings.port());
    const auto failure = argc > 2 ? installer.uninstall() : installer.install();
    if (failure) {
        QTextStream(stderr) << failure->message << '\n';
    }
    return failure ? 1 : 0;
}
