#include "Core/Hooks/TomlBlock.h"

#include "Core/Hooks/HookPlan.h"
#include "Core/Hooks/TomlHookEntries.h"

#include <QCoreApplication>

#include <algorithm>
#include <iterator>

namespace morvane::TomlBlock {

const QByteArray tomlBeginMarker = "# >>> morvane:begin";

namespace {

const QByteArray tomlEndMarker = "# <<< morvane:end";

/// The lines before the first hook.
QByteArrayList blockHead() {
    return {
        tomlBeginMarker,
        "# Managed by Morvane — edits between these markers are overwritten.",
        "# Remove the block (or use Morvane's Settings) to disconnect.",
    };
}

/// The prefix that turns the lines of an empty list of hooks into comments.
const QByteArray tomlListMarker = "# morvane:list ";

/// The translation context of the messages for a person.
struct Words {
    Q_DECLARE_TR_FUNCTIONS(TomlBlock)
};

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

/// A block that has lost its end marker may be followed by the person's lines and then by a whole
/// block, so the last begin marker before the end marker counts.
std::optional<Extent> extentIn(const QByteArray &text) {
    const qsizetype first = text.indexOf(tomlBeginMarker);
    const qsizetype end = first < 0 ? -1 : text.indexOf(tomlEndMarker, first);
    return end < 0 ? std::nullopt
                   : std::optional(Extent{text.lastIndexOf(tomlBeginMarker, end),
                                          end + tomlEndMarker.size()});
}

QByteArray strippingMorvaneBlock(QByteArray text) {
    while (const auto extent = extentIn(text)) {
        const qsizetype lineEnd = text.indexOf('\n', extent->end);
        const qsizetype end = lineEnd < 0 ? extent->end : lineEnd + 1;
        text.remove(extent->begin, end - extent->begin);
    }
    return text;
}

/// Makes the commented-out empty list a list again, or drops it where there are hooks by now.
QByteArray withListBack(const QByteArray &text) {
    if (!text.contains(tomlListMarker)) {
        return text;
    }
    QByteArrayList lines = text.split('\n');
    const auto isOfList = [](const QByteArray &line) { return line.startsWith(tomlListMarker); };
    QByteArrayList others;
    std::ranges::remove_copy_if(lines, std::back_inserter(others), isOfList);
    for (QByteArray &line : lines) {
        if (isOfList(line)) {
            line.remove(0, tomlListMarker.size());
        }
    }
    const QByteArray back = lines.join('\n');
    return TomlHookEntries::find(back) ? back : others.join('\n');
}

QByteArray withoutLineFeeds(QByteArray text) {
    while (text.endsWith('\n')) {
        text.chop(1);
    }
    return text;
}

/// The text without our entries outside the block; unchanged where that would alter the meaning of
/// the rest.
QByteArray strippingEntries(const QByteArray &text) {
    const auto found = TomlHookEntries::find(text);
    if (!found || found->ours == 0) {
        return text;
    }
    const auto left = TomlHookEntries::find(found->withoutOurs);
    const bool isSame = left && left->othersMeaning == found->othersMeaning;
    return isSame ? found->withoutOurs : text;
}

/// The text without the first lines of blocks that have lost their end, provided that it parses and
/// no entry of ours is left: the lines below belong to whoever wrote them. Unchanged where that
/// would alter the meaning of the rest, such as where a string contains such a line.
QByteArray strippingBeginnings(const QByteArray &text) {
    const auto before = TomlHookEntries::find(text);
    if (!before || before->ours > 0) {
        return text;
    }
    QByteArrayList lines = text.split('\n');
    lines.removeIf([](const QByteArray &line) { return blockHead().contains(line.trimmed()); });
    const QByteArray result = lines.join('\n');
    const auto after = TomlHookEntries::find(result);
    return after && after->othersMeaning == before->othersMeaning ? result : text;
}

/// What is not ours, without line feeds at its end.
QByteArray othersIn(const QByteArray &text) {
    return withoutLineFeeds(withListBack(strippingEntries(strippingMorvaneBlock(text))));
}

} // namespace

QByteArray tomlBlock(const HookPlan &plan) {
    QByteArrayList lines = blockHead();
    for (const QString &event : plan.installedEvents()) {
        lines << "[[hooks]]"
              << "event = " + quoted(event);
        if (const auto matcher = plan.matcher(event)) {
            lines << "matcher = " + quoted(*matcher);
        }
        lines << "command = " + quoted(plan.command(event))
              << "timeout = " + QByteArray::number(plan.wait(event).limit.count());
    }
    lines << tomlEndMarker;
    return lines.join('\n') + '\n';
}

std::optional<QByteArray> installedTOMLBlock(const QByteArray &text) {
    const auto extent = extentIn(text);
    return extent ? std::optional(text.mid(extent->begin, extent->end - extent->begin))
                  : std::nullopt;
}

bool isInstalled(const QByteArray &text) {
    if (text.contains(tomlBeginMarker)) {
        return true;
    }
    if (!text.contains(HookPlan::hookScriptMarker)) {
        return false;
    }
    const auto found = TomlHookEntries::find(text);
    return found && found->ours > 0;
}

/// Even with the plan's block in place, there may be entries of ours outside it, or the block may
/// stand where it makes the file invalid.
bool isStale(const QByteArray &text, const HookPlan &plan) {
    const auto present = installedTOMLBlock(text);
    if (!present || *present + '\n' != tomlBlock(plan)) {
        return true;
    }
    const auto found = TomlHookEntries::find(text);
    return found ? found->ours != plan.installedEvents().size()
                 : static_cast<bool>(install(text, plan));
}

Result<QByteArray> install(const QByteArray &text, const HookPlan &plan) {
    QByteArray others = othersIn(text);
    // The line feed may complete a "\r\n"; a text that ends in a lone "\r" has to fail.
    const auto before = TomlHookEntries::find(text.endsWith('\r') ? text : others + '\n');
    if (!before) {
        return before.error();
    }
    using enum TomlHookEntries::Form;
    if (before->form == list) {
        return Failure{Words::tr("the hooks in config.toml stand in one list at line %1, to which "
                                 "none can be added. Written as [[hooks]] each they can stay")
                           .arg(before->line)};
    }
    if (before->form == other) {
        return Failure{
            Words::tr("\"hooks\" in config.toml is no list of hooks at line %1").arg(before->line)};
    }
    if (before->form == emptyList) {
        others = withoutLineFeeds(before->withListBehind(tomlListMarker));
    }
    const QByteArray result = (others.isEmpty() ? others : others + "\n\n") + tomlBlock(plan);
    const auto after = TomlHookEntries::find(result);
    if (!after || after->othersMeaning != before->othersMeaning ||
        after->ours != plan.installedEvents().size()) {
        return Failure{Words::tr("config.toml would not say the same any more")};
    }
    return result;
}

QByteArray uninstall(const QByteArray &text) {
    const QByteArray stripped = strippingEntries(strippingMorvaneBlock(text));
    const QByteArray others =
        withoutLineFeeds(withListBack(stripped == text ? stripped : strippingBeginnings(stripped)));
    return others.isEmpty() ? others : others + '\n';
}

} // namespace morvane::TomlBlock
