#pragma once

#include "Core/Hooks/AgentSettingsFile.h"

#include <QCoreApplication>
#include <nlohmann/json_fwd.hpp>

#include <functional>

namespace morvane {

/// What of a JSON settings file is ours, as pure functions over its root.
struct OurJson {
    std::function<bool(const nlohmann::json &root)> isInstalled;

    /// What our coming and going leaves of a root.
    std::function<nlohmann::json(nlohmann::json root)> roundTrip;

    /// `roundTrip`, and without what else we may have set in it.
    std::function<nlohmann::json(nlohmann::json root)> others;
};

/// An agent's JSON settings file as a tree. What it held before our first write comes back, byte
/// for byte, with the edit after which nothing of ours is left, if nobody else has changed anything
/// since. A file that can't be understood is looked at a second time, as
/// `AgentSettingsFile::readAgain` tells. Synchronous; any thread, but no two on one file.
class AgentJsonFile {
    Q_DECLARE_TR_FUNCTIONS(AgentJsonFile)

public:
    AgentJsonFile(AgentSettingsFile file, OurJson ours)
        : m_file(std::move(file)), m_ours(std::move(ours)) {}

    /// The root object; none where the file can't be read, is no JSON or has another root. Nor is
    /// there one, and nothing is parsed, where `name` stands nowhere in the text.
    std::optional<nlohmann::json> read(QByteArrayView name = {}) const;

    /// What the root was before our first write, as far as that is known. Empty where there was no
    /// file, or one that couldn't be understood.
    std::optional<nlohmann::json> origin() const;

    /// Changes the root; false leaves the file alone, and so does a change that changes nothing.
    using Edit = std::function<bool(nlohmann::json &root)>;

    /// Rewrites the file. One that can't be understood is left alone.
    Result<void> edit(const Edit &edit) const;

    /// Rewrites the file, or makes one. One that can't be understood makes way for a new one, and
    /// is kept beside it.
    Result<void> editOrCreate(const Edit &edit) const;

private:
    using Changed = Result<std::optional<AgentSettingsChange>>;

    std::optional<nlohmann::json> root(std::optional<QByteArray> &content) const;
    Changed changed(const std::optional<QByteArray> &content, std::optional<nlohmann::json> root,
                    const Edit &edit) const;
    AgentSettingsChange sinceOrigin(const std::optional<QByteArray> &content,
                                    const nlohmann::json &before,
                                    const nlohmann::json &after) const;

    AgentSettingsFile m_file;
    OurJson m_ours;
};

} // namespace morvane
