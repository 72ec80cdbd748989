#pragma once

#include "Platform/Tools.h"

#include <QFileInfo>

#include <deque>
#include <utility>

namespace morvane {

/// Command lines that end when the test says so.
class FakeTools : public Tools {
public:
    void run(const Command &command, Finished finished) override {
        commands.append(command);
        m_waiting.push_back(std::move(finished));
    }

    /// Ends the oldest of the running ones.
    void finish(const std::optional<QByteArray> &output) {
        const auto finished = std::move(m_waiting.front());
        m_waiting.pop_front();
        finished(output);
    }

    std::size_t running() const { return m_waiting.size(); }

    /// The command lines that were started, each as the tool's name and its arguments.
    QStringList lines() const {
        QStringList result;
        for (const Command &command : commands) {
            result << (QStringList(QFileInfo(command.program).fileName()) + command.arguments)
                          .join(QLatin1Char(' '));
        }
        return result;
    }

    QList<Command> commands;

private:
    std::deque<Finished> m_waiting;
};

} // namespace morvane
