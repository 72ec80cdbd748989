#pragma once

#include "Platform/Failure.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QStringList>

#include <functional>
#include <optional>

namespace morvane {

/// What is to become of a settings file.
struct AgentSettingsChange {
    QByteArray content;

    /// False where the change touches nothing but what is ours, so that an older backup stays.
    bool backsUp = true;

    /// True where what the file holds couldn't be understood and makes way. It is then kept beside
    /// the backup as well, under a name that no other change writes to.
    bool replacesUnreadable = false;
};

/// A settings file that belongs to a person and an agent, and the one way in which we write it: at
/// every moment it is whole, as it was or as it shall be. What it held lies in a backup beside it.
/// A symbolic link stays one and its target is rewritten; mode and owner survive. Synchronous; any
/// thread, but no two on one file.
class AgentSettingsFile {
    Q_DECLARE_TR_FUNCTIONS(AgentSettingsFile)

public:
    explicit AgentSettingsFile(QString path);

    /// None where there is no file, or one that can't be read.
    std::optional<QByteArray> read() const;

    bool exists() const;

    /// Makes a change of what the file holds; none leaves the file alone, and so does a failure.
    using Edit = std::function<Result<std::optional<AgentSettingsChange>>(
        const std::optional<QByteArray> &)>;

    /// Writes what `edit` makes of the content. The agent may write at any time: when the content
    /// has changed before ours could take its place, or right afterwards, it is edited again, three
    /// times at most. After a failure the file holds what it held, or what the agent has written.
    [[nodiscard]] std::optional<Failure> rewrite(const Edit &edit) const;

    QString backupPath() const;

private:
    enum class Outcome { done, overtaken };

    Result<Outcome> replace(const std::optional<QByteArray> &before,
                            const AgentSettingsChange &change) const;
    QStringList copies(const AgentSettingsChange &change) const;
    Result<Outcome> readBack(const QString &target, const std::optional<QByteArray> &before,
                             const QByteArray &content) const;

    QString m_path;
};

} // namespace morvane
