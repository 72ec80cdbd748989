#include "Platform/Linux/KnownNotches.h"

#include "Support/TemporaryHome.h"

#include <gtest/gtest.h>

namespace morvane {
namespace {

TEST(KnownNotchesTest, AModeThatShowsTheRowsBesideTheNotchHasOne) {
    const TemporaryHome tree;
    const auto notch = [&](const QSize &mode) { return KnownNotches(tree.path()).notch(mode); };
    const QByteArray rows("\0\0\0\x4a", 4);
    tree.write("apple,notch-height", rows); // no display is named yet
    EXPECT_EQ(notch({3024, 1964}), std::nullopt);
    tree.write("aliases/dcp", QByteArray("/soc/dcp@38bc00000").append('\0'));
    const char *height = "soc/dcp@38bc00000/apple,notch-height";
    tree.write(height, "\x4a");
    EXPECT_EQ(notch({3024, 1964}), std::nullopt);

    tree.write(height, rows);
    EXPECT_EQ(notch({3024, 1964}), QSize(376, 74));
    EXPECT_EQ(notch({1512, 982}), QSize(188, 37));
    // A mode that ends below the notch, and the mode of a panel with another notch.
    for (const QSize &other : {QSize(3024, 1890), QSize(2560, 1664)}) {
        EXPECT_EQ(notch(other), std::nullopt);
    }
}

} // namespace
} // namespace morvane
