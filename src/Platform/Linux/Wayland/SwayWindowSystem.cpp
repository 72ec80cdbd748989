#include "Platform/Linux/Wayland/SwayWindowSystem.h"

#include "Platform/Linux/Wayland/SocketQuestion.h"
#include "Platform/Linux/Wayland/SwayMessage.h"

namespace morvane {

void SwayWindowSystem::list(Listed listed) {
    SocketQuestion::ask(
        m_scheduler, m_socket, SwayMessage::encode(SwayMessage::Type::getTree),
        &SwayMessage::length,
        [listed = std::move(listed)](const std::optional<QByteArray> &answer) {
            listed(answer ? Listing{SwayMessage::windows(*answer), true} : Listing());
        },
        &m_context);
}

/// Only a number may go into the command.
void SwayWindowSystem::activate(const QString &id) {
    const QByteArray command = "[con_id=" + QByteArray::number(id.toLongLong()) + "] focus";
    SocketQuestion::ask(
        m_scheduler, m_socket, SwayMessage::encode(SwayMessage::Type::runCommand, command),
        &SwayMessage::length, [](const auto &) {}, &m_context);
}

} // namespace morvane
