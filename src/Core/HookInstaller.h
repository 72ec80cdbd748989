#pragma once

#include "Core/Failure.h"

#include <cstdint>
#include <optional>

namespace morvane {

class MorvaneSettings;

/// Writes what agents need to reach the event server. A value made afresh for each operation; main
/// thread, synchronous.
class HookInstaller {
public:
    /// `boundPort` is the port that the server really has.
    HookInstaller(const MorvaneSettings &settings, std::uint16_t boundPort);

    /// The folder under the home folder that the forwarders live in; only its owner may enter.
    static QString scriptFolder();

    /// Writes `hook.sh`, and beside it the client that it prefers to curl.
    [[nodiscard]] std::optional<Failure> writeHookScript() const;

    /// The text of a template, with the port and the token in it.
    Result<QString> renderTemplate(const QString &name) const;

private:
    std::optional<Failure> writeScript(const QString &name, const QString &path) const;
    std::optional<Failure> writeForwarder() const;

    const MorvaneSettings &m_settings;
    std::uint16_t m_boundPort;
};

} // namespace morvane
