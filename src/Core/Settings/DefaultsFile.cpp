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
    const std::uint64_t number = ++m_asked;
    m_writer.start([this, number, values, changed] {
        m_changed.unite({changed.begin(), changed.end()});
        if (number == m_asked) {
            replace(values);
        }
    });
}

void DefaultsFile::remove() {
    ++m_asked; // which overtakes what waits to be written
    m_writer.start([this] {
        if (QFileInfo(m_path).isSymLink()) {
            replace({});
        } else {
            QFile::remove(m_path);
        }
        QFile::remove(m_aside);
    });
}

bool DefaultsFile::isWithout(const QStringList &keys) {
    flush();
    const auto values = QFileInfo::exists(m_path) ? present() : QVariantMap();
    return values && !QFileInfo::exists(m_aside) &&
           std::ranges::none_of(keys, [&](const QString &key) { return values->contains(key); });
}

void DefaultsFile::replace(const QVariantMap &values) {
    QDir().mkpath(QFileInfo(m_path).path());
    const auto read = present();
    if (const QFileInfo info(m_path); !read && info.exists()) {
        if (info.isFile() && info.isReadable() && !RegularFile::head(m_path, 1)) {
            return; // nothing is known of it: no descriptor is left, or no disk answers
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

} // namespace morvane
