#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QList>
#include <QTemporaryDir>

#include <sys/stat.h>
#include <utility>

namespace morvane {

/// A home folder of the test's own: the environment points into it until it is destroyed.
class TemporaryHome {
public:
    TemporaryHome() {
        set("HOME", path());
        set("XDG_CONFIG_HOME", path(".config"));
        set("XDG_CACHE_HOME", path(".cache"));
    }
    TemporaryHome(const TemporaryHome &) = delete;
    TemporaryHome &operator=(const TemporaryHome &) = delete;
    ~TemporaryHome() {
        for (const auto &[name, value] : m_before) {
            if (value.isNull()) {
                qunsetenv(name);
            } else {
                qputenv(name, value);
            }
        }
    }

    /// Sets another environment variable, which the destructor restores.
    void set(const char *name, const QString &value) {
        m_before.prepend({name, qgetenv(name)});
        qputenv(name, value.toUtf8());
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

    /// The same, but dated back so far that no writer can still be in the middle of it.
    void writeEarlier(const QString &relativePath, const QByteArray &bytes) const {
        write(relativePath, bytes);
        setWritten(relativePath, QDateTime::currentDateTime().addSecs(-9));
    }

    /// The same for a program that its owner may execute.
    QString writeProgram(const QString &relativePath,
                         const QByteArray &script = "#!/bin/sh\n") const {
        QString file = write(relativePath, script);
        QFile::setPermissions(file, QFile::ReadOwner | QFile::ExeOwner);
        return file;
    }

    /// Sets the moment of the file's last write.
    void setWritten(const QString &relativePath, const QDateTime &at) const {
        QFile file(path(relativePath));
        file.open(QIODevice::ReadWrite) && file.setFileTime(at, QFile::FileModificationTime);
    }

    QByteArray read(const QString &relativePath) const {
        QFile reader(path(relativePath));
        return reader.open(QIODevice::ReadOnly) ? reader.readAll() : QByteArray();
    }

    void makeReadOnly(const QString &relativePath, bool readOnly = true) const {
        QFile::setPermissions(path(relativePath),
                              readOnly ? QFile::ReadOwner : QFile::ReadOwner | QFile::WriteOwner);
    }

    /// The file's access bits; 0 if it isn't there.
    mode_t mode(const QString &relativePath) const {
        struct stat status {};
        ::stat(QFile::encodeName(path(relativePath)).constData(), &status);
        return status.st_mode & 07777;
    }

private:
    QList<std::pair<const char *, QByteArray>> m_before; ///< the newest first
    QTemporaryDir m_folder;
};

} // namespace morvane
