#include "Core/Sessions/GitInfo.h"

#include "Core/Ground/RegularFile.h"

#include <QFileInfo>
#include <QStringDecoder>

namespace morvane::GitInfo {

namespace {

constexpr int maxLevels = 25;

/// Far above what `.git` and `HEAD` ever hold: a larger file is something else.
constexpr qsizetype maxSize = 65536;

/// The file's text; none when it can't be read or isn't UTF-8.
std::optional<QString> readText(const QString &path) {
    const auto bytes = RegularFile::head(path, maxSize);
    if (!bytes) {
        return std::nullopt;
    }
    QStringDecoder decode(QStringDecoder::Utf8);
    const QString text = decode(*bytes);
    return decode.hasError() ? std::nullopt : std::optional(text);
}

std::optional<QString> branchInGitDir(const QString &gitDir) {
    const auto text = readText(gitDir + QLatin1String("/HEAD"));
    if (!text) {
        return std::nullopt;
    }
    const QString head = text->trimmed();
    const QLatin1String onBranch("ref: refs/heads/");
    const QString result = head.startsWith(onBranch) ? head.mid(onBranch.size()) : head.left(7);
    return result.isEmpty() ? std::nullopt : std::optional(result);
}

/// Follows the `.git` file that a linked worktree or a submodule has instead of a directory.
std::optional<QString> branchThroughFile(const QString &path) {
    const auto text = readText(path);
    const QStringList lines = text.value_or(QString()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    const QLatin1String prefix("gitdir: ");
    if (lines.isEmpty() || !lines.first().startsWith(prefix)) {
        return std::nullopt;
    }
    return branchInGitDir(lines.first().mid(prefix.size()).trimmed());
}

} // namespace

std::optional<QString> branch(const QString &cwd) {
    if (cwd.isEmpty()) {
        return std::nullopt;
    }
    QString directory = cwd;
    while (directory.size() > 1 && directory.endsWith(QLatin1Char('/'))) {
        directory.chop(1);
    }
    for (int level = 0; level < maxLevels; ++level) {
        const QFileInfo git(directory + QLatin1String("/.git"));
        if (git.isDir()) {
            return branchInGitDir(git.filePath());
        }
        if (git.exists()) {
            return branchThroughFile(git.filePath());
        }
        const QString parent = QFileInfo(directory).path();
        if (parent == directory) {
            return std::nullopt;
        }
        directory = parent;
    }
    return std::nullopt;
}

} // namespace morvane::GitInfo
