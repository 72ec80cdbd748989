#pragma once

#include <QString>
#include <QStringList>

#include <optional>
#include <variant>

namespace morvane {

/// The key of an agent's settings file under which it takes a status line command.
struct StatusLineFeed {
    QString key;

    friend bool operator==(const StatusLineFeed &, const StatusLineFeed &) = default;
};

/// The setting of an agent that turns off its own desktop notifications, and the value for "off".
struct NotificationMute {
    QString key;
    QString value;

    friend bool operator==(const NotificationMute &, const NotificationMute &) = default;
};

/// A setting that keeps an agent from running any hook, in the same file as the hooks: the keys
/// that lead to it from the root, and the value at which no hook runs.
struct HooksSwitch {
    QStringList keys;
    bool off;

    friend bool operator==(const HooksSwitch &, const HooksSwitch &) = default;
};

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
