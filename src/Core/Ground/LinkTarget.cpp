#include "Core/Ground/LinkTarget.h"

#include <QFile>

#include <filesystem>
#include <system_error>

namespace morvane {

namespace {

constexpr int mostLinks = 40;

} // namespace

/// A relative link is resolved from the real folder that it lies in, which may differ from the
/// folder in its path.
QString linkTarget(const QString &path) {
    namespace fs = std::filesystem;
    std::error_code ignored;
    fs::path file(QFile::encodeName(path).toStdString());
    for (int links = 0; links < mostLinks && fs::is_symlink(file, ignored); ++links) {
        const fs::path folder = fs::canonical(file.parent_path(), ignored);
        file = folder / fs::read_symlink(file, ignored);
    }
    return QFile::decodeName(QByteArray::fromStdString(file.string()));
}

} // namespace morvane
