#include "Core/JsonSettings.h"

#include "Core/SettingsJson.h"

#include <nlohmann/json.hpp>

namespace morvane {

namespace {

using nlohmann::json;

std::optional<json> rootOf(const std::optional<QByteArray> &content) {
    auto root = content ? SettingsJson::parse(*content) : std::nullopt;
    return root && root->is_object() ? root : std::nullopt;
}

Result<std::optional<SettingsChange>> changed(json root, const JsonSettings::Edit &edit) {
    if (!edit(root)) {
        return std::nullopt;
    }
    const QByteArray text = SettingsJson::write(root);
    if (SettingsJson::parse(text) != root) {
        return Failure{QStringLiteral("the settings would not be valid JSON any more")};
    }
    return SettingsChange{.content = text};
}

} // namespace

std::optional<json> JsonSettings::read() const {
    return rootOf(m_file.read());
}

std::optional<Failure> JsonSettings::edit(const Edit &edit) const {
    return m_file.rewrite([&](const auto &content) -> Result<std::optional<SettingsChange>> {
        const auto root = rootOf(content);
        return root ? changed(*root, edit) : std::nullopt;
    });
}

std::optional<Failure> JsonSettings::editOrCreate(const Edit &edit) const {
    return m_file.rewrite([&](const auto &content) {
        const auto root = rootOf(content);
        auto result = changed(root.value_or(json::object()), edit);
        auto *change = std::get_if<std::optional<SettingsChange>>(&result);
        if (change && *change) {
            (*change)->replacesUnreadable = content && !content->trimmed().isEmpty() && !root;
        }
        return result;
    });
}

} // namespace morvane
