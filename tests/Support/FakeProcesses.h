#pragma once

#include "Platform/Processes.h"

#include <QHash>

#include <map>

namespace morvane {

/// Processes that end when the test says so.
class FakeProcesses : public Processes {
public:
    Task whenEnded(const ProcessIdentity &process, std::function<void()> ended) override {
        m_watches[process] = std::move(ended);
        return Task([this, process] { m_watches.erase(process); });
    }

    std::optional<QStringList> workingDirectories(const QString &program) const override {
        return folders.value(program);
    }

    std::optional<std::int64_t> listenerAt(const QString &socket) const override {
        return listeners.value(socket);
    }

    std::optional<bool> hearsKeys(const ProcessIdentity &process) const override {
        return hearing.value(process.id);
    }

    std::optional<std::int64_t> terminalOpener(const ProcessIdentity &process) const override {
        return openers.value(process.id);
    }

    std::optional<ProcessIdentity> identityOf(std::int64_t id) const override {
        return ProcessIdentity{id};
    }

    QByteArrayList environment(std::int64_t process) const override {
        return environments.value(process);
    }

    QString fileOf(const ProcessIdentity &, const QString &) const override { return {}; }

    std::size_t watched() const { return m_watches.size(); }

    void end(const ProcessIdentity &process) {
        if (const auto watch = m_watches.find(process); watch != m_watches.end()) {
            const auto ended = watch->second;
            ended();
        }
    }

    QHash<QString, QStringList> folders;
    QHash<QString, std::optional<std::int64_t>> listeners;    ///< by socket
    QHash<std::int64_t, std::optional<bool>> hearing;         ///< by process number
    QHash<std::int64_t, std::optional<std::int64_t>> openers; ///< by process number
    QHash<std::int64_t, QByteArrayList> environments;         ///< by process number

private:
    std::map<ProcessIdentity, std::function<void()>> m_watches;
};

} // namespace morvane
