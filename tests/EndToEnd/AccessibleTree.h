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
    explicit AccessibleTree(QString application);

    enum class Mark { any, checked };

    /// Where on the screen, in its pixels, the objects are that are showing and have this name and
    /// role ("button" stands for every kind of button), the largest first.
    QList<QRect> find(const QString &role, const QString &name, Mark mark);

private:
    struct Object {
        QString service;
        QString path;
    };

    bool connect();
    QDBusMessage call(const Object &object, const char *interface, const char *method,
                      const QVariantList &arguments = {}) const;
    QString name(const Object &object) const;
    bool hasState(const Object &object, unsigned bit) const;
    bool matches(const Object &object, const QString &role, const QString &name) const;
    QRect extents(const Object &object) const;
    QList<Object> children(const Object &object) const;
    QList<QRect> findBelow(const Object &parent, const QString &role, const QString &name,
                           Mark mark) const;

    QString m_application;
    QDBusConnection m_bus{QString()};
};

} // namespace morvane
