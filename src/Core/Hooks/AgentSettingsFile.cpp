#include "Core/Hooks/AgentSettingsFile.h"

#include "Core/Ground/LinkTarget.h"
#include "Core/Ground/RegularFile.h"
#include "Core/Ground/WholeFile.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <chrono>
#include <sys/stat.h>
#include <thread>
#include <tuple>
#include <unistd.h>

namespace morvane {

namespace {

constexpr int mostAttempts = 3;
constexpr int mostUnreadable = 9;

std::optional<struct stat> statusOf(const QString &path) {
    struct stat status {};
    const bool exists = ::stat(QFile::encodeName(path).constData(), &status) == 0;
    return exists ? std::optional(status) : std::nullopt;
}

Failure cannotRead(const QString &path, const Failure &why) {
    return {AgentSettingsFile::tr("%1 could not be read: %2").arg(path, why.message)};
}

} // namespace

void AgentSettingsFile::moment() {
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
}

AgentSettingsFile::AgentSettingsFile(QString path, std::function<void()> wait)
    : m_path(std::move(path)), m_origin(m_path), m_comments(m_path), m_moment(std::move(wait)) {}

QString AgentSettingsFile::backupPath() const {
    return m_path + QLatin1String(".morvane-backup");
}

std::optional<QByteArray> AgentSettingsFile::read() const {
    const auto content = RegularFile::whole(m_path);
    return content ? std::optional(*content) : std::nullopt;
}

std::optional<QByteArray> AgentSettingsFile::readAgain() const {
    const qint64 age = QFileInfo(m_path).lastModified().msecsTo(QDateTime::currentDateTime());
    if (age < 0 || age > 1000) {
        return std::nullopt;
    }
    m_moment();
    return read();
}

bool AgentSettingsFile::exists() const {
    return statusOf(m_path).has_value();
}

bool AgentSettingsFile::isFile() const {
    const std::optional<struct stat> status = statusOf(m_path);
    return status && S_ISREG(status->st_mode);
}

/// An unreadable file may hold entries of ours, so this fails instead of treating it as missing.
Result<void> AgentSettingsFile::rewrite(const Edit &edit) const {
    for (int attempt = 0; attempt < mostAttempts; ++attempt) {
        const std::optional<QByteArray> before = read();
        if (!before && isFile()) {
            const auto again = RegularFile::whole(m_path);
            if (again) {
                continue; // it has come just now
            }
            return cannotRead(m_path, again.error());
        }
        const Result<std::optional<AgentSettingsChange>> edited = edit(before);
        if (!edited) {
            return edited.error();
        }
        const std::optional<AgentSettingsChange> &change = *edited;
        if (!change) {
            return {};
        }
        const Result<Outcome> outcome = replace(before, *change);
        if (!outcome) {
            return outcome.error();
        }
        if (*outcome == Outcome::done) {
            return {};
        }
    }
    return cannotWrite(m_path, {tr("another program keeps changing it")});
}

Result<AgentSettingsFile::Outcome>
AgentSettingsFile::replace(const std::optional<QByteArray> &before,
                           const AgentSettingsChange &change) const {
    const QString target = linkTarget(m_path);
    const std::optional<struct stat> status = statusOf(target);
    if (read() != before || (before && !status)) {
        return Outcome::overtaken;
    }
    if (QFileInfo(target).isSymbolicLink()) {
        return cannotRead(m_path, systemFailure(ELOOP));
    }
    if (status && !before && S_ISREG(status->st_mode)) {
        return Outcome::overtaken;
    }
    if (status && !before) {
        return cannotRead(m_path, systemFailure(EINVAL));
    }
    if (status && (status->st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0) {
        // Whoever made it so wants it to stay as it is.
        return cannotWrite(m_path, {tr("it is read-only")});
    }
    if (const auto kept = keepCopies(target, before, change); !kept) {
        if (read() != before) {
            return Outcome::overtaken;
        }
        return before
                   ? Failure{tr("%1 could not be backed up: %2").arg(m_path, kept.error().message)}
                   : cannotWrite(m_path, kept.error());
    }
    const Result<Outcome> outcome = put(target, before, change.content);
    const bool isDone = outcome && *outcome == Outcome::done;
    if (isDone && change.origin == AgentSettingsChange::Origin::returned) {
        m_origin.forget();
    }
    return outcome;
}

std::optional<QString> AgentSettingsFile::unreadablePath(const QByteArray &content) const {
    for (int number = 1; number <= mostUnreadable; ++number) {
        const QString path = m_path + QLatin1String(".morvane-unreadable") +
                             (number > 1 ? QString::number(-number) : QString());
        const QFileInfo present(path);
        if (present.isSymbolicLink() || !present.exists() ||
            SettingsOrigin::ownContent(path) == content) {
            return path;
        }
    }
    return std::nullopt;
}

/// Saves the comments of each copy that is about to be overwritten.
Result<void> AgentSettingsFile::rescueComments(const std::optional<QByteArray> &before,
                                               const AgentSettingsChange &change) const {
    const bool isFirst = change.origin == AgentSettingsChange::Origin::taken;
    QByteArrayList staying{before.value_or(QByteArray())};
    if (!isFirst) {
        staying << SettingsOrigin::ownContent(m_origin.copyPath()).value_or(QByteArray());
    }
    Result<void> rescued =
        isFirst ? m_comments.rescue(m_origin.copyPath(), staying) : Result<void>();
    if (rescued && before && change.backsUp) {
        rescued = m_comments.rescue(backupPath(), staying);
    }
    return rescued;
}

/// Every copy must exist before the file changes.
Result<void> AgentSettingsFile::keepCopies(const QString &target,
                                           const std::optional<QByteArray> &before,
                                           const AgentSettingsChange &change) const {
    if (const auto rescued = rescueComments(before, change); !rescued) {
        return rescued;
    }
    QStringList copies;
    if (before && change.backsUp) {
        copies << backupPath();
    }
    if (before && change.replacesUnreadable) {
        const auto path = unreadablePath(*before);
        if (!path) {
            return Failure{tr("nine that could not be understood lie beside it already")};
        }
        copies << *path;
    }
    for (const QString &copy : copies) {
        WholeFile file(copy);
        file.setModel(target);
        if (const auto written = file.write(*before); !written) {
            return written;
        }
    }
    const bool isFirst = change.origin == AgentSettingsChange::Origin::taken;
    return isFirst ? m_origin.keep(before) : Result<void>();
}

Result<AgentSettingsFile::Outcome>
AgentSettingsFile::put(const QString &target, const std::optional<QByteArray> &before,
                       const std::optional<QByteArray> &content) const {
    QDir().mkpath(QFileInfo(target).path());
    WholeFile file(target);
    if (before) {
        file.setModel(target);
    }
    Result<void> written = content ? file.fill(*content) : Result<void>();
    if (read() != before) {
        return Outcome::overtaken;
    }
    if (written && content) {
        written = file.commit();
    } else if (written && ::unlink(QFile::encodeName(target).constData()) != 0) {
        written = systemFailure(errno);
    }
    if (!written) {
        return cannotWrite(m_path, written.error());
    }
    return readBack(target, before, content);
}

/// What the agent has written in the meantime wins. A file that can't be read at all is replaced by
/// what was there before.
Result<AgentSettingsFile::Outcome>
AgentSettingsFile::readBack(const QString &target, const std::optional<QByteArray> &before,
                            const std::optional<QByteArray> &content) const {
    const auto written = read();
    if (written == content) {
        return Outcome::done;
    }
    if (written) {
        return Outcome::overtaken;
    }
    if (before) {
        WholeFile file(target);
        if (statusOf(target)) {
            file.setModel(target);
        }
        std::ignore = file.write(*before);
    }
    return cannotRead(m_path, {tr("it is not what was written")});
}

} // namespace morvane
