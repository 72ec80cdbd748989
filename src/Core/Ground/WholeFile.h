#pragma once

#include "Platform/Failure.h"

#include <QCoreApplication>
#include <QSaveFile>

#include <optional>
#include <sys/types.h>

namespace morvane {

/// The new content of a file, which takes the place of the old at once or not at all: written to a
/// temporary file beside it, synced, renamed. Nothing happens to the file before `commit`. Failures
/// are the system's reasons, without the file's name. Synchronous; any thread.
class WholeFile {
    Q_DECLARE_TR_FUNCTIONS(WholeFile)

public:
    explicit WholeFile(const QString &path) : m_file(path) {}

    /// The permission bits, in place of those of the old file or, without one, the usual ones. They
    /// hold before the first byte is written.
    void setMode(mode_t mode) { m_mode = mode; }

    /// In place of whoever runs this program.
    void setOwner(uid_t user, gid_t group) { m_owner = {user, group}; }

    [[nodiscard]] std::optional<Failure> fill(const QByteArray &content);
    [[nodiscard]] std::optional<Failure> commit();

    /// `fill` and `commit`.
    [[nodiscard]] std::optional<Failure> write(const QByteArray &content);

private:
    struct Owner {
        uid_t user;
        gid_t group;
    };

    int applyOwner() const;

    QSaveFile m_file;
    std::optional<mode_t> m_mode;
    std::optional<Owner> m_owner;
};

/// The failure of a write, with the file's name.
Failure cannotWrite(const QString &path, const Failure &why);

} // namespace morvane
