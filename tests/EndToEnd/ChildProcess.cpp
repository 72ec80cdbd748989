#include "EndToEnd/ChildProcess.h"

#include <csignal>
#include <sys/prctl.h>

namespace morvane {

namespace {

constexpr int patience = 30'000; // milliseconds
constexpr int grace = 5'000;

} // namespace

ChildProcess::ChildProcess(const QStringList &command, const QProcessEnvironment &environment,
                           const QByteArray &input) {
    m_process.setProcessEnvironment(environment);
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    // A test that crashes must leave nothing behind.
    m_process.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGTERM); });
    m_process.start(command.first(), command.mid(1));
    m_process.waitForStarted(patience);
    m_process.write(input);
    m_process.closeWriteChannel();
    while (m_process.bytesToWrite() > 0 && m_process.waitForBytesWritten(patience)) {
    }
}

ChildProcess::~ChildProcess() {
    if (!isRunning()) {
        return;
    }
    m_process.terminate();
    if (!m_process.waitForFinished(grace)) {
        kill();
    }
}

bool ChildProcess::isRunning() {
    m_process.waitForFinished(0);
    return m_process.state() != QProcess::NotRunning;
}

std::optional<QByteArray> ChildProcess::readLine() {
    while (!m_process.canReadLine()) {
        if (!m_process.waitForReadyRead(patience)) {
            return std::nullopt;
        }
    }
    return m_process.readLine().trimmed();
}

std::optional<int> ChildProcess::wait() {
    if (m_process.state() != QProcess::NotRunning && !m_process.waitForFinished(patience)) {
        return std::nullopt;
    }
    const bool hasStatus = m_process.exitStatus() == QProcess::NormalExit &&
                           m_process.error() != QProcess::FailedToStart;
    return hasStatus ? std::optional(m_process.exitCode()) : std::nullopt;
}

QByteArray ChildProcess::output() {
    return m_process.readAllStandardOutput();
}

std::optional<QByteArray> ChildProcess::outputAtEnd() {
    return wait() == 0 ? std::optional(output()) : std::nullopt;
}

void ChildProcess::kill() {
    m_process.kill();
    m_process.waitForFinished(patience);
}

} // namespace morvane
