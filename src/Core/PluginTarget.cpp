#include "Core/PluginTarget.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <tuple>

namespace morvane {

PluginTarget::PluginTarget(QString path, ForwarderScripts scripts)
    : m_path(std::move(path)), m_scripts(std::move(scripts)) {}

std::optional<Failure> PluginTarget::install() const {
    const Result<QString> text = m_scripts.renderTemplate(QStringLiteral("opencode-plugin.js"));
    if (const auto *failure = std::get_if<Failure>(&text)) {
        return *failure;
    }
    const QString folder = QFileInfo(m_path).path();
    if (!QDir().mkpath(folder)) {
        return Failure{QStringLiteral("%1 could not be created").arg(folder)};
    }
    QSaveFile file(m_path);
    if (file.open(QIODevice::WriteOnly)) {
        // Before the first byte, since the token is among them.
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
        file.write(std::get<QString>(text).toUtf8());
        if (file.commit()) {
            return std::nullopt;
        }
    }
    return Failure{QStringLiteral("%1 could not be written: %2").arg(m_path, file.errorString())};
}

std::optional<Failure> PluginTarget::uninstall() const {
    QFile::remove(m_path);
    return std::nullopt;
}

void PluginTarget::renew() const {
    std::ignore = install();
}

bool PluginTarget::isInstalled() const {
    return QFileInfo::exists(m_path);
}

Health PluginTarget::health() const {
    return {.hooksPresent = isInstalled()};
}

} // namespace morvane
