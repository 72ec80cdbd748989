#pragma once

#include "Core/Settings/DefaultsFile.h"

#include <QStringList>
#include <QVariant>

namespace morvane {

/// Typed values that survive a restart, by key: one domain, kept in one JSON file that only its
/// owner can read. It is read once, at creation. Each change is passed to the writer at once, and a
/// burst of changes may become one write. After a failed write the value stays in memory for this
/// run. A write keeps the file's other keys as they are by then: the program may also run on
/// another machine with the same home. Main thread only.
///
/// The types are those that JSON tells apart (bool, integers of 64 bits, double, string, list,
/// map), and bytes, which are stored as an object whose one key is "$data" with the base64 text.
class Defaults {
public:
    /// `folder` holds one file for each domain; it is made at the first write. A file that can't
    /// be understood counts as empty, and is put aside before it would be written over.
    Defaults(const QString &folder, const QString &domain);

    /// The application's own domain in `folder`.
    static Defaults &standard();

    /// Where the domains lie, under the desktop's folder for configuration.
    static QString folder();

    /// The stored value, or an invalid one where there is none.
    QVariant value(const QString &key) const { return m_values.value(key); }
    bool contains(const QString &key) const { return m_values.contains(key); }

    void setValue(const QString &key, const QVariant &value);

    /// Stores several values in one write, so that they arrive together or not at all.
    void setValues(const QVariantMap &values);
    void remove(const QString &key) { remove(QStringList{key}); }
    void remove(const QStringList &keys);

    /// The last write: later changes stay in memory only. If no other key is left, the file is
    /// removed, and so is one that was put aside. Waits for that, and returns whether the disk has
    /// none of the keys any more.
    [[nodiscard]] bool removeForGood(const QStringList &keys);
    bool isRemovedForGood() const { return m_isOver; }

    /// Waits until all changes are on the disk, as the destructor does.
    void flush() { m_file.flush(); }

    /// All that another application's domain holds, in the same folder; empty where there is none.
    QVariantMap persistentDomain(const QString &domain) const;

private:
    void write(const QStringList &changed);

    const QString m_folder;
    DefaultsFile m_file;
    QVariantMap m_values;
    bool m_isOver = false; ///< nothing is written any more
};

} // namespace morvane
