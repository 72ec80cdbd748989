#include "Platform/Linux/TerminalProcesses.h"

#include "Platform/Linux/LinuxProcesses.h"
#include "Platform/Linux/ProcessStatus.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <array>
#include <ctime>
#include <optional>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace morvane {

namespace {

constexpr qsizetype maxAncestors = 64;

Date beginningOf(const ProcessStatus &status) {
    timespec now{};
    ::clock_gettime(CLOCK_BOOTTIME, &now);
    const Seconds before(static_cast<double>(status.startedAt) /
                         static_cast<double>(::sysconf(_SC_CLK_TCK)));
    return std::chrono::system_clock::now() - (std::chrono::seconds(now.tv_sec) - before);
}

/// As in /proc/ID/stat: the lowest byte of the minor number, the major number, the rest of the
/// minor number.
qint64 numberOf(dev_t device) {
    const unsigned int low = minor(device) & 0xffU;
    const unsigned int high = minor(device) & ~0xffU;
    return static_cast<qint32>(low | (major(device) << 8U) | (high << 12U));
}

/// The files behind a process's standard streams; empty if they can't be read.
QList<struct stat> streamsOf(qint64 id, const QString &folder) {
    QList<struct stat> result;
    for (const int number : std::array{0, 1, 2}) {
        struct stat info {};
        const QString path = QStringLiteral("%1/%2/fd/%3").arg(folder).arg(id).arg(number);
        if (::stat(QFile::encodeName(path).constData(), &info) == 0) {
            result.append(info);
        }
    }
    return result;
}

/// Compares the files, since each container numbers its own terminals, on its own file system.
bool runsIn(qint64 id, const struct stat &device, const QString &folder) {
    return std::ranges::any_of(streamsOf(id, folder), [&](const struct stat &stream) {
        return stream.st_dev == device.st_dev && stream.st_ino == device.st_ino;
    });
}

bool runsInNamesake(qint64 id, const struct stat &device, const QString &folder) {
    return std::ranges::any_of(streamsOf(id, folder), [&](const struct stat &stream) {
        return stream.st_dev != device.st_dev && stream.st_rdev == device.st_rdev;
    });
}

std::optional<ProcessStatus> sessionLeader(const struct stat &device, const QString &folder) {
    const qint64 terminal = numberOf(device.st_rdev);
    for (const QString &entry : QDir(folder).entryList(QDir::Dirs)) {
        bool isProcess = false;
        const qint64 id = entry.toLongLong(&isProcess);
        const auto status = isProcess ? ProcessStatus::of(id, folder) : std::nullopt;
        if (status && status->terminal == terminal && status->session == id &&
            runsIn(id, device, folder)) {
            return status;
        }
    }
    return std::nullopt;
}

} // namespace

QString TerminalProcesses::variable(const QByteArray &name) const {
    const auto found = std::ranges::find_if(
        environment, [&](const QByteArray &entry) { return entry.startsWith(name + '='); });
    return found == environment.end() ? QString() : QString::fromUtf8(found->mid(name.size() + 1));
}

/// Accepts only paths below /dev: a made-up path elsewhere may lead to a disk that hangs.
TerminalProcesses TerminalProcesses::of(const QString &tty,
                                        const std::optional<ProcessIdentity> &resident) {
    struct stat info {};
    if (!tty.startsWith(QLatin1String("/dev/")) || tty.contains(QLatin1String("/../")) ||
        ::stat(QFile::encodeName(tty).constData(), &info) != 0 || !S_ISCHR(info.st_mode)) {
        return {};
    }
    const auto number = resident ? LinuxProcesses::numberHere(*resident) : std::nullopt;
    if (resident && !number && !LinuxProcesses::isNumberedHere(*resident)) {
        return {}; // a process that can't be seen may have terminals of its own
    }
    TerminalProcesses result = of(info, QStringLiteral("/proc"), number.value_or(0));
    result.openedAt = std::min(result.openedAt, Date(std::chrono::seconds(info.st_ctim.tv_sec)));
    return result;
}

TerminalProcesses TerminalProcesses::of(const struct stat &device, const QString &folder,
                                        qint64 resident) {
    const bool isMeant =
        device.st_rdev != 0 && (resident == 0 || !runsInNamesake(resident, device, folder));
    auto status = isMeant ? sessionLeader(device, folder) : std::nullopt;
    if (!status) {
        return {};
    }
    TerminalProcesses result;
    result.openedAt = beginningOf(*status);
    result.environment = LinuxProcesses::environment(status->id, folder);
    while (status && status->id > 1 && result.ancestors.size() < maxAncestors) {
        result.ancestors.append({status->id, status->name});
        status = ProcessStatus::of(status->parent, folder);
    }
    return result;
}

} // namespace morvane
