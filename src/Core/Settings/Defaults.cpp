#include "Core/Settings/Defaults.h"

#include "Core/Ground/WholeFile.h"
#include "Core/Settings/DefaultsFormat.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include <tuple>

namespace morvane {

Defaults::Defaults(QString folder, QString domain)
    : m_folder(std::move(folder)), m_domain(std::move(domain)) {
    QFile file(filePath(m_domain));
    if (!file.exists()) {
        return;
    }
    const bool opened = file.open(QIODevice::ReadOnly);
    const auto values = opened ? DefaultsFormat::parse(file.readAll()) : std::nullopt;
    m_unreadable = !values;
    m_values = values.value_or(QVariantMap());
}

Defaults &Defaults::standard() {
    static Defaults defaults(folder(), QStringLiteral("io.morvane.morvane"));
    return defaults;
}

QString Defaults::folder() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QLatin1String("/morvane");
}

void Defaults::setValue(const QString &key, const QVariant &value) {
    m_values.insert(key, value);
    write();
}

void Defaults::setValues(const QVariantMap &values) {
    m_values.insert(values);
    write();
}

void Defaults::remove(const QStringList &keys) {
    if (m_values.removeIf([&](const auto &entry) { return keys.contains(entry.key()); }) > 0) {
        write();
    }
}

QVariantMap Defaults::persistentDomain(const QString &domain) const {
    QFile file(filePath(domain));
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    return DefaultsFormat::parse(file.readAll()).value_or(QVariantMap());
}

QString Defaults::filePath(const QString &domain) const {
    return m_folder + QLatin1Char('/') + domain + QLatin1String(".json");
}

void Defaults::write() {
    const QString path = filePath(m_domain);
    QDir().mkpath(m_folder);
    if (m_unreadable) {
        // Whatever it is, it is the person's: it is kept under another name.
        QFile::remove(path + QLatin1String(".unreadable"));
        if (!QFile::rename(path, path + QLatin1String(".unreadable"))) {
            return;
        }
        m_unreadable = false;
    }
    WholeFile file(linkTarget(path));
    file.setMode(0600); // the token is in it
    std::ignore = file.write(DefaultsFormat::write(m_values));
}

} // namespace morvane
