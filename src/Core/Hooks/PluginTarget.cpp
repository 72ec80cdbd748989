#include "Core/Hooks/PluginTarget.h"

#include "Core/Ground/WholeFile.h"

#include <QFile>
#include <QFileInfo>

#include <tuple>

namespace morvane {

PluginTarget::PluginTarget(QString path, ForwarderScripts scripts)
    : m_path(std::move(path)), m_origin(m_path), m_scripts(std::move(scripts)) {}

Result<void> PluginTarget::install() const {
    const Result<QString> text = m_scripts.renderTemplate(QStringLiteral("opencode-plugin.js"));
    if (!text) {
        return text.error();
    }
    const bool isFirst = !QFileInfo(m_path).isSymbolicLink() && !isInstalled();
    Result<void> written = isFirst ? m_origin.keep(std::nullopt) : Result<void>();
    if (written) {
        WholeFile file(m_path);
        file.setMode(0600); // the token is in it
        written = file.write(text->toUtf8());
    }
    return written ? written : cannotWrite(m_path, written.error());
}

Result<void> PluginTarget::uninstall() const {
    QFile file(m_path);
    const bool isRemoved = file.remove();
    if (!isRemoved && (QFileInfo(m_path).isSymbolicLink() || isInstalled())) {
        return Failure{tr("%1 could not be removed: %2").arg(m_path, file.errorString())};
    }
    m_origin.forget();
    return {};
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
