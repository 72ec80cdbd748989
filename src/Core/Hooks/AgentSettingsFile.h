#pragma once

#include "Core/Hooks/SettingsComments.h"
#include "Core/Hooks/SettingsOrigin.h"
#include "Platform/Result.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QStringList>

#include <functional>
#include <optional>

namespace morvane {

/// What is to become of a settings file.
struct AgentSettingsChange {
    /// None removes the file.
    std::optional<QByteArray> content = std::nullopt;

    /// False where the change touches nothing but what is ours, so that an older backup stays.
    bool backsUp = true;

    /// True where the change replaces content that couldn't be understood. A copy of that is then
    /// kept beside the backup as well, under the first free one of nine names, and never
    /// overwritten. Where none is free, the write fails.
    bool replacesUnreadable = false;

    enum class Origin {
        stays,    ///< not our first write: what was kept stays
        taken,    ///< the write is our first: what the file holds now is kept
        returned, ///< the content is what was kept
    };
    Origin origin = Origin::stays;
};

/// A settings file that belongs to a person and an agent, and the only way in which we write it:
/// atomically, so that it always holds the old or the new content. Beside it lie a backup of its
/// previous content and a copy of what it held before our first write. No copy is overwritten
/// before its comments are safe elsewhere (`SettingsComments`). A symbolic link stays one and its
/// target is rewritten; mode, owner and other attributes survive. Synchronous; any thread, but no
/// two on one file.
class AgentSettingsFile {
    Q_DECLARE_TR_FUNCTIONS(AgentSettingsFile)

public:
    /// Waits a moment: long enough for an agent to write a small file, and too short for a person
    /// to notice. A blocking wait, since whoever connects an agent is told at once how that went.
    static void moment();

    explicit AgentSettingsFile(QString path, std::function<void()> wait = &moment);

    /// None where there is no file, or one that can't be read.
    std::optional<QByteArray> read() const;

    /// What the file holds a moment later; none, at once, where nobody has written it within the
    /// last second. To be called when what was read can't be understood: an agent that rewrites its
    /// file in place leaves it empty or cut short for an instant.
    std::optional<QByteArray> readAgain() const;

    bool exists() const;

    /// Makes a change from the content; none leaves the file alone, and so does a failure.
    using Edit = std::function<Result<std::optional<AgentSettingsChange>>(
        const std::optional<QByteArray> &)>;

    /// Writes what `edit` makes of the content. The agent may write at any time: when the content
    /// has changed before or right after our write, it is edited again, in three attempts at most.
    /// After a failure the file holds what it held, or what the agent has written.
    Result<void> rewrite(const Edit &edit) const;

    /// The path at which this content, which can't be understood, is kept: always the same one for
    /// the same content. None where no name is free.
    std::optional<QString> unreadablePath(const QByteArray &content) const;

    /// What was here before our first write, as far as that is known.
    std::optional<SettingsOrigin::Content> origin() const { return m_origin.read(); }

private:
    enum class Outcome { done, overtaken };

    bool isFile() const;
    QString backupPath() const;
    Result<Outcome> replace(const std::optional<QByteArray> &before,
                            const AgentSettingsChange &change) const;
    Result<void> rescueComments(const std::optional<QByteArray> &before,
                                const AgentSettingsChange &change) const;
    Result<void> keepCopies(const QString &target, const std::optional<QByteArray> &before,
                            const AgentSettingsChange &change) const;
    Result<Outcome> put(const QString &target, const std::optional<QByteArray> &before,
                        const std::optional<QByteArray> &content) const;
    Result<Outcome> readBack(const QString &target, const std::optional<QByteArray> &before,
                             const std::optional<QByteArray> &content) const;

    QString m_path;
    SettingsOrigin m_origin;
    SettingsComments m_comments;
    std::function<void()> m_moment;
};

} // namespace morvane
