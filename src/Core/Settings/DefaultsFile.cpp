#include "Core/Settings/DefaultsFile.h"

#include "Core/Ground/RegularFile.h"
#include "Core/Ground/WholeFile.h"
#include "Core/Settings/DefaultsFormat.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <optional>
#include <tuple>

namespace morvane {

namespace {

/// Bytes; many times what the program could ever write.
constexpr qsizetype largestFile = 16 << 20;

} // namespace

QVariantMap DefaultsFile::read() {
    const auto text = RegularFile::head(m_path, largestFile);
    const auto values =
        text && text->size() < largestFile ? DefaultsFormat::parse(*text) : std::nullopt;
    m_isUnreadable = !values && QFileInfo::exists(m_path);
    return values.value_or(QVariantMap());
}

void DefaultsFile::write(const QVariantMap &values) {
    const std::uint64_t number = ++m_asked;
    m_writer.start([this, number, values] {
        if (number == m_asked) {
            replace(values);
        }
    });
}

void DefaultsFile::replace(const QVariantMap &values) {
    QDir().mkpath(QFileInfo(m_path).path());
    if (m_isUnreadable) {
        // Whatever it is, it is the person's: it is kept under another name.
        const QString aside = m_path + QLatin1String(".unreadable");
        QFile::remove(aside);
        if (!QFile::rename(m_path, aside)) {
            return;
        }
        m_isUnreadable = false;
    }
    WholeFile file(linkTarget(m_path));
    file.setMode(0600); // the token is in it
    std::ignore = file.write(DefaultsFormat::write(values));
}

} // namespace morvane
