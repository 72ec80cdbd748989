#pragma once

#include "Platform/Descriptor.h"
#include "Platform/Result.h"

#include <QByteArray>
#include <QCoreApplication>

#include <optional>
#include <sys/types.h>

namespace morvane {

/// The new content of a file, which takes the place of the old at once or not at all: written to a
/// temporary file beside it, synced, renamed. Nothing happens to the file before `commit`. A
/// symbolic link in its place is replaced, never followed. Failures are the system's reasons,
/// without the file's name. Synchronous; any thread.
class WholeFile {
    Q_DECLARE_TR_FUNCTIONS(WholeFile)

public:
    explicit WholeFile(QString path) : m_path(std::move(path)) {}
    WholeFile(const WholeFile &) = delete;
    WholeFile &operator=(const WholeFile &) = delete;
    ~WholeFile();

    /// The permission bits, in place of the usual ones of a new file. They hold before the first
    /// byte is written.
    void setMode(mode_t mode) { m_mode = mode; }

    /// Makes the file look like the one at `model`, which must exist: owner, permission bits,
    /// access list and whatever other attributes it has. They hold before the first byte is
    /// written. Only the group may differ, where it can't be kept; it then has no more rights than
    /// everybody.
    void setModel(const QString &model) { m_model = model; }

    Result<void> fill(const QByteArray &content);
    Result<void> commit();

    /// `fill` and `commit`.
    Result<void> write(const QByteArray &content);

private:
    Result<void> open();
    Result<void> resemble(const QByteArray &model) const;

    QString m_path;
    QByteArray m_temporary;
    Descriptor m_file;
    std::optional<mode_t> m_mode;
    std::optional<QString> m_model;
};

/// The failure of a write, with the file's name.
Failure cannotWrite(const QString &path, const Failure &why);

} // namespace morvane
