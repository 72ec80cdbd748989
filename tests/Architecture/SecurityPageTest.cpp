#include "Support/Printing.h"

#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QStringList>
#include <gtest/gtest.h>

namespace morvane {
namespace {

QString wholeTextOf(const QString &path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(path);
    return QString::fromUtf8(file.readAll());
}

/// "Suite.Test" of every test in the tree.
QSet<QString> testsIn(const QString &tree) {
    static const QRegularExpression declaration(
        QStringLiteral(R"(^TEST(?:_F|_P)?\(\s*(\w+),\s*(\w+)\))"),
        QRegularExpression::MultilineOption);
    QSet<QString> result;
    QDirIterator files(tree, {"*.cpp"}, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        for (auto match = declaration.globalMatch(wholeTextOf(files.next())); match.hasNext();) {
            const auto found = match.next();
            result.insert(found.captured(1) + "." + found.captured(2));
        }
    }
    return result;
}

TEST(SecurityPage, NamesTestsThatAreThere) {
    static const QRegularExpression name(QStringLiteral("`([A-Z]\\w+\\.[A-Z]\\w+)`"));
    const QSet<QString> tests = testsIn(TESTS);
    QStringList gone;
    int count = 0;
    for (auto match = name.globalMatch(wholeTextOf(SECURITY_PAGE)); match.hasNext(); ++count) {
        const QString test = match.next().captured(1);
        if (!tests.contains(test)) {
            gone.append(test);
        }
    }
    EXPECT_GT(count, 20);
    EXPECT_EQ(gone, QStringList());
}

} // namespace
} // namespace morvane
