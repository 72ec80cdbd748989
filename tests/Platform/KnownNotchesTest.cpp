#include "Platform/Linux/KnownNotches.h"

#include "Support/TemporaryHome.h"

#include <gtest/gtest.h>

namespace morvane {
namespace {

TEST(KnownNotchesTest, AModeThatShowsTheRowsBesideTheNotchHasOne) {
    const TemporaryHome tree;
    const auto tell = [&](const char *node, char rows) {
        tree.write(node, QByteArray(3, '\0').append(rows));
    };
    const auto notch = [&](const QSize &mode) { return KnownNotches(tree.path()).notch(mode); };
    EXPECT_EQ(notch({3024, 1964}), std::nullopt);
    tell("apple,notch-height", 74); // without a display
    EXPECT_EQ(notch({3024, 1964}), std::nullopt);
    tree.write("aliases/dcp", QByteArray("/soc/dcp@38bc00000").append('\0'));
    const char *height = "soc/dcp@38bc00000/apple,notch-height";
    tree.write(height, "\x4a");
    EXPECT_EQ(notch({3024, 1964}), std::nullopt);

    tell(height, 74);
    EXPECT_EQ(notch({3024, 1964}), QSize(376, 74));
    EXPECT_EQ(notch({1512, 982}), QSize(188, 37));
    for (const QSize &other : {QSize(3024, 1890), QSize(2560, 1664)}) {
        EXPECT_EQ(notch(other), std::nullopt);
    }
    tell(height, 64);
    EXPECT_EQ(notch({2560, 1664}), QSize(328, 64));
    for (const QSize &other : {QSize(2560, 1600), QSize(1664, 2560)}) {
        EXPECT_EQ(notch(other), std::nullopt);
    }
}

} // namespace
} // namespace morvane
