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
    /// None where the file goes.
    std::optional<QByteArray> content = std::nullopt;

    /// False where the change touches nothing but what is ours, so that an older backup stays.
    bool backsUp = true;

    /// True where what the file holds couldn't be understood and makes way. It is then kept beside
    /// the backup as well, under a name that no other content ever takes: the first that is free of
    /// nine. Where none is, the write fails.
    bool replacesUnreadable = false;

    enum class Origin {
        stays,    ///< the write is one more of ours
        taken,    ///< the write is our first: what the file holds now is kept
        returned, ///< the content is what was kept
    };
    Origin origin = Origin::stays;
};

/// A settings file that belongs to a person and an agent, and the one way in which we write it: at
/// every moment it is whole, as it was or as it shall be. What it held lies in a backup beside it,
/// and what it held before we came beside that. No copy makes way before its comments are safe in
/// another (`SettingsComments`). A symbolic link stays one and its target is
/// rewritten; mode, owner and other attributes survive. Synchronous; any thread, but no two on one
/// file.
class AgentSettingsFile {
    Q_DECLARE_TR_FUNCTIONS(AgentSettingsFile)

public:
    /// Waits a moment: long enough for an agent to write a small file, and too short for a person
    /// to notice. A blocking wait, since whoever connects an agent is told at once how that went.
    static void moment();

    explicit AgentSettingsFile(QString path, std::function<void()> wait = &moment);

    /// None where there is no file, or one that can't be read.
    std::optional<QByteArray> read() const;

    /// To be asked when what was read can't be understood: an agent that rewrites its file in place
    /// leaves it empty or cut short for an instant. What the file holds a moment later; none, at
    /// once, where nobody has written it within the last second.
    std::optional<QByteArray> readAgain() const;

    bool exists() const;

    /// Makes a change of what the file holds; none leaves the file alone, and so does a failure.
    using Edit = std::function<Result<std::optional<AgentSettingsChange>>(
        const std::optional<QByteArray> &)>;

    /// Writes what `edit` makes of the content. The agent may write at any time: when the content
    /// has changed before ours could take its place, or right afterwards, it is edited again, three
    /// times at most. After a failure the file holds what it held, or what the agent has written.
    Result<void> rewrite(const Edit &edit) const;

    /// Where what can't be understood is kept, once however often it comes; none where there is no
    /// place left.
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
