#include "Core/Ground/ToolPaths.h"

#include "Core/Ground/RegularFile.h"

#include <QDir>
#include <QFileInfo>

namespace morvane::ToolPaths {

namespace {

/// The places of this tool alone.
QStringList ownPlaces(const QString &tool) {
    if (tool == u"wezterm") {
        return {QStringLiteral("/Applications/WezTerm.app/Contents/MacOS/wezterm")};
    }
    if (tool == u"kitty") {
        return {QStringLiteral("/Applications/kitty.app/Contents/MacOS/kitty"),
                QDir::homePath() + QStringLiteral("/.local/kitty.app/bin/kitty")};
    }
    if (tool == u"orca") {
        return {QDir::homePath() + QStringLiteral("/.local/bin/orca"),
                QStringLiteral("/Applications/Orca.app/Contents/Resources/bin/orca")};
    }
    if (tool == u"codex") {
        return {QDir::homePath() + QStringLiteral("/.local/bin/codex"),
                QDir::homePath() + QStringLiteral("/.codex/packages/standalone/current/bin/codex"),
                QStringLiteral("/Applications/ChatGPT.app/Contents/Resources/codex"),
                QStringLiteral("/Applications/Codex.app/Contents/Resources/codex")};
    }
    return {};
}

/// The places with fixed paths, for which no directory has to be read.
QStringList fixedPlaces(const QString &tool) {
    return QStringList{QStringLiteral("/opt/homebrew/bin/") + tool,
                       QStringLiteral("/usr/local/bin/") + tool,
                       QStringLiteral("/usr/bin/") + tool} +
           ownPlaces(tool);
}

/// Where package systems put what they install.
QStringList packaged(const QString &tool) {
    // Flatpak names an exported program after the application's id.
    const QString exported = QStringLiteral("flatpak/exports/bin/") +
                             (tool == u"wezterm" ? QStringLiteral("org.wezfurlong.wezterm") : tool);
    return {QDir::homePath() + QStringLiteral("/.cargo/bin/") + tool,
            QStringLiteral("/snap/bin/") + tool, QStringLiteral("/var/lib/") + exported,
            QDir::homePath() + QStringLiteral("/.local/share/") + exported};
}

/// GNOME's screen reader is called orca too, and would begin to speak if it were run.
bool isScreenReader(const QString &path) {
    constexpr qsizetype firstLine = 128;
    return path.endsWith(u"/orca") && RegularFile::head(path, firstLine)
                                          .value_or(QByteArray())
                                          .split('\n')
                                          .first()
                                          .contains("python");
}

std::optional<QString> firstProgram(const QStringList &places) {
    for (const QString &place : places) {
        const QFileInfo file(place);
        if (file.isFile() && file.isExecutable() && !isScreenReader(place)) {
            return place;
        }
    }
    return std::nullopt;
}

} // namespace

QStringList candidates(const QString &tool) {
    QStringList result = fixedPlaces(tool) + inHome(tool) + packaged(tool);
    result.removeDuplicates();
    return result;
}

std::optional<QString> find(const QString &tool) {
    const auto fixed = firstProgram(fixedPlaces(tool));
    return fixed ? fixed : firstProgram(candidates(tool));
}

QStringList inHome(const QString &command) {
    QStringList result;
    for (const char *folder :
         {".local/bin", "bin", ".npm-global/bin", ".nvm/versions/node/*/bin",
          ".local/share/fnm/aliases/default/bin",
          ".local/share/fnm/node-versions/*/installation/bin", ".fnm/aliases/default/bin",
          ".fnm/node-versions/*/installation/bin", ".asdf/installs/nodejs/*/bin",
          ".local/share/mise/installs/node/*/bin", "n/bin", ".bun/bin", ".local/share/pnpm"}) {
        result << fitting(
            QStringLiteral("%1/%2/%3").arg(QDir::homePath(), QLatin1String(folder), command));
    }
    return result;
}

QStringList fitting(const QString &pattern) {
    const qsizetype star = pattern.indexOf(QLatin1String("/*/"));
    if (star < 0) {
        return {pattern};
    }
    QStringList result;
    const QFileInfoList folders =
        QDir(pattern.first(star)).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Time);
    for (const QFileInfo &folder : folders) {
        result << folder.filePath() + pattern.mid(star + 2);
    }
    return result;
}

} // namespace morvane::ToolPaths
