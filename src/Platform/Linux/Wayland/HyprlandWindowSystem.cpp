#include "Platform/Linux/Wayland/HyprlandWindowSystem.h"

#include "Platform/Linux/Wayland/CompositorJson.h"
#include "Platform/Linux/Wayland/SocketQuestion.h"

#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>

namespace morvane {

namespace {

/// Only an address may go into a command.
bool isAddress(const QString &id) {
    static const QRegularExpression address(QStringLiteral("\\A0x[0-9a-fA-F]{1,16}\\z"));
    return address.match(id).hasMatch();
}

} // namespace

/// Older releases keep the socket in /tmp.
QString HyprlandWindowSystem::socketOf(const QString &instance) {
    if (instance.isEmpty() || instance.contains(QLatin1Char('/'))) {
        return {};
    }
    for (const QString &folder :
         {qEnvironmentVariable("XDG_RUNTIME_DIR"), QStringLiteral("/tmp")}) {
        const QString path = QStringLiteral("%1/hypr/%2/.socket.sock").arg(folder, instance);
        if (QFileInfo::exists(path)) {
            return path;
        }
    }
    return {};
}

void HyprlandWindowSystem::list(Listed listed) {
    SocketQuestion::ask(
        m_scheduler, m_socket, "j/clients", &SocketQuestion::untilItCloses,
        [listed = std::move(listed)](const std::optional<QByteArray> &answer) {
            listed(answer ? Listing{windows(*answer), true} : Listing());
        },
        &m_context);
}

void HyprlandWindowSystem::activate(const QString &id) {
    if (isAddress(id)) {
        SocketQuestion::ask(
            m_scheduler, m_socket, "dispatch focuswindow address:" + id.toLatin1(),
            &SocketQuestion::untilItCloses, [](const auto &) {}, &m_context);
    }
}

QList<WindowSystem::Window> HyprlandWindowSystem::windows(const QByteArray &answer) {
    QList<QJsonObject> clients = CompositorJson::objectsOf(answer);
    std::ranges::stable_sort(clients, {}, [](const QJsonObject &client) {
        return client[QLatin1String("focusHistoryID")].toInteger();
    });
    QList<Window> result;
    for (const QJsonObject &client : clients) {
        Window window;
        window.id = client[QLatin1String("address")].toString();
        window.title = client[QLatin1String("title")].toString().left(WindowSystem::longestTitle);
        window.names = {client[QLatin1String("class")].toString(),
                        client[QLatin1String("initialClass")].toString()};
        window.names.removeAll(QString());
        window.process = std::max<qint64>(client[QLatin1String("pid")].toInteger(), 0);
        if (isAddress(window.id)) {
            result.append(window);
        }
    }
    return result;
}

} // namespace morvane
