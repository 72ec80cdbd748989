#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <memory>
#include <optional>

class QDBusArgument;

namespace morvane {

/// A desktop's place for status items, for as long as this object lives: what a person would see
/// of the one item that a program puts there, and what they can do with it. Needs an application
/// object and its event loop.
class TrayHost : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ hasHost)
    Q_PROPERTY(int ProtocolVersion READ protocolVersion)
    Q_PROPERTY(QStringList RegisteredStatusNotifierItems READ items)

public:
    explicit TrayHost(const QString &busAddress);
    ~TrayHost() override;

    bool hasHost() const { return true; }
    int protocolVersion() const { return 0; }
    QStringList items() const { return m_item.isEmpty() ? QStringList() : QStringList{m_item}; }

    /// Tells the program that its menu opens.
    void openMenu() const;

    /// What the menu shows, an item of it or of what opens from it a line: its check mark, its text
    /// and its key.
    QStringList menu() const;

    /// How often the program said that something in the menu is not as it was.
    int menuChanges() const { return m_menuChanges; }

    /// Clicks the item that has this text.
    void click(const QString &text) const;

public slots:
    void RegisterStatusNotifierItem(const QString &service); // NOLINT: the name is the bus's

signals:
    void StatusNotifierHostRegistered(); // NOLINT: the name is the bus's

private slots:
    void menuChanged() { ++m_menuChanges; }

private:
    struct MenuItem {
        int id = 0;
        int depth = 0;
        QVariantMap properties;

        QString text() const;
        QString line() const;
    };

    QVariant ask(const QString &path, const QString &interface, const QString &method,
                 const QVariantList &arguments, qsizetype result = 0) const;
    QString menuPath() const;
    QList<MenuItem> menuItems() const;
    static void read(const QDBusArgument &layout, int depth, QList<MenuItem> &into);

    QDBusConnection m_bus;
    QString m_item; ///< the service of the item
    int m_menuChanges = 0;
};

} // namespace morvane
