#include "Core/Adapters/AgentRegistry.h"
#include "Core/Hooks/ForwarderScripts.h"
#include "Core/Hooks/HookInstaller.h"
#include "Core/Settings/Defaults.h"
#include "Core/Settings/MorvaneSettings.h"
#include "Core/Shell/UpdatePackage.h"
#include "Platform/Linux/Desktop/AutostartEntry.h"

#include <QTextStream>

#include <map>
#include <string_view>

// write_once WRITER [AGENT]: writes one thing in the home folder of the environment. The status
// tells whether it is written; standard error may say why it isn't. A program of its own, so that
// it can be ended in the middle.

namespace {

using namespace morvane;
using Outcome = Result<void>;

std::unique_ptr<HookInstaller> installer(const char *agent) {
    static const MorvaneSettings settings(Defaults::standard());
    return HookInstaller::make(AgentRegistry::adapter(agentKind(agent).value()), settings,
                               settings.port());
}

/// In this run the defaults yield the new value even if it isn't stored, so this reads the file.
Outcome writeDefaults(const char *) {
    const QString key = QStringLiteral("soundVolume");
    Defaults &defaults = Defaults::standard();
    defaults.setValue(key, 0.5);
    defaults.flush();
    const Defaults stored(Defaults::folder(), QStringLiteral("io.morvane.morvane"));
    const bool isStored = stored.value(key) == defaults.value(key);
    return isStored ? Outcome() : Failure{QStringLiteral("not stored")};
}

Outcome keepUpdate(const char *) {
    const auto kept = UpdatePackage::keep(QByteArray(200'000, 'd'), QStringLiteral("2.0"));
    return kept ? Outcome() : kept.error();
}

AutostartEntry autostart() {
    return AutostartEntry(QStringLiteral("/usr/bin/morvane"));
}

const std::map<std::string_view, Outcome (*)(const char *agent)> writers{
    {"connect", [](const char *agent) { return installer(agent)->install(); }},
    {"disconnect", [](const char *agent) { return installer(agent)->uninstall(); }},
    {"defaults", writeDefaults},
    {"scripts", [](const char *) { return ForwarderScripts("token", 40123).writeHookScript(); }},
    {"autostart", [](const char *) { return autostart().registerItem(); }},
    {"no-autostart", [](const char *) { return autostart().unregisterItem(); }},
    {"update", keepUpdate}};

} // namespace

int main(int argc, char **argv) {
    const auto writer = writers.find(argc > 1 ? argv[1] : "");
    if (writer == writers.end()) {
        return 2;
    }
    const Outcome written = writer->second(argc > 2 ? argv[2] : "");
    if (!written) {
        QTextStream(stderr) << written.error().message << '\n';
    }
    return written ? 0 : 1;
}
