#include "Core/Sessions/SessionDiscovery.h"

#include "Core/Ground/JsonObject.h"
#include "Core/Ground/RegularFile.h"
#include "Core/Sessions/GitInfo.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <vector>

namespace morvane::SessionDiscovery {

namespace {

namespace fs = std::filesystem;

constexpr qsizetype headSize = 65'536;

fs::path inHome(const char *relativePath) {
    return fs::path(QFile::encodeName(QDir::homePath()).toStdString()) / relativePath;
}

QString toText(const fs::path &path) {
    return QFile::decodeName(QByteArray::fromStdString(path.native()));
}

/// When the transcript was last written; none for anything else, or one that is too old.
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

/// What `take` finds in the first line of the file's beginning that holds it.
template <typename Take>
auto fromHead(const QString &path, Take take) -> decltype(take(std::declval<JsonObject>())) {
    const QByteArray head = RegularFile::head(path, headSize).value_or(QByteArray());
    if (!simdjson::validate_utf8(head.constData(), static_cast<std::size_t>(head.size()))) {
        return std::nullopt;
    }
    for (const QByteArray &line : head.split('\n')) {
        const auto object = line.isEmpty() ? std::nullopt : JsonObject::parse(line);
        if (auto found = object ? take(*object) : std::nullopt) {
            return found;
        }
    }
    return std::nullopt;
}

std::optional<QString> workingDirectory(const JsonObject &line) {
    auto cwd = line.string("cwd");
    return cwd && !cwd->isEmpty() ? cwd : std::nullopt;
}

struct CodexMetadata {
    QString id;
    QString cwd;
};

std::optional<CodexMetadata> codexMetadata(const JsonObject &line) {
    const auto payload = JsonObject::object(line.root(), "payload");
    if (line.string("type") != QLatin1String("session_meta") || !payload) {
        return std::nullopt;
    }
    auto id = JsonObject::string(*payload, "id");
    if (!id) {
        id = JsonObject::string(*payload, "session_id");
    }
    const auto cwd = JsonObject::string(*payload, "cwd");
    if (!id || id->isEmpty() || !cwd) {
        return std::nullopt;
    }
    return CodexMetadata{*id, *cwd};
}

/// One level of folders, each with its transcripts.
void scanClaudeTranscripts(Date cutoff, QList<DiscoveredSession> &found) {
    std::error_code error;
    for (fs::directory_iterator folder(inHome(".claude/projects"), error), end;
         !error && folder != end; folder.increment(error)) {
        std::error_code skipped;
        for (fs::directory_iterator file(folder->path(), skipped); !skipped && file != end;
             file.increment(skipped)) {
            if (const auto written = recentChange(*file, cutoff)) {
                const QString path = toText(file->path());
                found.append({toText(file->path().stem()),
                              AgentKind::claude,
                              fromHead(path, workingDirectory).value_or(QString()),
                              path,
                              *written,
                              {}});
            }
        }
    }
}

void takeCodexTranscript(const fs::directory_entry &entry, Date cutoff,
                         QList<DiscoveredSession> &found) {
    if (const auto written = recentChange(entry, cutoff)) {
        const QString path = toText(entry.path());
        if (const auto metadata = fromHead(path, codexMetadata)) {
            found.append({metadata->id, AgentKind::codex, metadata->cwd, path, *written});
        }
    }
}

/// Folders of any depth, but for hidden ones and links. Each is opened by itself, so that one that
/// can't be read costs no other.
void scanCodexTranscripts(Date cutoff, QList<DiscoveredSession> &found) {
    std::vector<fs::path> folders{inHome(".codex/sessions")};
    while (!folders.empty()) {
        const fs::path folder = std::move(folders.back());
        folders.pop_back();
        std::error_code error;
        for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
             entry.increment(error)) {
            std::error_code unknown;
            if (entry->path().filename().native().starts_with('.') || entry->is_symlink(unknown)) {
                continue;
            }
            if (entry->is_directory(unknown)) {
                folders.push_back(entry->path());
            } else {
                takeCodexTranscript(*entry, cutoff, found);
            }
        }
    }
}

} // namespace

QList<DiscoveredSession> scan(Seconds maxAge, Date now) {
    QList<DiscoveredSession> found;
    scanClaudeTranscripts(now - maxAge, found);
    scanCodexTranscripts(now - maxAge, found);
    // Here and not by whoever takes the result: a folder of long ago may lie on a file system that
    // answers no more.
    for (DiscoveredSession &session : found) {
        session.gitBranch = GitInfo::branch(session.cwd);
    }
    return found;
}

} // namespace morvane::SessionDiscovery
