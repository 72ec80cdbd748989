#pragma once

#include <QSet>
#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <mutex>
#include <optional>
#include <thread>

namespace morvane {

/// The file of one domain of the defaults. A thread that does nothing else, and ends when there is
/// nothing left to write, does the writing, so that no caller waits for a disk: in the order of the
/// calls, each time the whole file or nothing, and skipping what a later call has overtaken. If the
/// system can't create a thread, the caller writes. Owned by one thread, which makes all calls.
class DefaultsFile {
public:
    explicit DefaultsFile(const QString &path)
        : m_path(path), m_aside(path + QLatin1String(".unreadable")) {}

    /// Waits as `flush` does.
    ~DefaultsFile() = default;
    DefaultsFile(const DefaultsFile &) = delete;
    DefaultsFile &operator=(const DefaultsFile &) = delete;

    /// The file's values, empty if there is no file. A file that can't be understood, or isn't a
    /// regular one, counts as empty, and is put aside before it would be overwritten.
    QVariantMap read() const;

    /// Begins to write the changed keys into what the file holds by then, or all of the values if
    /// that can't be understood. A failure leaves the file as it is, and the next write makes up
    /// for it.
    void write(const QVariantMap &values, const QStringList &changed);

    /// Begins to remove the file, and one that was put aside; must be the last write. A symbolic
    /// link is the person's: it and its target stay, without the removed keys.
    void remove();

    /// Waits as `flush` does. True if it can't hold any of these keys, and none is put aside.
    bool isWithout(const QStringList &keys);

    /// Waits until everything passed to `write` or `remove` has been carried out.
    void flush();

private:
    struct Change {
        QVariantMap values;
        QSet<QString> keys; ///< those that were changed
        bool isRemoval = false;
    };

    std::optional<QVariantMap> present() const;
    void handOver(Change change);
    void carryOutAll();
    void replace(const QVariantMap &values);
    void removeFile();

    const QString m_path;
    const QString m_aside;   ///< for a file that can't be understood
    QSet<QString> m_changed; ///< not written yet; used by the writer only
    std::mutex m_mutex;      ///< guards the next two
    std::optional<Change> m_next;
    bool m_isWriting = false;
    std::jthread m_writer; ///< last, since its end waits for the thread, which uses the others
};

} // namespace morvane
