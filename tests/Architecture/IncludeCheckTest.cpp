#include "Architecture/IncludeCheck.h"

#include "Support/Printing.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace morvane {
namespace {

TEST(IncludeCheck, FindsNoArrowThatTheArchitectureDoesNotHave) {
    const auto check = IncludeCheck::ofPage(ARCHITECTURE_PAGE);
    // Else the table has gone from the page, and nothing would be checked.
    ASSERT_TRUE(check.rooms().contains("Core/Ground"));
    EXPECT_EQ(check.violations(SOURCES), QStringList());
}

TEST(IncludeCheck, CatchesAnArrowUpwardAndAFolderOutsideOfTheTable) {
    const QTemporaryDir tree;
    const auto write = [&tree](const QString &path, const QByteArray &content) {
        const QString whole = tree.filePath(path);
        QDir().mkpath(whole.left(whole.lastIndexOf('/')));
        QFile file(whole);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    };
    write("Core/Hooks/HookPlan.h", "#include \"Core/Ground/Failure.h\"\n");
    write("Platform/Failure.h", "#include <optional>\n#include \"Beside.h\"\n");
    write("Core/Ground/WholeFile.cpp", "// why\n\n#include \"Core/Hooks/HookPlan.h\"\n");
    write("Core/Attic/Old.h", "");
    EXPECT_EQ(IncludeCheck::ofPage(ARCHITECTURE_PAGE).violations(tree.path()),
              QStringList({"Core/Attic/Old.h lies in no room of the table",
                           "Core/Ground/WholeFile.cpp includes Core/Hooks/HookPlan.h"}));
}

} // namespace
} // namespace morvane
