#include <QApplication>
#include <gtest/gtest.h>

#include <memory>

namespace {

/// Widgets need an application. It is made when the tests run, not when they are only listed.
class Application : public testing::Environment {
public:
    void SetUp() override { m_application = std::make_unique<QApplication>(m_count, m_arguments); }
    void TearDown() override { m_application.reset(); }

private:
    char m_name[6] = "tests";
    char *m_arguments[2] = {m_name, nullptr};
    int m_count = 1;
    std::unique_ptr<QApplication> m_application;
};

} // namespace

int main(int argc, char **argv) {
    testing::InitGoogleTest(&argc, argv);
    testing::AddGlobalTestEnvironment(new Application);
    return RUN_ALL_TESTS();
}
