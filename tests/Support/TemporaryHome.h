#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

namespace morvane {

/// A home folder of the test's own: the environment points into it until it goes.
class TemporaryHome {
public:
    TemporaryHome() {
        qputenv("HOME", path().toUtf8());
        qputenv("XDG_CONFIG_HOME", path(".config").toUtf8());
        qputenv("XDG_CACHE_HOME", path(".cache").toUtf8());
    }
    TemporaryHome(const TemporaryHome &) = delete;
    TemporaryHome &operator=(const TemporaryHome &) = delete;
    ~TemporaryHome() {
        restore("HOME", m_home);
        restore("XDG_CONFIG_HOME", m_config);
        restore("XDG_CACHE_HOME", m_cache);
    }

    QString path(const QString &relativePath = {}) const {
        return relativePath.isEmpty() ? m_folder.path() : m_folder.filePath(relativePath);
    }

    /// Writes a file, with the folders that it needs, and returns its path.
    QString write(const QString &relativePath, const QByteArray &bytes = {}) const {
        QString file = path(relativePath);
        QDir().mkpath(QFileInfo(file).path());
        QFile writer(file);
        if (writer.open(QIODevice::WriteOnly)) {
            writer.write(bytes);
        }
        return file;
    }

    QByteArray read(const QString &relativePath) const {
        QFile reader(path(relativePath));
        return reader.open(QIODevice::ReadOnly) ? reader.readAll() : QByteArray();
    }

private:
    static void restore(const char *name, const QByteArray &value) {
        if (value.isNull()) {
            qunsetenv(name);
        } else {
            qputenv(name, value);
        }
    }

    QByteArray m_home = qgetenv("HOME");
    QByteArray m_config = qgetenv("XDG_CONFIG_HOME");
    QByteArray m_cache = qgetenv("XDG_CACHE_HOME");
    QTemporaryDir m_folder;
};

} // namespace morvane
