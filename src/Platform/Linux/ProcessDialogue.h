#pragma once

#include "Platform/ToolDialogue.h"

namespace morvane {

/// Talks over pipes to a program in its own process group, so that what it has started ends with
/// it. Owned by the application.
class ProcessDialogue : public ToolDialogue {
public:
    End hold(const Tools::Command &command, const QByteArray &opening,
             const std::function<Reply(const QByteArray &heard)> &reply, Seconds patience) override;
};

} // namespace morvane
