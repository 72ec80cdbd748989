#include "Core/Hooks/TomlBlock.h"

#include "Core/Agents/HookTimeout.h"
#include "Core/Hooks/HookPlan.h"

namespace morvane::TomlBlock {

const QByteArray tomlBeginMarker = "# >>> morvane:begin";

namespace {

const QByteArray tomlEndMarker = "# <<< morvane:end";

QByteArray quoted(const QString &value) {
    QByteArray text = value.toUtf8();
    text.replace('\\', "\\\\");
    text.replace('"', "\\\"");
    return '"' + text + '"';
}

/// Where the block begins, and the position behind its end marker.
struct Extent {
    qsizetype begin;
    qsizetype end;
};

/// A block that has lost its end has another one, whole, behind it, and the person's lines between
/// the two: so it is the last beginning before the end that counts.
std::optional<Extent> extentIn(const QByteArray &text) {
    const qsizetype first = text.indexOf(tomlBeginMarker);
    const qsizetype end = first < 0 ? -1 : text.indexOf(tomlEndMarker, first);
    return end < 0 ? std::nullopt
                   : std::optional(Extent{text.lastIndexOf(tomlBeginMarker, end),
                                          end + tomlEndMarker.size()});
}

QByteArray strippingMorvaneBlock(QByteArray text) {
    if (const auto extent = extentIn(text)) {
        const qsizetype lineEnd = text.indexOf('\n', extent->end);
        const qsizetype end = lineEnd < 0 ? extent->end : lineEnd + 1;
        text.remove(extent->begin, end - extent->begin);
    }
    while (text.endsWith('\n')) {
        text.chop(1);
    }
    return text;
}

} // namespace

QByteArray tomlBlock(const HookPlan &plan) {
    QByteArrayList lines{
        tomlBeginMarker,
        "# Managed by Morvane — edits between these markers are overwritten.",
        "# Remove the block (or use Morvane's Settings) to disconnect.",
    };
    for (const QString &event : plan.installedEvents()) {
        lines << "[[hooks]]"
              << "event = " + quoted(event);
        if (const auto matcher = plan.matcher(event)) {
            lines << "matcher = " + quoted(*matcher);
        }
        const int timeout =
            plan.isDecisionEvent(event) ? HookTimeout::decision : HookTimeout::event;
        lines << "command = " + quoted(plan.command(event))
              << "timeout = " + QByteArray::number(timeout);
    }
    lines << tomlEndMarker;
    return lines.join('\n') + '\n';
}

std::optional<QByteArray> installedTOMLBlock(const QByteArray &text) {
    const auto extent = extentIn(text);
    return extent ? std::optional(text.mid(extent->begin, extent->end - extent->begin))
                  : std::nullopt;
}

QByteArray install(const QByteArray &text, const HookPlan &plan) {
    const QByteArray others = strippingMorvaneBlock(text);
    return (others.isEmpty() ? others : others + "\n\n") + tomlBlock(plan);
}

QByteArray uninstall(const QByteArray &text) {
    const QByteArray others = strippingMorvaneBlock(text);
    return others.isEmpty() ? others : others + '\n';
}

} // namespace morvane::TomlBlock
