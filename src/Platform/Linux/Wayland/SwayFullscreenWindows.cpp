#include "Platform/Linux/Wayland/SwayFullscreenWindows.h"

#include "Platform/Linux/Wayland/SocketQuestion.h"
#include "Platform/Linux/Wayland/SwayMessage.h"

namespace morvane {

namespace {

constexpr qsizetype longestMessage = 1048576;

} // namespace

/// Subscribes only to events that sway 1.7 knows: it refuses all if one is unknown.
void SwayFullscreenWindows::begin(CompositorSocket &events) {
    events.send(SwayMessage::encode(SwayMessage::Type::subscribe, R"(["window","workspace"])"));
}

std::optional<bool> SwayFullscreenWindows::take(QByteArray &heard) {
    bool mayHaveChanged = false;
    while (const auto length = SwayMessage::length(heard)) {
        if (*length == 0 || *length > longestMessage) {
            return std::nullopt;
        }
        if (*length > heard.size()) {
            break;
        }
        const auto news = SwayMessage::newsOf(heard.left(*length));
        heard.remove(0, *length);
        if (news == SwayMessage::News::refusal) {
            return std::nullopt;
        }
        mayHaveChanged = mayHaveChanged || news == SwayMessage::News::other;
    }
    return mayHaveChanged;
}

void SwayFullscreenWindows::ask(const Told &told) {
    SocketQuestion::ask(
        m_scheduler, m_socket, SwayMessage::encode(SwayMessage::Type::getTree),
        &SwayMessage::length,
        [told](const std::optional<QByteArray> &answer) {
            told(answer ? SwayMessage::fullscreenAreas(*answer) : QList<QRect>());
        },
        this);
}

} // namespace morvane

#include "moc_SwayFullscreenWindows.cpp"
