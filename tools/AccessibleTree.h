#pragma once

#include <QDBusConnection>
#include <QList>
#include <QRect>
#include <QString>

namespace morvane {

/// What a screen reader sees of a running program: its accessibility tree, read over the bus that
/// the session bus names for it. Calls block.
class AccessibleTree {
public:
    enum class Naming {
        whole,
        words,     ///< the first of a name that goes on with what it belongs to
        beginning, ///< of a name that goes on with what changes
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

    /// Does what a screen reader would have done with an action of the object, such as "Press";
    /// false where it has none of that name.
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
