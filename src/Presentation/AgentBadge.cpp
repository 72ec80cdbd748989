#include "Presentation/AgentBadge.h"

#include "Presentation/AgentMark.h"

namespace morvane {

void AgentBadge::setAgent(std::optional<AgentKind> agent) {
    if (!agent) {
        setContent({}, {});
        return;
    }
    setPicture([agent](QPainter &painter, const QRectF &frame, const QColor &color) {
        AgentMark::paint(painter, *agent, frame, color);
    });
    setContent(displayName(*agent), AgentMark::tint(*agent));
}

} // namespace morvane
