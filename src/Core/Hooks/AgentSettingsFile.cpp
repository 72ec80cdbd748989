#include "Core/Hooks/AgentSettingsFile.h"

#include "Core/Ground/WholeFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <tuple>

namespace morvane {

namespace {

constexpr int mostAttempts = 3;
constexpr int mostLinks = 40;

QString reason(int error) {
    return QString::fromStdString(std::generic_category().message(error));
}

/// The file at the end of a chain of symbolic links, whether it exists or not. Of links in a circle
/// it is one of them. A relative link starts from the real folder that it lies in, which needn't be
/// the one that its path names.
QString linkTarget(const QString &path) {
    namespace fs = std::filesystem;
    std::error_code ignored;
    fs::path file(QFile::encodeName(path).toStdString());
    for (int links = 0; links < mostLinks && fs::is_symlink(file, ignored); ++links) {
        const fs::path folder = fs::canonical(file.parent_path(), ignored);
        file = folder / fs::read_symlink(file, ignored);
    }
    return QFile::decodeName(QByteArray::fromStdString(file.string()));
}

std::optional<struct stat> statusOf(const QString &path) {
    struct stat status {};
    const bool exists = ::stat(QFile::encodeName(path).constData(), &status) == 0;
    return exists ? std::optional(status) : std::nullopt;
}

/// What is to take the place of `path`, and look like the file of `model`, where there is one.
void takeOver(WholeFile &file, const std::optional<struct stat> &model) {
    if (model) {
        file.setOwner(model->st_uid, model->st_gid);
        file.setMode(model->st_mode & 07777);
    }
}

std::optional<Failure> writeWhole(const QString &path, const QByteArray &content,
                                  const std::optional<struct stat> &model) {
    WholeFile file(path);
    takeOver(file, model);
    return file.write(content);
}

Failure cannotRead(const QString &path, const QString &why) {
    return {AgentSettingsFile::tr("%1 could not be read: %2").arg(path, why)};
}

} // namespace

AgentSettingsFile::AgentSettingsFile(QString path) : m_path(std::move(path)) {}

QString AgentSettingsFile::backupPath() const {
    return m_path + QLatin1String(".morvane-backup");
}

std::optional<QByteArray> AgentSettingsFile::read() const {
    const auto status = statusOf(m_path);
    QFile file(m_path);
    // Anything else that can be opened, such as a pipe, may keep its reader waiting.
    if (!status || !S_ISREG(status->st_mode) || !file.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    QByteArray content = file.readAll();
    return file.error() == QFile::NoError ? std::optional(std::move(content)) : std::nullopt;
}

bool AgentSettingsFile::exists() const {
    return statusOf(m_path).has_value();
}

std::optional<Failure> AgentSettingsFile::rewrite(const Edit &edit) const {
    for (int attempt = 0; attempt < mostAttempts; ++attempt) {
        const std::optional<QByteArray> before = read();
        const Result<std::optional<AgentSettingsChange>> edited = edit(before);
        if (const auto *failure = edited.failure()) {
            return *failure;
        }
        const std::optional<AgentSettingsChange> &change = *edited;
        if (!change) {
            return std::nullopt;
        }
        const Result<Outcome> outcome = replace(before, *change);
        if (const auto *failure = outcome.failure()) {
            return *failure;
        }
        if (*outcome == Outcome::done) {
            return std::nullopt;
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
        return cannotRead(m_path, reason(ELOOP));
    }
    if (status && !before) {
        return cannotRead(m_path, reason(S_ISREG(status->st_mode) ? EACCES : EINVAL));
    }
    if (status && (status->st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0) {
        // Whoever made it so wants it to stay as it is.
        return cannotWrite(m_path, {tr("it is read-only")});
    }
    if (before) {
        for (const QString &copy : copies(change)) {
            if (const auto failure = writeWhole(copy, *before, status)) {
                return Failure{tr("%1 could not be backed up: %2").arg(m_path, failure->message)};
            }
        }
    }
    QDir().mkpath(QFileInfo(target).path());
    WholeFile file(target);
    takeOver(file, status);
    auto failure = file.fill(change.content);
    if (!failure && read() != before) {
        return Outcome::overtaken;
    }
    if (!failure) {
        failure = file.commit();
    }
    if (failure) {
        return cannotWrite(m_path, *failure);
    }
    return readBack(target, before, change.content);
}

QStringList AgentSettingsFile::copies(const AgentSettingsChange &change) const {
    QStringList result;
    if (change.backsUp) {
        result << backupPath();
    }
    if (change.replacesUnreadable) {
        result << m_path + QLatin1String(".morvane-unreadable");
    }
    return result;
}

/// What the agent has written in the meantime counts. What can't be read at all makes way for what
/// was there before.
Result<AgentSettingsFile::Outcome>
AgentSettingsFile::readBack(const QString &target, const std::optional<QByteArray> &before,
                            const QByteArray &content) const {
    const auto written = read();
    if (written == content) {
        return Outcome::done;
    }
    if (written) {
        return Outcome::overtaken;
    }
    if (before) {
        std::ignore = writeWhole(target, *before, statusOf(target));
    }
    return cannotRead(m_path, tr("it is not what was written"));
}

} // namespace morvane
