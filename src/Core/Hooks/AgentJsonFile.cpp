#include "Core/Hooks/AgentJsonFile.h"

#include "Core/Hooks/LenientJson.h"

#include <nlohmann/json.hpp>

namespace morvane {

namespace {

using nlohmann::json;

std::optional<json> rootOf(const std::optional<QByteArray> &content) {
    auto root = content ? LenientJson::parse(*content) : std::nullopt;
    return root && root->is_object() ? root : std::nullopt;
}

Result<std::optional<AgentSettingsChange>> changed(json root, const AgentJsonFile::Edit &edit) {
    if (!edit(root)) {
        return std::nullopt;
    }
    const QByteArray text = LenientJson::write(root);
    if (LenientJson::parse(text) != root) {
        return Failure{AgentJsonFile::tr("the settings would not be valid JSON any more")};
    }
    return AgentSettingsChange{.content = text};
}

} // namespace

std::optional<json> AgentJsonFile::read() const {
    return rootOf(m_file.read());
}

std::optional<Failure> AgentJsonFile::edit(const Edit &edit) const {
    return m_file.rewrite([&](const auto &content) -> Result<std::optional<AgentSettingsChange>> {
        const auto root = rootOf(content);
        return root ? changed(*root, edit) : std::nullopt;
    });
}

std::optional<Failure> AgentJsonFile::editOrCreate(const Edit &edit) const {
    return m_file.rewrite([&](const auto &content) {
        const auto root = rootOf(content);
        auto result = changed(root.value_or(json::object()), edit);
        if (!result.failure() && *result) {
            (*result)->replacesUnreadable = content && !content->trimmed().isEmpty() && !root;
        }
        return result;
    });
}

} // namespace morvane
