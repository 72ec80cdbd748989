#pragma once

#include <QByteArray>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStringList>

#include <optional>

namespace morvane {

/// A program that a test has started, in an environment of the test's choosing alone, and that ends
/// with this object at the latest, or with the test's own process. Waits block, for at most half a
/// minute; no event loop is needed.
class ChildProcess {
public:
    /// The input is all that the program can read: its end follows at once.
    ChildProcess(const QStringList &command, const QProcessEnvironment &environment,
                 const QByteArray &input = {});
    ChildProcess(const ChildProcess &) = delete;
    ChildProcess &operator=(const ChildProcess &) = delete;

    /// Asks the program to end, and ends it when it doesn't.
    ~ChildProcess();

    bool isRunning();

    /// The first line of the output from here on, without its end; none when the program has ended
    /// before it.
    std::optional<QByteArray> readLine();

    /// The exit status; none when the program still runs, or was ended by a signal.
    std::optional<int> wait();

    /// All of the output that hasn't been read. Complete after `wait`.
    QByteArray output();

    /// The same, once it has ended well; none when it hasn't.
    std::optional<QByteArray> outputAtEnd();

    /// Asks it to end, and doesn't wait.
    void terminate() { m_process.terminate(); }

    /// Ends it as the system would: without a chance to clean up.
    void kill();

private:
    QProcess m_process;
};

} // namespace morvane
