#include "Presentation/Panel/PermissionModeBadge.h"

#include "Presentation/Style/Colors.h"

namespace morvane {

namespace {

constexpr QColor neverAsks = Colors::sRgb(1.0, 0.45, 0.45);
constexpr QColor asksLess = Colors::sRgb(1.0, 0.75, 0.42);
constexpr QColor otherwise = Colors::sRgb(0.55, 0.75, 1.0);

} // namespace

void PermissionModeBadge::setMode(const std::optional<QString> &mode) {
    if (!mode) {
        setContent({}, otherwise);
    } else if (*mode == u"bypassPermissions") {
        setContent(tr("bypass"), neverAsks,
                   tr("Bypass permissions — this session never stops to ask."));
    } else if (*mode == u"never") {
        setContent(*mode, neverAsks,
                   tr("Never asks — this session runs every command without approval."));
    } else if (*mode == u"acceptEdits") {
        setContent(tr("edits"), asksLess, tr("Accept edits — file changes apply without asking."));
    } else if (*mode == u"auto") {
        setContent(*mode, asksLess, tr("Auto — routine tool calls run without asking."));
    } else if (*mode == u"on-failure") {
        setContent(tr("on-fail"), asksLess,
                   tr("On failure — commands run sandboxed and only ask if that fails."));
    } else if (*mode == u"plan") {
        setContent(*mode, otherwise, tr("Plan mode — this session won't change anything."));
    } else if (*mode == u"untrusted") {
        setContent(*mode, otherwise,
                   tr("Untrusted — everything outside the trusted list needs approval."));
    } else {
        setContent(*mode, otherwise, tr("Permission mode: %1").arg(*mode));
    }
    setAccessibleName(tr("permission mode %1").arg(text()));
}

} // namespace morvane
