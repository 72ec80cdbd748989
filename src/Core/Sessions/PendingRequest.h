#pragma once

#include "Core/Intake/HookEvent.h"
#include "Core/Sessions/PendingApproval.h"
#include "Core/Sessions/PendingQuestion.h"
#include "Platform/Time.h"

namespace morvane::PendingRequest {

/// Whether a person can answer the request of this event from what the panel shows of it; else it
/// is the terminal's. Always true of a request without questions.
bool isAnswerableHere(const HookEvent &event);

/// What the panel asks; the event has questions. `decisionID` is the one under which the server
/// keeps the hook.
PendingQuestion question(const HookEvent &event, const QString &decisionID, Date expiresAt);

/// The same for a request without questions.
PendingApproval approval(const HookEvent &event, const QString &decisionID, Date expiresAt);

} // namespace morvane::PendingRequest
