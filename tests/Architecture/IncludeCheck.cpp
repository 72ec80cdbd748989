#include "Architecture/IncludeCheck.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>

#include <algorithm>

namespace morvane {

namespace {

QString textOf(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QString folderOf(const QString &path) {
    return path.left(std::max<qsizetype>(path.lastIndexOf(QLatin1Char('/')), 0));
}

QStringList capturesOf(const QRegularExpression &pattern, const QString &text) {
    QStringList result;
    for (auto match = pattern.globalMatch(text); match.hasNext();) {
        result.append(match.next().captured(1));
    }
    return result;
}

} // namespace

IncludeCheck IncludeCheck::ofPage(const QString &path) {
    static const QRegularExpression row(
        QStringLiteral("^\\| `([A-Z][A-Za-z0-9/]*)` \\|.*\\|(.*)\\|$"),
        QRegularExpression::MultilineOption);
    static const QRegularExpression room(QStringLiteral("`([A-Z][A-Za-z0-9/*]*)`"));
    IncludeCheck check;
    for (auto match = row.globalMatch(textOf(path)); match.hasNext();) {
        const auto cells = match.next();
        check.m_mayBeSeen.insert(cells.captured(1), capturesOf(room, cells.captured(2)));
    }
    return check;
}

bool IncludeCheck::allows(const QString &from, const QString &to) const {
    return from == to || std::ranges::any_of(m_mayBeSeen[from], [&to](const QString &seen) {
               return seen.endsWith(QLatin1Char('*')) ? to.startsWith(seen.chopped(1)) : to == seen;
           });
}

QStringList IncludeCheck::violations(const QString &tree) const {
    static const QRegularExpression include(QStringLiteral("^#include \"([^\"]+)\""),
                                            QRegularExpression::MultilineOption);
    QStringList result;
    const QDir root(tree);
    QDirIterator files(tree, {"*.h", "*.cpp"}, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString path = files.next();
        const QString file = root.relativeFilePath(path);
        const QString room = folderOf(file);
        if (!m_mayBeSeen.contains(room)) {
            result.append(file + " lies in no room of the table");
        }
        for (const QString &header : capturesOf(include, textOf(path))) {
            // What isn't found from the root lies beside the file that includes it.
            if (root.exists(header) && !allows(room, folderOf(header))) {
                result.append(file + " includes " + header);
            }
        }
    }
    result.sort();
    return result;
}

} // namespace morvane
