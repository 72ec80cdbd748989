#include "Presentation/Panel/AgentBadge.h"

#include "Presentation/Mascot/AgentMark.h"

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

#include "moc_AgentBadge.cpp"
