#include "Core/Settings/DefaultsFile.h"

#include "Core/Ground/LinkTarget.h"
#include "Core/Ground/RegularFile.h"
#include "Core/Ground/WholeFile.h"
#include "Core/Settings/DefaultsFormat.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <optional>
#include <system_error>
#include <utility>

namespace morvane {

namespace {

/// Bytes; many times what the program could ever write.
constexpr qsizetype largestFile = 16 << 20;

} // namespace

std::optional<QVariantMap> DefaultsFile::present() const {
    const auto text = RegularFile::head(m_path, largestFile);
    return text && text->size() < largestFile ? DefaultsFormat::parse(*text) : std::nullopt;
}

QVariantMap DefaultsFile::read() const {
    return present().value_or(QVariantMap());
}

void DefaultsFile::write(const QVariantMap &values, const QStringList &changed) {
    handOver({values, {changed.begin(), changed.end()}});
}

void DefaultsFile::remove() {
    handOver({.values = {}, .keys = {}, .isRemoval = true});
}

bool DefaultsFile::isWithout(const QStringList &keys) {
    flush();
    const auto values = QFileInfo::exists(m_path) ? present() : QVariantMap();
    return values && !QFileInfo::exists(m_aside) &&
           std::ranges::none_of(keys, [&](const QString &key) { return values->contains(key); });
}

void DefaultsFile::flush() {
    if (m_writer.joinable()) {
        m_writer.join();
    }
}

void DefaultsFile::handOver(Change change) {
    {
        const std::lock_guard lock(m_mutex);
        if (m_next) {
            change.keys.unite(m_next->keys);
        }
        m_next = std::move(change);
        if (std::exchange(m_isWriting, true)) {
            return;
        }
    }
    try {
        m_writer = std::jthread([this] { carryOutAll(); });
    } catch (const std::system_error &) {
        carryOutAll();
    }
}

void DefaultsFile::carryOutAll() {
    std::unique_lock lock(m_mutex);
    while (m_next) {
        const Change change = *std::exchange(m_next, std::nullopt);
        lock.unlock();
        m_changed.unite(change.keys);
        if (change.isRemoval) {
            removeFile();
        } else {
            replace(change.values);
        }
        lock.lock();
    }
    m_isWriting = false;
}

void DefaultsFile::replace(const QVariantMap &values) {
    const QString folder = QFileInfo(m_path).path();
    QDir().mkpath(folder);
    QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    const auto read = present();
    if (const QFileInfo info(m_path); !read && info.exists()) {
        if (info.isFile() && info.isReadable() && !RegularFile::head(m_path, 1)) {
            return; // its content is unknown: no descriptor is left, or no disk answers
        }
        // Whatever it is, it is the person's: it is kept under another name.
        QFile::remove(m_aside);
        if (!QFile::rename(linkTarget(m_path), m_aside)) {
            return;
        }
    }
    QVariantMap merged = read.value_or(values);
    for (const QString &key : std::as_const(m_changed)) {
        if (values.contains(key)) {
            merged.insert(key, values[key]);
        } else {
            merged.remove(key);
        }
    }
    WholeFile file(linkTarget(m_path));
    file.setMode(0600); // the token is in it
    if (file.write(DefaultsFormat::write(merged))) {
        m_changed.clear();
    }
}

void DefaultsFile::removeFile() {
    if (QFileInfo(m_path).isSymLink()) {
        replace({});
    } else {
        QFile::remove(m_path);
    }
    QFile::remove(m_aside);
}

} // namespace morvane
