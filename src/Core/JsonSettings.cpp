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

std::optional<SettingsChange> changed(json root, const JsonSettings::Edit &edit) {
    if (!edit(root)) {
        return std::nullopt;
    }
    return SettingsChange{
        .content = SettingsJson::write(root),
        .verify =
            [](const QByteArray &written) { return SettingsJson::parse(written).has_value(); },
        .mismatch = QStringLiteral("the file was not valid JSON after writing"),
    };
}

} // namespace

std::optional<json> JsonSettings::read() const {
    return rootOf(m_file.read());
}

std::optional<Failure> JsonSettings::edit(const Edit &edit) const {
    return m_file.rewrite([&](const auto &content) -> std::optional<SettingsChange> {
        const auto root = rootOf(content);
        return root ? changed(*root, edit) : std::nullopt;
    });
}

std::optional<Failure> JsonSettings::editOrCreate(const Edit &edit) const {
    return m_file.rewrite([&](const auto &content) {
        return changed(rootOf(content).value_or(json::object()), edit);
    });
}

} // namespace morvane
