#pragma once

#include <QDBusConnection>
#include <QList>
#include <QRect>
#include <QString>

namespace morvane {

/// What a screen reader sees of a running program: its accessibility tree, read over the
/// accessibility bus, whose address the session bus gives. Calls block.
class AccessibleTree {
public:
    enum class Naming {
        whole,
        words,     ///< the name may go on with further words, for what it belongs to
        beginning, ///< the name may go on with anything, for what changes
    };

    struct Object {
        QString service;
        QString path;
    };

    struct Found {
        Object object;
        QString name;
        QRect extents; ///< in pixels of the screen
    };

    explicit AccessibleTree(QString application);

    /// The objects that are showing and have this name and role ("button" stands for every kind of
    /// button that can be pressed), the largest first.
    QList<Found> find(const QString &role, const QString &name, Naming naming = Naming::whole);

    /// Invokes an action of the object, such as "Press", as a screen reader would; false if it has
    /// none of that name.
    bool act(const Found &found, const QString &action) const;

private:
    bool connect();
    QDBusMessage call(const Object &object, const char *interface, const char *method,
                      const QVariantList &arguments = {}) const;
    QString name(const Object &object) const;
    bool hasState(const Object &object, unsigned bit) const;
    bool hasRole(const Object &object, const QString &role) const;
    QRect extents(const Object &object) const;
    QList<Object> children(const Object &object) const;
    QList<Found> findBelow(const Object &parent, const QString &role, const QString &name,
                           Naming naming) const;

    QString m_application;
    QDBusConnection m_bus{QString()};
};

} // namespace morvane
