#include <QApplication>
#include <gtest/gtest.h>

#include <memory>

int main(int argc, char **argv) {
    testing::InitGoogleTest(&argc, argv);
    // Widgets need an application, but there may be no display when tests are only listed.
    const auto application =
        GTEST_FLAG_GET(list_tests) ? nullptr : std::make_unique<QApplication>(argc, argv);
    return RUN_ALL_TESTS();
}
