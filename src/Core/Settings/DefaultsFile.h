#pragma once

#include <QSet>
#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <mutex>
#include <optional>
#include <thread>

namespace morvane {

/// The file of one domain of the defaults. What is to be written is handed to a thread that does
/// nothing else, and ends when there is nothing left, so that nobody waits for a disk: in the order
/// in which it was asked for, each time whole or not at all, and without what a later write has
/// overtaken before its turn came. Where the system has no thread to give, the caller writes.
/// Owned by one thread, which calls everything here.
class DefaultsFile {
public:
    explicit DefaultsFile(const QString &path)
        : m_path(path), m_aside(path + QLatin1String(".unreadable")) {}

    /// Waits as `flush` does.
    ~DefaultsFile() = default;
    DefaultsFile(const DefaultsFile &) = delete;
    DefaultsFile &operator=(const DefaultsFile &) = delete;

    /// What it holds, empty where there is no file. What can't be understood, or is no regular
    /// file, counts as empty, and is put aside before it would be written over.
    QVariantMap read() const;

    /// Begins to write the keys that were changed, over what the file holds by then; where it holds
    /// nothing that can be understood, all of the values. A failure leaves the file as it is, and
    /// the next write makes up for it.
    void write(const QVariantMap &values, const QStringList &changed);

    /// Begins to remove it, and what was put aside; nothing is written after that. A link is the
    /// person's, and stays, with nothing behind it.
    void remove();

    /// Waits as `flush` does. True where none of these keys can be left in it, and nothing aside.
    bool isWithout(const QStringList &keys);

    /// Waits until the disk has what was last to be written.
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
    const QString m_aside;   ///< where it is put that can't be understood
    QSet<QString> m_changed; ///< not written yet; the writer's
    std::mutex m_mutex;      ///< of the next two
    std::optional<Change> m_next;
    bool m_isWriting = false;
    std::jthread m_writer; ///< last, since its end waits for what uses the others
};

} // namespace morvane
