#include "Presentation/Panel/PermissionModeBadge.h"

#include "Presentation/Style/Colors.h"

namespace morvane {

void PermissionModeBadge::setMode(const std::optional<QString> &mode) {
    if (!mode) {
        setContent({}, Colors::asksAsUsual);
    } else if (*mode == u"bypassPermissions") {
        setContent(tr("bypass"), Colors::neverAsks,
                   tr("Bypass permissions — this session never stops to ask."));
    } else if (*mode == u"never") {
        setContent(*mode, Colors::neverAsks,
                   tr("Never asks — this session runs every command without approval."));
    } else if (*mode == u"acceptEdits") {
        setContent(tr("edits"), Colors::asksLess,
                   tr("Accept edits — file changes apply without asking."));
    } else if (*mode == u"auto") {
        setContent(*mode, Colors::asksLess, tr("Auto — routine tool calls run without asking."));
    } else if (*mode == u"on-failure") {
        setContent(tr("on-fail"), Colors::asksLess,
                   tr("On failure — commands run sandboxed and only ask if that fails."));
    } else if (*mode == u"plan") {
        setContent(*mode, Colors::asksAsUsual,
                   tr("Plan mode — this session won't change anything."));
    } else if (*mode == u"untrusted") {
        setContent(*mode, Colors::asksAsUsual,
                   tr("Untrusted — everything outside the trusted list needs approval."));
    } else {
        setContent(*mode, Colors::asksAsUsual, tr("Permission mode: %1").arg(*mode));
    }
    setAccessibleName(tr("permission mode %1").arg(text()));
}

} // namespace morvane

#include "moc_PermissionModeBadge.cpp"
