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

std::optional<json> AgentJsonFile::read() const {
    auto content = m_file.read();
    return root(content);
}

/// The root of what was read, or of what is there a moment later, which `content` is then.
std::optional<json> AgentJsonFile::root(std::optional<QByteArray> &content) const {
    auto root = rootOf(content);
    auto later = content && !root ? m_file.readAgain() : std::nullopt;
    if (later) {
        content = std::move(later);
        root = rootOf(content);
    }
    return root;
}

std::optional<Failure> AgentJsonFile::edit(const Edit &edit) const {
    return m_file.rewrite([&](auto content) -> Changed {
        const auto before = root(content);
        return before ? changed(content, before, edit) : std::nullopt;
    });
}

std::optional<Failure> AgentJsonFile::editOrCreate(const Edit &edit) const {
    return m_file.rewrite([&](auto content) {
        const auto before = root(content);
        return changed(content, before, edit);
    });
}

AgentJsonFile::Changed AgentJsonFile::changed(const std::optional<QByteArray> &content,
                                              const std::optional<json> &root,
                                              const Edit &edit) const {
    const json before = root.value_or(json::object());
    json after = before;
    if (!edit(after) || (root && after == before)) {
        return std::nullopt;
    }
    AgentSettingsChange change{
        .content = LenientJson::write(after),
        .replacesUnreadable = content && !content->trimmed().isEmpty() && !root,
    };
    if (LenientJson::parse(*change.content) != after) {
        return Failure{tr("the settings would not be valid JSON any more")};
    }
    setOrigin(change, content, before, after);
    return change;
}

/// Comments, order and layout are a person's as well, so only a text that is ours to the last byte
/// counts as one that nobody else has changed.
void AgentJsonFile::setOrigin(AgentSettingsChange &change, const std::optional<QByteArray> &content,
                              const json &before, const json &after) const {
    using enum AgentSettingsChange::Origin;
    const bool isOurText = content && *content == LenientJson::write(before);
    const auto origin = isOurText ? m_file.origin() : std::nullopt;
    const json first = origin ? rootOf(origin->bytes).value_or(json::object()) : json();
    const bool isOfOrigin = origin && m_ours.others(before) == m_ours.others(first);
    if (isOfOrigin && !m_ours.isInstalled(after) &&
        (after == first || after == m_ours.roundTrip(first))) {
        change = {.content = origin->bytes, .origin = returned};
    } else if (!isOfOrigin && !m_ours.isInstalled(before)) {
        change.origin = taken;
    }
    // What is nothing but ours needs no backup, which would only keep our folder from going.
    change.backsUp = !isOfOrigin || origin->bytes;
}

} // namespace morvane
