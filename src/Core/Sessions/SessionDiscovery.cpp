#include "Core/Sessions/SessionDiscovery.h"

#include "Core/Adapters/AgentRegistry.h"
#include "Core/Agents/AgentAdapter.h"
#include "Core/Sessions/GitInfo.h"
#include "Platform/Processes.h"

#include <QFile>
#include <QFileInfo>
#include <QHash>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <system_error>
#include <vector>

namespace morvane::SessionDiscovery {

namespace {

namespace fs = std::filesystem;

fs::path toPath(const QString &path) {
    return QFile::encodeName(path).toStdString();
}

QString toText(const fs::path &path) {
    return QFile::decodeName(QByteArray::fromStdString(path.native()));
}

/// When the transcript was last written; none for any other file, or for one that is too old.
std::optional<Date> recentChange(const fs::directory_entry &entry, Date cutoff) {
    std::error_code error;
    if (entry.path().extension() != ".jsonl" || !entry.is_regular_file(error)) {
        return std::nullopt;
    }
    const fs::file_time_type written = entry.last_write_time(error);
    if (error) {
        return std::nullopt;
    }
    const Date date = std::chrono::file_clock::to_sys(written);
    return date > cutoff ? std::optional(date) : std::nullopt;
}

void take(const fs::directory_entry &entry, const AgentAdapter &adapter, Date cutoff,
          QList<DiscoveredSession> &found) {
    if (const auto written = recentChange(entry, cutoff)) {
        const QString path = toText(entry.path());
        const auto origin = adapter.transcriptOrigin(path);
        if (origin && AgentRegistry::adapter(adapter.kind(), origin->release).isSession(*origin)) {
            found.append({origin->sessionID, adapter.kind(), origin->cwd, path, *written, {}});
        }
    }
}

/// Calls `visit` with each entry. A folder that can't be read is as good as empty.
template <typename Visit>
void forEachEntry(const fs::path &folder, Visit visit) {
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        visit(*entry);
    }
}

/// Opens each folder by itself, so that one that can't be read doesn't hide the others.
template <typename Visit>
void forEachFileBelow(const fs::path &root, Visit visit) {
    std::vector<fs::path> folders{root};
    while (!folders.empty()) {
        const fs::path folder = std::move(folders.back());
        folders.pop_back();
        forEachEntry(folder, [&](const fs::directory_entry &entry) {
            std::error_code unknown;
            if (entry.path().filename().native().starts_with('.') || entry.is_symlink(unknown)) {
                return;
            }
            if (entry.is_directory(unknown)) {
                folders.push_back(entry.path());
            } else {
                visit(entry);
            }
        });
    }
}

void scan(const AgentAdapter &adapter, Date cutoff, QList<DiscoveredSession> &found) {
    const auto folder = adapter.transcriptFolder();
    if (!folder) {
        return;
    }
    const auto visit = [&](const fs::directory_entry &entry) {
        take(entry, adapter, cutoff, found);
    };
    const fs::path root = toPath(folder->path);
    switch (folder->depth) {
    case TranscriptFolder::Depth::oneBelow:
        forEachEntry(root,
                     [&](const fs::directory_entry &below) { forEachEntry(below.path(), visit); });
        break;
    case TranscriptFolder::Depth::any:
        forEachFileBelow(root, visit);
        break;
    }
}

/// True also if `one` leads to `other` through links: a process's working directory has none in it.
bool isSameFolder(const QString &one, const QString &other) {
    return one == other || QFileInfo(one).canonicalFilePath() == other;
}

/// Keeps the sessions in whose folder their agent still runs: the latest of each folder, no more
/// than agents run there. A session without a known folder stays while any agent is left unmatched.
QList<DiscoveredSession> running(QList<DiscoveredSession> found, const Processes &processes) {
    std::ranges::sort(found, std::greater(), &DiscoveredSession::lastActive);
    QHash<AgentKind, std::optional<QStringList>> folders;
    found.removeIf([&](const DiscoveredSession &session) {
        if (!folders.contains(session.agent)) {
            // Each agent's program has the agent's raw name.
            const std::string_view name = rawValue(session.agent);
            const auto program = QLatin1String(name.data(), static_cast<qsizetype>(name.size()));
            folders.insert(session.agent, processes.workingDirectories(program));
        }
        auto &here = folders[session.agent];
        if (!here) {
            return false; // the machine doesn't tell
        }
        const auto place = std::ranges::find_if(
            *here, [&](const QString &folder) { return isSameFolder(session.cwd, folder); });
        if (place == here->end()) {
            return !session.cwd.isEmpty() || here->isEmpty();
        }
        here->erase(place);
        return false;
    });
    return found;
}

} // namespace

QList<DiscoveredSession> scan(Seconds maxAge, Date now, const Processes &processes) {
    QList<DiscoveredSession> found;
    for (const AgentAdapter *adapter : AgentRegistry::all()) {
        scan(*adapter, now - maxAge, found);
    }
    found = running(std::move(found), processes);
    // Read here, not by the receiver of the result: an old folder may lie on a file system that no
    // longer answers.
    for (DiscoveredSession &session : found) {
        session.gitBranch = GitInfo::branch(session.cwd);
    }
    return found;
}

} // namespace morvane::SessionDiscovery
