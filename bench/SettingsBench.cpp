#include "Core/Adapters/AgentRegistry.h"
#include "Core/Ground/WholeFile.h"
#include "Core/Hooks/AgentConnections.h"
#include "Core/Hooks/HookInstaller.h"
#include "Core/Settings/Defaults.h"
#include "Core/Settings/MorvaneSettings.h"
#include "Row.h"
#include "Support/ManualScheduler.h"
#include "Support/TemporaryHome.h"

#include <nlohmann/json.hpp>

#include <cstdlib>

// What it costs to connect and to disconnect an agent, while a person waits, by the size of its
// settings file, as a multiple of the least that rewrites such a file safely.

namespace {

using namespace morvane;

const QString settingsPath = QStringLiteral(".claude/settings.json");

/// Settings of about this size, filled with rules that a person may have allowed.
QByteArray settingsOf(qsizetype size) {
    QByteArray rules;
    for (int index = 0; rules.size() < size; ++index) {
        rules += (index == 0 ? "" : ",\n      ") + QByteArray("\"Bash(npm run test:") +
                 QByteArray::number(index) + ":*)\"";
    }
    return "{\n  \"model\": \"opus\",\n  \"permissions\": {\n    \"allow\": [\n      " + rules +
           "\n    ]\n  }\n}\n";
}

/// Parses the settings, and writes them back as a whole file.
void leastRewrite(const TemporaryHome &home) {
    const QByteArray text = home.read(settingsPath);
    const auto root = nlohmann::json::parse(text.begin(), text.end(), nullptr, false);
    WholeFile file(home.path(QStringLiteral(".claude/other.json")));
    if (!file.write(QByteArray::fromStdString(root.dump(2)))) {
        std::abort();
    }
}

void measure(const char *size, const QByteArray &text, double budget) {
    const TemporaryHome home;
    home.write(settingsPath, text);
    Defaults defaults{home.path(QStringLiteral("defaults")), QStringLiteral("bench")};
    MorvaneSettings settings{defaults};
    ManualScheduler scheduler;
    AgentConnections connections(settings, scheduler);
    const std::string of = std::string(" Claude Code, whose settings have ") + size;
    const char *least = "the same settings parsed, printed and written once";
    const auto rewrite = [&] { return secondsOf([&] { leastRewrite(home); }); };
    std::vector<double> installs;
    std::vector<double> uninstalls;
    for (int round = -1; round < 15; ++round) {
        const double reference = rewrite();
        const double install = secondsOf([&] { connections.installHooks(AgentKind::claude); });
        const double uninstall = secondsOf([&] { connections.uninstallHooks(AgentKind::claude); });
        if (connections.lastError() || home.read(settingsPath) != text) {
            std::abort();
        }
        if (round >= 0) {
            installs.push_back(install / reference);
            uninstalls.push_back(uninstall / reference);
        }
    }
    print({("connecting" + of).c_str(), least, budget}, installs);
    print({("disconnecting" + of).c_str(), least, budget}, uninstalls);
}

} // namespace

int main() {
    measure("10 KB", settingsOf(10'000), 8);
    measure("5 MB", settingsOf(5'000'000), 4);
}
