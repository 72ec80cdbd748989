#include "Core/Sessions/SessionDiscovery.h"
#include "Memory.h"
#include "Row.h"
#include "Support/FakeProcesses.h"
#include "Support/TemporaryHome.h"

#include <algorithm>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <malloc.h>
#include <sys/stat.h>
#include <unistd.h>

// What it costs to search years of agents' transcripts for those of the last hour, as a multiple of
// the least that finds out when each file was written.

namespace {

using namespace morvane;

constexpr Seconds maxAge(3600);

Date now() {
    return std::chrono::system_clock::now();
}

/// Transcripts of Claude Code and, a quarter of them, of Codex. One in a thousand is recent.
void makeTranscripts(const TemporaryHome &home, int count) {
    const timespec longAgo[] = {{1'700'000'000, 0}, {1'700'000'000, 0}};
    for (int file = 0; file < count; ++file) {
        const QString path = file % 4 == 0
                                 ? QStringLiteral(".codex/sessions/2025/%1/%2/rollout-%3.jsonl")
                                       .arg(1 + file / 31 % 12)
                                       .arg(1 + file % 31)
                                       .arg(file)
                                 : QStringLiteral(".claude/projects/-home-ada-project-%1/%2.jsonl")
                                       .arg(file % 200)
                                       .arg(file);
        const QString name = home.write(
            path, R"({"type":"user","sessionId":"s","cwd":"/home/ada/project","message":{}})"
                  "\n");
        if (file % 1000 != 1) {
            utimensat(AT_FDCWD, QFile::encodeName(name).constData(), longAgo, 0);
        }
    }
}

/// The number of files below the folder that were written after `since`.
int leastWalk(int folder, time_t since) {
    int found = 0;
    DIR *stream = fdopendir(folder);
    while (const dirent *entry = readdir(stream)) {
        if (entry->d_name[0] == '.') {
            continue;
        }
        if (entry->d_type == DT_DIR) {
            found += leastWalk(openat(folder, entry->d_name, O_RDONLY | O_DIRECTORY), since);
        } else {
            struct stat status {};
            fstatat(folder, entry->d_name, &status, 0);
            found += status.st_mtime > since ? 1 : 0;
        }
    }
    closedir(stream);
    return found;
}

/// The number of sessions that are found.
qsizetype discovered() {
    return SessionDiscovery::scan(maxAge, now(), NullProcesses()).size();
}

double megabytesToDiscover() {
    malloc_trim(0);
    forgetPeak();
    const double before = memory("VmRSS");
    discovered();
    return (memory("VmHWM") - before) / 1024;
}

int recent(const TemporaryHome &home) {
    int found = 0;
    for (const char *folder : {".claude/projects", ".codex/sessions"}) {
        const QByteArray path = QFile::encodeName(home.path(QLatin1String(folder)));
        found += leastWalk(open(path.constData(), O_RDONLY | O_DIRECTORY), time(nullptr) - 3600);
    }
    return found;
}

void measure(const char *what, int files) {
    const TemporaryHome home;
    makeTranscripts(home, files);
    if (discovered() != recent(home)) {
        std::abort();
    }
    compare(
        {what, "reading the folders and asking for each file's time", 2}, {},
        [] { return secondsOf(discovered); }, [&] { return secondsOf([&] { recent(home); }); });
    std::vector<double> megabytes(5);
    std::ranges::generate(megabytes, megabytesToDiscover);
    print({(std::string("memory for ") + what).c_str(), "1 MB", 1}, megabytes);
}

} // namespace

int main() {
    measure("looking through 20,000 transcripts", 20'000);
    measure("looking through 100,000 transcripts", 100'000);
}
