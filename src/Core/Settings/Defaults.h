#pragma once

#include <QStringList>
#include <QVariant>

namespace morvane {

/// Typed values that survive a restart, by key: one domain, kept in one JSON file that only its
/// owner can read. Read once, at creation; each change is written at once and atomically, and a
/// failed write keeps the value in memory for this run. Main thread only.
///
/// The types are those that JSON tells apart (bool, integers of 64 bits, double, string, list,
/// map), and bytes, which are stored as an object whose one key is "$data" with the base64 text.
class Defaults {
public:
    /// `folder` holds one file for each domain; it is made at the first write. A file that can't
    /// be understood counts as empty, and is put aside before it would be written over.
    Defaults(QString folder, QString domain);

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

    /// All that another application's domain holds, in the same folder; empty where there is none.
    QVariantMap persistentDomain(const QString &domain) const;

private:
    QString filePath(const QString &domain) const;
    void write();

    QString m_folder;
    QString m_domain;
    QVariantMap m_values;
    bool m_unreadable = false;
};

} // namespace morvane
