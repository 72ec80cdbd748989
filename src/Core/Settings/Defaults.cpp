#include "Core/Settings/Defaults.h"

#include <QStandardPaths>

namespace morvane {

namespace {

QString filePath(const QString &folder, const QString &domain) {
    return folder + QLatin1Char('/') + domain + QLatin1String(".json");
}

} // namespace

Defaults::Defaults(const QString &folder, const QString &domain)
    : m_folder(folder), m_file(filePath(folder, domain)), m_values(m_file.read()) {}

Defaults &Defaults::standard() {
    static Defaults defaults(folder(), QStringLiteral("io.morvane.morvane"));
    return defaults;
}

QString Defaults::folder() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QLatin1String("/morvane");
}

void Defaults::setValue(const QString &key, const QVariant &value) {
    setValues({{key, value}});
}

void Defaults::setValues(const QVariantMap &values) {
    m_values.insert(values);
    write(values.keys());
}

void Defaults::remove(const QStringList &keys) {
    if (m_values.removeIf([&](const auto &entry) { return keys.contains(entry.key()); }) > 0) {
        write(keys);
    }
}

bool Defaults::removeForGood(const QStringList &keys) {
    remove(keys);
    if (m_values.isEmpty()) {
        m_file.remove();
    }
    m_isOver = true;
    return m_file.isWithout(keys);
}

void Defaults::write(const QStringList &changed) {
    if (!m_isOver) {
        m_file.write(m_values, changed);
    }
}

QVariantMap Defaults::persistentDomain(const QString &domain) const {
    return DefaultsFile(filePath(m_folder, domain)).read();
}

} // namespace morvane
