#pragma once

#include "Core/Hooks/AgentSettingsFile.h"

#include <QCoreApplication>
#include <nlohmann/json_fwd.hpp>

#include <functional>

namespace morvane {

/// Which part of a JSON settings file is ours, as pure functions over its root.
struct OurJson {
    std::function<bool(const nlohmann::json &root)> isInstalled;

    /// The root after an install and an uninstall of ours.
    std::function<nlohmann::json(nlohmann::json root)> roundTrip;

    /// The result of `roundTrip`, also without any other setting that we may have changed.
    std::function<nlohmann::json(nlohmann::json root)> others;
};

/// An agent's JSON settings file as a tree. The edit that removes the last of ours restores, byte
/// for byte, what the file held before our first write, if nobody else has changed it since. A file
/// that can't be understood is read a second time, by `AgentSettingsFile::readAgain`. Synchronous;
/// any thread, but no two on one file.
class AgentJsonFile {
    Q_DECLARE_TR_FUNCTIONS(AgentJsonFile)

public:
    AgentJsonFile(AgentSettingsFile file, OurJson ours)
        : m_file(std::move(file)), m_ours(std::move(ours)) {}

    /// The root object; none where the file can't be read, isn't JSON or has a root of another
    /// type. A file whose text doesn't contain `name` isn't parsed and yields none either.
    std::optional<nlohmann::json> read(QByteArrayView name = {}) const;

    /// What the root was before our first write, as far as that is known. Empty where there was no
    /// file, or one that couldn't be understood.
    std::optional<nlohmann::json> origin() const;

    /// Changes the root. The file is left alone when this returns false or changes nothing.
    using Edit = std::function<bool(nlohmann::json &root)>;

    /// Rewrites the file. One that can't be understood is left alone.
    Result<void> edit(const Edit &edit) const;

    /// Rewrites the file, or creates it. One that can't be understood is replaced, and a copy of it
    /// kept beside it.
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
