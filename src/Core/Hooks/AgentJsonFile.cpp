#include "Core/Hooks/AgentJsonFile.h"

#include "Core/Hooks/LenientJson.h"

#include <nlohmann/json.hpp>

namespace morvane {

namespace {

using nlohmann::json;

std::optional<json> rootOf(const std::optional<QByteArray> &content) {
    auto root = content ? LenientJson::parse(*content) : std::nullopt;
    return root && root->is_object() ? std::move(root) : std::nullopt;
}

} // namespace

std::optional<json> AgentJsonFile::read(QByteArrayView name) const {
    auto content = m_file.read();
    return content && content->contains(name) ? root(content) : std::nullopt;
}

std::optional<json> AgentJsonFile::origin() const {
    const auto origin = m_file.origin();
    return origin ? std::optional(rootOf(origin->bytes).value_or(json::object())) : std::nullopt;
}

/// The root of `content`, which is read again where it can't be understood.
std::optional<json> AgentJsonFile::root(std::optional<QByteArray> &content) const {
    auto root = rootOf(content);
    auto later = content && !root ? m_file.readAgain() : std::nullopt;
    if (later) {
        content = std::move(later);
        root = rootOf(content);
    }
    return root;
}

Result<void> AgentJsonFile::edit(const Edit &edit) const {
    return m_file.rewrite([&](auto content) -> Changed {
        auto before = root(content);
        return before ? changed(content, std::move(before), edit) : std::nullopt;
    });
}

Result<void> AgentJsonFile::editOrCreate(const Edit &edit) const {
    return m_file.rewrite([&](auto content) {
        auto before = root(content);
        return changed(content, std::move(before), edit);
    });
}

AgentJsonFile::Changed AgentJsonFile::changed(const std::optional<QByteArray> &content,
                                              std::optional<json> root, const Edit &edit) const {
    const bool isReadable = root.has_value();
    const json before = std::move(root).value_or(json::object());
    json after = before;
    if (!edit(after) || (isReadable && after == before)) {
        return std::nullopt;
    }
    AgentSettingsChange change = sinceOrigin(content, before, after);
    if (change.origin != AgentSettingsChange::Origin::returned) {
        change.content = LenientJson::write(after);
        change.replacesUnreadable = content && !content->trimmed().isEmpty() && !isReadable;
        if (LenientJson::parse(*change.content) != after) {
            return Failure{tr("the settings would not be valid JSON any more")};
        }
    }
    return change;
}

/// The change without its content, unless it restores the origin. Comments, order and layout belong
/// to the person as well, so only a text that is byte for byte the one we write counts as unchanged
/// by others.
AgentSettingsChange AgentJsonFile::sinceOrigin(const std::optional<QByteArray> &content,
                                               const json &before, const json &after) const {
    using enum AgentSettingsChange::Origin;
    const auto origin = content ? m_file.origin() : std::nullopt;
    const bool isOurText = origin && *content == LenientJson::write(before);
    const json first = isOurText ? rootOf(origin->bytes).value_or(json::object()) : json();
    const bool isOfOrigin = isOurText && m_ours.others(before) == m_ours.others(first);
    // A file of ours alone needs no backup, which would only keep our folder from being removed.
    AgentSettingsChange change{.backsUp = !isOfOrigin || origin->bytes};
    if (isOfOrigin && !m_ours.isInstalled(after) &&
        (after == first || after == m_ours.roundTrip(first))) {
        change.content = origin->bytes;
        change.origin = returned;
    } else if (!isOfOrigin && !m_ours.isInstalled(before) &&
               !(isOurText && m_ours.roundTrip(before) == before)) {
        // A text that our round trip restores needs no copy, and the kept one may hold comments.
        change.origin = taken;
    }
    return change;
}

} // namespace morvane
