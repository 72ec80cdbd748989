#include "Support/Printing.h"
#include "Support/TemporaryHome.h"

#include <QDirIterator>
#include <QHash>
#include <QRegularExpression>
#include <gtest/gtest.h>

#include <algorithm>

// Checks what the pages in docs/ say of the sources.

namespace morvane {
namespace {

/// The rooms that each room of a table may see besides itself. A room is a folder below the tree's
/// root, named by its path, such as "Core/Hooks". `Core/*` stands for every room below `Core`.
using Rooms = QHash<QString, QStringList>;

QString textOf(const QString &path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(path);
    return QString::fromUtf8(file.readAll());
}

QRegularExpression lines(const QString &pattern) {
    return QRegularExpression(pattern, QRegularExpression::MultilineOption);
}

QStringList capturesOf(const QRegularExpression &pattern, const QString &text) {
    QStringList result;
    for (auto match = pattern.globalMatch(text); match.hasNext();) {
        result.append(match.next().captured(1));
    }
    return result;
}

/// By their paths from the tree's root.
QStringList sourcesOf(const QString &tree) {
    QStringList result;
    QDirIterator files(tree, {"*.h", "*.cpp"}, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        result.append(QDir(tree).relativeFilePath(files.next()));
    }
    result.sort();
    return result;
}

/// Reads the rows `| `Room` | what lives there | `Room`, … |` of the page.
Rooms rooms() {
    static const QRegularExpression row = lines("^\\| `([A-Z][A-Za-z0-9/]*)` \\|.*\\|(.*)\\|$");
    static const QRegularExpression room = lines("`([A-Z][A-Za-z0-9/*]*)`");
    Rooms result;
    for (auto match = row.globalMatch(textOf(ARCHITECTURE_PAGE)); match.hasNext();) {
        const auto cells = match.next();
        result.insert(cells.captured(1), capturesOf(room, cells.captured(2)));
    }
    return result;
}

bool maySee(const QString &from, const QString &to, const Rooms &rooms) {
    return from == to || std::ranges::any_of(rooms.value(from), [&to](const QString &seen) {
               return seen.endsWith('*') ? to.startsWith(seen.chopped(1)) : to == seen;
           });
}

/// A sentence for each include of a header of the tree that the page's table doesn't allow, and for
/// each source in a folder that the table doesn't list.
QStringList violationsIn(const QString &tree) {
    static const QRegularExpression include = lines("^#include \"([^\"]+)\"");
    const Rooms known = rooms();
    const QDir root(tree);
    QStringList result;
    for (const QString &file : sourcesOf(tree)) {
        const QString room = file.section('/', 0, -2);
        if (!known.contains(room)) {
            result.append(file + " lies in no room of the table");
        }
        for (const QString &header : capturesOf(include, textOf(root.filePath(file)))) {
            // What isn't found from the root lies beside the file that includes it.
            if (root.exists(header) && !maySee(room, header.section('/', 0, -2), known)) {
                result.append(file + " includes " + header);
            }
        }
    }
    return result;
}

TEST(IncludeCheck, FindsNoArrowThatTheArchitectureDoesNotHave) {
    // Without the table on the page nothing would be checked.
    ASSERT_TRUE(rooms().contains("Core/Ground"));
    EXPECT_EQ(violationsIn(SOURCES), QStringList());
}

TEST(IncludeCheck, CatchesAnArrowUpwardAndAFolderOutsideOfTheTable) {
    const TemporaryHome tree;
    tree.write("Core/Hooks/HookPlan.h", "#include \"Core/Ground/Failure.h\"\n");
    tree.write("Platform/Failure.h", "#include <optional>\n#include \"Beside.h\"\n");
    tree.write("Core/Ground/WholeFile.cpp", "// why\n\n#include \"Core/Hooks/HookPlan.h\"\n");
    tree.write("Core/Attic/Old.h");
    EXPECT_EQ(violationsIn(tree.path()),
              QStringList({"Core/Attic/Old.h lies in no room of the table",
                           "Core/Ground/WholeFile.cpp includes Core/Hooks/HookPlan.h"}));
}

TEST(SecurityPage, NamesTestsThatAreThere) {
    QString tests;
    for (const QString &file : sourcesOf(TESTS)) {
        tests += textOf(QDir(TESTS).filePath(file));
    }
    QStringList gone = capturesOf(lines("`([A-Z]\\w+\\.[A-Z]\\w+)`"), textOf(SECURITY_PAGE));
    EXPECT_GT(gone.size(), 20);
    gone.removeIf([&tests](const QString &test) {
        const QString suite = test.section('.', 0, 0);
        const QString name = test.section('.', 1);
        return tests.contains(lines("^TEST(_F|_P)?\\(\\s*" + suite + ",\\s*" + name + "\\)"));
    });
    EXPECT_EQ(gone, QStringList());
}

} // namespace
} // namespace morvane
