#pragma once

#include "Core/Hooks/AgentSettingsFile.h"

#include <QCoreApplication>
#include <nlohmann/json_fwd.hpp>

#include <functional>

namespace morvane {

/// An agent's JSON settings file as a tree. Synchronous; any thread, but no two on one file.
class AgentJsonFile {
    Q_DECLARE_TR_FUNCTIONS(AgentJsonFile)

public:
    explicit AgentJsonFile(const QString &path) : m_file(path) {}

    /// The root object; none where the file can't be read, is no JSON or has another root.
    std::optional<nlohmann::json> read() const;

    /// Changes the root; false leaves the file alone.
    using Edit = std::function<bool(nlohmann::json &root)>;

    /// Rewrites the file. One that can't be understood is left alone.
    [[nodiscard]] std::optional<Failure> edit(const Edit &edit) const;

    /// Rewrites the file, or makes one. One that can't be understood makes way for a new one, and
    /// is kept beside it.
    [[nodiscard]] std::optional<Failure> editOrCreate(const Edit &edit) const;

private:
    AgentSettingsFile m_file;
};

} // namespace morvane
