#include "Presentation/Panel/SessionSubtitle.h"

#include "Core/Ground/VisibleText.h"
#include "Core/Sessions/Session.h"
#include "Presentation/Style/StateLook.h"

namespace morvane {

namespace {

QString firstOf(std::initializer_list<const std::optional<QString> *> candidates) {
    for (const auto *candidate : candidates) {
        if (*candidate) {
            return **candidate;
        }
    }
    return {};
}

} // namespace

SessionSubtitle SessionSubtitle::of(const Session &session) {
    const QString detail = session.titlesLag && session.isAtWork()
                               ? firstOf({&session.lastPrompt, &session.aiTitle})
                               : firstOf({&session.aiTitle, &session.lastPrompt});
    const QString result = firstOf({&session.summary, &session.aiTitle, &session.lastPrompt});
    const QString word = StateLook::of(session.state).word;
    switch (session.state) {
    case SessionState::idle:
        return {word, detail};
    case SessionState::done:
    case SessionState::failed:
        return {word, result};
    case SessionState::needsInput:
        if (session.pendingQuestion) {
            return {tr("asking you"), detail};
        }
        if (session.pendingExternalResponse) {
            return {tr("waiting for your answer"), detail};
        }
        if (session.pendingApproval) {
            const QString tool = VisibleText::name(session.pendingApproval->toolName);
            return {tr("waiting to run %1").arg(tool), detail};
        }
        return {word, detail};
    case SessionState::working:
        break;
    }
    if (session.pendingAgents == 1) {
        return {tr("waiting for 1 agent…"), detail};
    }
    if (session.pendingAgents > 1) {
        return {tr("waiting for %1 agents…").arg(session.pendingAgents), detail};
    }
    if (session.currentTool) {
        return {tr("running %1").arg(VisibleText::name(*session.currentTool)), detail};
    }
    return {tr("working…"), detail};
}

QString SessionSubtitle::text() const {
    return detail.isEmpty() ? status : status + QStringLiteral(" · ") + detail;
}

} // namespace morvane
