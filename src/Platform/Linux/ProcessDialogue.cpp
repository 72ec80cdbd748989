#include "Platform/Linux/ProcessDialogue.h"

#include "Platform/Linux/DescriptorLimit.h"

#include <QDeadlineTimer>
#include <QProcess>

#include <chrono>
#include <csignal>
#include <sys/prctl.h>
#include <unistd.h>

namespace morvane {

namespace {

using End = ToolDialogue::End;
using Replying = std::function<ToolDialogue::Reply(const QByteArray &heard)>;

constexpr int patienceWithEnd = 300; ///< milliseconds

int left(const QDeadlineTimer &deadline) {
    return static_cast<int>(deadline.remainingTime());
}

void start(QProcess &process, const Tools::Command &command) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(command.environment);
    process.setProcessEnvironment(environment);
    process.setStandardErrorFile(QProcess::nullDevice());
    process.setChildProcessModifier([] {
        ::setpgid(0, 0);
        restoreDescriptorLimit();
        // Morvane may exit without waiting for the thread that talks. SIGTERM, since a launcher
        // passes it on.
        ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    });
    process.start(command.program, command.arguments);
}

End talk(QProcess &process, const Replying &reply, const QDeadlineTimer &deadline) {
    for (bool isThere = true; isThere;) {
        isThere = process.waitForReadyRead(left(deadline));
        // What the program wrote before it ended counts.
        if (const QByteArray heard = process.readAllStandardOutput(); !heard.isEmpty()) {
            const ToolDialogue::Reply answer = reply(heard);
            if (answer.concludes) {
                return End::concluded;
            }
            process.write(answer.words);
        }
        if (deadline.hasExpired()) {
            return End::timedOut;
        }
    }
    return End::left;
}

/// The group outlives its leader for as long as it has a member.
void endAll(QProcess &process, pid_t group) {
    process.closeReadChannel(QProcess::StandardOutput);
    process.closeWriteChannel();
    for (const int signal : {SIGTERM, SIGKILL}) {
        ::kill(-group, signal);
        process.waitForFinished(patienceWithEnd);
    }
}

} // namespace

ToolDialogue::End ProcessDialogue::hold(const Tools::Command &command, const QByteArray &opening,
                                        const std::function<Reply(const QByteArray &)> &reply,
                                        Seconds patience) {
    const QDeadlineTimer deadline(std::chrono::ceil<std::chrono::milliseconds>(patience));
    QProcess process;
    start(process, command);
    if (!process.waitForStarted(left(deadline))) {
        return End::notStarted;
    }
    const auto group = static_cast<pid_t>(process.processId());
    process.write(opening);
    const End end = talk(process, reply, deadline);
    endAll(process, group);
    return end;
}

} // namespace morvane
