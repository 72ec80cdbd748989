#include "Platform/Linux/KnownNotches.h"

#include "Support/TemporaryHome.h"

#include <gtest/gtest.h>

namespace morvane {
namespace {

class KnownNotchesTest : public testing::Test {
protected:
    /// The device tree of a machine whose panel has so many rows beside its notch.
    KnownNotches machine(char rows) {
        tree.write("aliases/dcp", QByteArray("/soc/dcp@38bc00000").append('\0'));
        tree.write("soc/dcp@38bc00000/apple,notch-height", QByteArray(3, '\0').append(rows));
        return KnownNotches(tree.path());
    }

    TemporaryHome tree;
};

TEST_F(KnownNotchesTest, AModeThatShowsTheRowsBesideTheNotchHasOne) {
    const KnownNotches large = machine(74);
    EXPECT_EQ(large.notch({3024, 1964}), QSize(376, 74));
    EXPECT_EQ(large.notch({3456, 2234}), QSize(376, 74));
    EXPECT_EQ(large.notch({1512, 982}), QSize(188, 37));
    EXPECT_EQ(large.notch({3024, 1890}), std::nullopt);
    EXPECT_EQ(large.notch({2560, 1664}), std::nullopt);
    const KnownNotches small = machine(64);
    EXPECT_EQ(small.notch({2560, 1664}), QSize(328, 64));
    EXPECT_EQ(small.notch({2880, 1864}), QSize(328, 64));
    EXPECT_EQ(small.notch({2560, 1600}), std::nullopt);
    EXPECT_EQ(small.notch({1664, 2560}), std::nullopt);
}

TEST_F(KnownNotchesTest, AMachineThatDoesNotTellOfOneHasNone) {
    EXPECT_EQ(KnownNotches(tree.path("none")).notch({3024, 1964}), std::nullopt);
    tree.write("apple,notch-height", QByteArray(3, '\0').append('\x4a'));
    EXPECT_EQ(KnownNotches(tree.path()).notch({3024, 1964}), std::nullopt);
    tree.write("aliases/dcp", QByteArray("/soc").append('\0'));
    tree.write("soc/apple,notch-height", "\x4a");
    EXPECT_EQ(KnownNotches(tree.path()).notch({3024, 1964}), std::nullopt);
}

} // namespace
} // namespace morvane
