#pragma once

#include "Core/Agents/AgentKind.h"

#include <QColor>

class QPainter;
class QRectF;

/// A simple shape of our own and a tint for each agent, by which their sessions are told apart.
namespace morvane::AgentMark {

QColor tint(AgentKind agent);

/// Draws the mark into the largest square in the middle of the frame.
void paint(QPainter &painter, AgentKind agent, const QRectF &frame, const QColor &color);

} // namespace morvane::AgentMark
