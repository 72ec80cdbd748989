#include "Presentation/Panel/ContextBadge.h"

#include "Core/Sessions/Session.h"
#include "Presentation/Style/Colors.h"

namespace morvane {

void ContextBadge::setSession(const Session &session) {
    const QString label = session.contextLabel().value_or(QString());
    const QString count = QString::number(session.contextTokens.value_or(0));
    if (session.contextPressure() == ContextPressure::tight) {
        setContent(label, Colors::tightContext,
                   tr("%1 tokens of context — close to a standard 200k window; a compaction "
                      "is likely soon.")
                       .arg(count));
    } else if (session.contextPressure() == ContextPressure::filling) {
        setContent(
            label, Colors::fillingContext,
            tr("%1 tokens of context — filling up if this is a standard 200k window.").arg(count));
    } else {
        setContent(label, Colors::quietText,
                   tr("%1 tokens of context in the last request.").arg(count));
    }
    setAccessibleName(tr("context %1").arg(label));
}

} // namespace morvane

#include "moc_ContextBadge.cpp"
