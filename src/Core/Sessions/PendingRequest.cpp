#include "Core/Sessions/PendingRequest.h"

#include "Core/Adapters/AgentRegistry.h"
#include "Core/Agents/AgentAdapter.h"
#include "Core/Ground/BoundedText.h"
#include "Core/Ground/VisibleText.h"

#include <QCoreApplication>
#include <QSet>

#include <algorithm>

namespace morvane::PendingRequest {

namespace {

// Limits of a question that the panel asks.
constexpr qsizetype mostOptions = 20;
constexpr qsizetype longestHeader = 24; ///< it shares a line

/// Whether the panel shows the text whole.
bool canBeRead(const QString &text) {
    if (text.size() > BoundedText::paragraphLength) {
        return false;
    }
    const QString shown = VisibleText::paragraph(text);
    return shown.size() <= BoundedText::paragraphLength &&
           shown == BoundedText::of(shown, BoundedText::paragraphLength);
}

/// Whether each text looks different from all others, and none looks empty.
bool areDistinct(const QStringList &texts) {
    QSet<QString> looks{QString()};
    for (const QString &text : texts) {
        looks.insert(VisibleText::look(text));
    }
    return looks.size() == texts.size() + 1;
}

QStringList labelsOf(const AgentQuestion &question) {
    QStringList result;
    for (const AgentOption &option : question.options) {
        result.append(option.label);
    }
    return result;
}

bool canBeRead(const AgentQuestion &question) {
    return question.isWhole && canBeRead(question.question) &&
           VisibleText::paragraph(question.header.value_or(QString())).size() <= longestHeader &&
           question.options.size() <= mostOptions &&
           std::ranges::all_of(question.options,
                               [](const AgentOption &option) {
                                   return canBeRead(option.label) &&
                                          canBeRead(option.description.value_or(QString()));
                               }) &&
           areDistinct(labelsOf(question));
}

QString toolOf(const HookEvent &event) {
    return event.toolName.value_or(QCoreApplication::translate("PendingRequest", "tool"));
}

} // namespace

bool isAnswerableHere(const HookEvent &event) {
    if (!event.questions) {
        return true;
    }
    QStringList texts; // the answers' keys
    for (const AgentQuestion &question : *event.questions) {
        texts.append(question.question);
    }
    return AgentRegistry::adapter(event.agent).supportsQuestionAnswers() &&
           std::ranges::all_of(*event.questions,
                               [](const AgentQuestion &question) {
                                   return !question.multiSelect && canBeRead(question);
                               }) &&
           areDistinct(texts);
}

PendingQuestion question(const HookEvent &event, const QString &decisionID, Date expiresAt) {
    const auto asking = AgentRegistry::adapter(event.agent).questionTool();
    return {.id = decisionID,
            .questions = *event.questions,
            .toolName = toolOf(event),
            .onlyAsks = event.toolName && event.toolName == asking,
            .input = event.toolInput,
            .answers = {},
            .expiresAt = expiresAt};
}

PendingApproval approval(const HookEvent &event, const QString &decisionID, Date expiresAt) {
    const AgentAdapter &adapter = AgentRegistry::adapter(event.agent);
    return {.id = decisionID,
            .toolName = toolOf(event),
            .detail = event.toolDetail,
            .input = event.toolInput,
            .expiresAt = expiresAt,
            .allowsRemembering = adapter.supportsRememberedDecisions() && !event.asksAnew};
}

} // namespace morvane::PendingRequest
