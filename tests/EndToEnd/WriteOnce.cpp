#include "Core/Adapters/AgentRegistry.h"
#include "Core/Hooks/ForwarderScripts.h"
#include "Core/Hooks/HookInstaller.h"
#include "Core/Sessions/CompletedHistory.h"
#include "Core/Settings/Defaults.h"
#include "Core/Settings/MorvaneSettings.h"
#include "Core/Shell/UpdatePackage.h"
#include "Platform/Linux/Desktop/AutostartEntry.h"

#include <QTextStream>

#include <array>

// write_once WRITER [AGENT]: writes one thing in the home folder of the environment. The status
// tells whether it is written; standard error may say why it isn't. A program of its own, so that
// it can be ended in the middle.

namespace {

using namespace morvane;
using Outcome = std::optional<Failure>;

HookInstaller installer(const char *agent) {
    static const MorvaneSettings settings(Defaults::standard());
    return {AgentRegistry::adapter(agentKind(agent).value()), settings, settings.port()};
}

/// What is asked of the defaults comes out all right in this run; the disk has to be asked.
Outcome afterWriting(const QString &key) {
    Defaults &defaults = Defaults::standard();
    defaults.flush();
    const Defaults stored(Defaults::folder(), QStringLiteral("io.morvane.morvane"));
    const bool isStored = stored.value(key) == defaults.value(key);
    return isStored ? std::nullopt : std::optional(Failure{QStringLiteral("not stored")});
}

Outcome connectAgent(const char *agent) {
    return installer(agent).install();
}

Outcome disconnectAgent(const char *agent) {
    return installer(agent).uninstall();
}

Outcome writeDefaults(const char *) {
    Defaults::standard().setValue(QStringLiteral("soundVolume"), 0.5);
    return afterWriting(QStringLiteral("soundVolume"));
}

Outcome writeHistory(const char *) {
    CompletedRecord record;
    record.id = record.cwd = QStringLiteral("/projects/one");
    record.name = QStringLiteral("project");
    CompletedHistory(Defaults::standard()).add(record);
    return afterWriting(QStringLiteral("completedHistory"));
}

Outcome writeScripts(const char *) {
    return ForwarderScripts(QStringLiteral("token"), 40123).writeHookScript();
}

Outcome startAtLogin(const char *) {
    return AutostartEntry(QStringLiteral("/usr/bin/morvane")).registerItem();
}

Outcome dontStartAtLogin(const char *) {
    return AutostartEntry(QStringLiteral("/usr/bin/morvane")).unregisterItem();
}

Outcome keepUpdate(const char *) {
    const auto kept = UpdatePackage::keep(QByteArray(200'000, 'd'), QStringLiteral("2.0"));
    const auto *failure = kept.failure();
    return failure ? std::optional(*failure) : std::nullopt;
}

struct Writer {
    std::string_view name;
    Outcome (*write)(const char *agent);
};

constexpr std::array writers{
    Writer{"connect", connectAgent},          Writer{"disconnect", disconnectAgent},
    Writer{"defaults", writeDefaults},        Writer{"history", writeHistory},
    Writer{"scripts", writeScripts},          Writer{"autostart", startAtLogin},
    Writer{"no-autostart", dontStartAtLogin}, Writer{"update", keepUpdate}};

} // namespace

int main(int argc, char **argv) {
    const auto *const writer = std::ranges::find(writers, argc > 1 ? argv[1] : "", &Writer::name);
    if (writer == writers.end()) {
        return 2;
    }
    const auto failure = writer->write(argc > 2 ? argv[2] : "");
    if (failure) {
        QTextStream(stderr) << failure->message << '\n';
    }
    return failure ? 1 : 0;
}
