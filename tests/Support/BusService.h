#pragma once

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVirtualObject>
#include <QHash>

namespace morvane {

/// A stand-in for a service on a bus, until it is destroyed or another takes over its name. It
/// answers at this path, and with `SubPath` at those below it.
class BusService : public QDBusVirtualObject {
public:
    BusService(const QDBusConnection &bus, const QString &path, const QString &name,
               QDBusConnection::VirtualObjectRegisterOption where = QDBusConnection::SubPath)
        : m_bus(bus), m_path(path), m_name(name) {
        m_bus.registerVirtualObject(m_path, this, where);
        m_bus.interface()->registerService(m_name, QDBusConnectionInterface::ReplaceExistingService,
                                           QDBusConnectionInterface::AllowReplacement);
    }
    ~BusService() override {
        m_bus.unregisterService(m_name);
        m_bus.unregisterObject(m_path);
    }

    QString introspect(const QString &) const override { return {}; }

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &bus) override {
        QStringList arguments;
        for (const QVariant &argument : message.arguments()) {
            arguments += textOf(argument);
        }
        asked += message.path() + ' ' + message.member() + '(' + arguments.join(',') + ')';
        return bus.send(answers.contains(asked.last())
                            ? message.createReply(answers[asked.last()])
                            : message.createErrorReply(QDBusError::UnknownMethod, "not here"));
    }

    void signal(const QString &path, const QString &interface, const QString &name,
                const QVariantList &arguments) const {
        QDBusMessage signal = QDBusMessage::createSignal(path, interface, name);
        signal.setArguments(arguments);
        m_bus.send(signal);
    }

    QHash<QString, QVariantList> answers; ///< by the question as in `asked`
    QStringList asked;                    ///< "PATH METHOD(ARGUMENTS)" of each

protected:
    QDBusConnection m_bus;

private:
    static QStringList textOf(const QVariant &argument) {
        if (argument.canConvert<QDBusObjectPath>()) {
            return {argument.value<QDBusObjectPath>().path()};
        }
        if (const auto map = argument.value<QDBusArgument>(); map.currentSignature() == "a{ss}") {
            QStringList result;
            const auto texts = qdbus_cast<QMap<QString, QString>>(map);
            for (auto text = texts.cbegin(); text != texts.cend(); ++text) {
                result += text.key() + '=' + text.value();
            }
            return result;
        }
        return argument.typeId() == QMetaType::QStringList ? argument.toStringList()
                                                           : QStringList(argument.toString());
    }

    const QString m_path;
    const QString m_name;
};

} // namespace morvane
