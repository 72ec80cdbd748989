#pragma once

#include "Core/CompletedRecord.h"
#include "Core/Session.h"

#include <functional>

namespace morvane {

/// What the panel's owner does when a person asks for it. What is unset is not offered. A plain
/// value, passed down to the rows.
struct PanelActions {
    std::function<void(const Session &)> onSelect;
    std::function<void(const QString &cwd, const QString &name)> onRenameCommit;
    std::function<void(const CompletedRecord &)> onReopen;
    std::function<void(const Session &, const QString &text)> onReply;
    std::function<void()> onOpenSettings;
};

} // namespace morvane
