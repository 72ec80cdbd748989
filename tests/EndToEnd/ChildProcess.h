#pragma once

#include <QByteArray>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStringList>

#include <optional>

namespace morvane {

/// A program that a test starts with exactly the given environment. It ends with this object at the
/// latest, or with the test's own process. Waits block for at most half a minute and need no event
/// loop.
class ChildProcess {
public:
    /// Writes the input to the program's standard input, and closes that.
    ChildProcess(const QStringList &command, const QProcessEnvironment &environment,
                 const QByteArray &input = {});
    ChildProcess(const ChildProcess &) = delete;
    ChildProcess &operator=(const ChildProcess &) = delete;

    /// Asks the program to end, and ends it when it doesn't.
    ~ChildProcess();

    bool isRunning();

    /// The next line of the output, without its line end; none when the program ends before it.
    std::optional<QByteArray> readLine();

    /// The exit status; none when the program still runs, or was ended by a signal.
    std::optional<int> wait();

    /// All of the output that hasn't been read. Complete after `wait`.
    QByteArray output();

    /// Waits for the end, and yields the rest of the output; none unless the exit status is 0.
    std::optional<QByteArray> outputAtEnd();

    /// Asks the program to end, and doesn't wait.
    void terminate() { m_process.terminate(); }

    /// Kills the program, which gets no chance to clean up.
    void kill();

private:
    QProcess m_process;
};

} // namespace morvane
