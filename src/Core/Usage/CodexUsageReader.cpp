#include "Core/Usage/CodexUsageReader.h"

#include "Core/Ground/ToolPaths.h"
#include "Core/Usage/CodexExchange.h"
#include "Core/Usage/UsageFormat.h"
#include "Platform/ToolDialogue.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace morvane::CodexUsageReader {

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(CodexUsageReader)
};

constexpr Seconds patience(15);

bool isSignedIn() {
    const QFileInfo file(QDir::home().filePath(QStringLiteral(".codex/auth.json")));
    return file.exists() && !file.isDir();
}

/// If Codex is an npm script, its interpreter is installed beside it, and may be missing from the
/// desktop's PATH.
Tools::Command command(const QString &program) {
    QProcessEnvironment environment;
    environment.insert(QStringLiteral("PATH"),
                       QFileInfo(program).path() + QLatin1Char(':') + qEnvironmentVariable("PATH"));
    return {
        program,
        {"-c", "approval_policy=never", "-s", "read-only", "-a", "never", "app-server", "--stdio"},
        environment};
}

} // namespace

Result<CodexUsage> read(ToolDialogue &dialogue, const QString &version, const Scheduler &clock) {
    const auto program = ToolPaths::find(QStringLiteral("codex"));
    if (!program) {
        return Failure{Texts::tr("Codex isn't installed")};
    }
    if (!isSignedIn()) {
        return Failure{Texts::tr("Codex isn't signed in")};
    }
    CodexExchange exchange;
    const ToolDialogue::End end = dialogue.hold(
        command(*program), CodexExchange::initializeRequest(version),
        [&exchange](const QByteArray &heard) {
            const auto action = exchange.consume(heard);
            return ToolDialogue::Reply{
                action.sendsReadRequest ? CodexExchange::initializedAndReadRequest() : QByteArray(),
                action.isOver};
        },
        patience);
    if (end == ToolDialogue::End::notStarted) {
        return Failure{Texts::tr("couldn't start Codex")};
    }
    if (end == ToolDialogue::End::timedOut) {
        return Failure{Texts::tr("Codex didn't answer in time")};
    }
    if (!exchange.response()) {
        return Failure{Texts::tr("Codex rate limits unavailable")};
    }
    const auto usage = UsageFormat::parseCodex(*exchange.response(), clock.now());
    return usage ? Result<CodexUsage>(*usage) : Failure{Texts::tr("unexpected Codex usage format")};
}

} // namespace morvane::CodexUsageReader
