#pragma once

#include "Core/Intake/HookEvent.h"
#include "Core/Sessions/PendingApproval.h"
#include "Core/Sessions/PendingQuestion.h"
#include "Platform/Time.h"

namespace morvane::PendingRequest {

/// Whether the panel shows enough of this event's request for a person to answer it there; else it
/// is left to the terminal. Always true of a request without questions.
bool isAnswerableHere(const HookEvent &event);

/// The question as the panel asks it; the event must have questions. The server has parked the hook
/// under `decisionID`.
PendingQuestion question(const HookEvent &event, const QString &decisionID, Date expiresAt);

/// The same for a request without questions.
PendingApproval approval(const HookEvent &event, const QString &decisionID, Date expiresAt);

} // namespace morvane::PendingRequest
