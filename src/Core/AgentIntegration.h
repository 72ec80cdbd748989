#pragma once

#include <QString>

#include <optional>
#include <variant>

namespace morvane {

/// A JSON settings file of the agent, with an object of hooks under `hooksKey`, or at the root
/// where there is no such key.
struct JsonHooks {
    QString settingsPath;
    std::optional<QString> hooksKey;

    friend bool operator==(const JsonHooks &, const JsonHooks &) = default;
};

/// A block of ours in the agent's TOML file.
struct TomlHooks {
    QString settingsPath;

    friend bool operator==(const TomlHooks &, const TomlHooks &) = default;
};

/// A plugin file that is wholly ours.
struct PluginFile {
    QString filePath;

    friend bool operator==(const PluginFile &, const PluginFile &) = default;
};

/// The agent can't be connected, for the reason given.
struct Unsupported {
    QString reason;

    friend bool operator==(const Unsupported &, const Unsupported &) = default;
};

/// How hooks get into an agent. All paths are absolute.
using AgentIntegration = std::variant<JsonHooks, TomlHooks, PluginFile, Unsupported>;

} // namespace morvane
