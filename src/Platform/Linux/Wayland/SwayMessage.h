#pragma once

#include "Platform/Linux/Desktop/WindowSystem.h"

#include <QByteArray>
#include <QRect>

#include <cstdint>
#include <optional>

/// The messages on sway's socket, as sway-ipc(7) describes them. Pure functions.
namespace morvane::SwayMessage {

enum class Type : std::uint32_t { runCommand = 0, subscribe = 2, getTree = 4 };

QByteArray encode(Type type, const QByteArray &payload = {});

/// The length of a message that begins like this, head included; none while the head is incomplete,
/// 0 if it is no message at all.
std::optional<qsizetype> length(const QByteArray &beginning);

/// The windows of a complete answer to `getTree`, the most recently focused first. Their ids are
/// their container ids.
QList<WindowSystem::Window> windows(const QByteArray &answer);

/// The places of the full-screen windows in view in a complete answer to `getTree`, in pixels of
/// the layout.
QList<QRect> fullscreenAreas(const QByteArray &answer);

enum class News {
    refusal, ///< the answer to a refused subscription
    title,   ///< only a window's title has changed, as some programs' do all the time
    other,
};

/// What a message of a subscription reports.
News newsOf(const QByteArray &message);

} // namespace morvane::SwayMessage
