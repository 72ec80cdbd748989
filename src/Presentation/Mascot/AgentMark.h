#pragma once

#include "Core/Agents/AgentKind.h"

#include <QColor>

class QPainter;
class QRectF;

/// A plain shape of ours for each agent, and a tint, by which the eye tells their sessions apart.
namespace morvane::AgentMark {

QColor tint(AgentKind agent);

/// Draws the mark into the largest square in the middle of the frame.
void paint(QPainter &painter, AgentKind agent, const QRectF &frame, const QColor &color);

} // namespace morvane::AgentMark
