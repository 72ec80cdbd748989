#pragma once

#include "Platform/Linux/Desktop/WindowSystem.h"

#include <QByteArray>
#include <QRect>

#include <cstdint>
#include <optional>

/// What is said on sway's socket, in the form that sway-ipc(7) describes. Pure functions.
namespace morvane::SwayMessage {

enum class Type : std::uint32_t { runCommand = 0, subscribe = 2, getTree = 4 };

QByteArray encode(Type type, const QByteArray &payload = {});

/// How long a message that begins so is, with its head; none while that isn't whole, 0 where it is
/// no message at all.
std::optional<qsizetype> length(const QByteArray &beginning);

/// The windows of a whole answer to `getTree`, from the one that had the keyboard last to the one
/// that had it first. Their ids are the numbers of their containers.
QList<WindowSystem::Window> windows(const QByteArray &answer);

/// Where a whole answer to `getTree` has full-screen windows in view, in pixels of the layout.
QList<QRect> fullscreenAreas(const QByteArray &answer);

enum class News {
    refusal, ///< the answer to a subscription that isn't to be had
    title,   ///< of a window, and nothing else, as some programs change it all the time
    other,
};

/// What a message is that comes by a subscription.
News newsOf(const QByteArray &message);

} // namespace morvane::SwayMessage
