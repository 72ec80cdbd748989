#pragma once

#include "Platform/ToolDialogue.h"

namespace morvane {

/// Over pipes, with each program in a process group of its own, so that what it has started ends
/// with it. Owned by the application.
class ProcessDialogue : public ToolDialogue {
public:
    End hold(const Tools::Command &command, const QByteArray &opening,
             const std::function<Reply(const QByteArray &heard)> &reply, Seconds patience) override;
};

} // namespace morvane
