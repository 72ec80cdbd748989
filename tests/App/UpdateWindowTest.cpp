#include "Presentation/Windows/UpdateWindow.h"

#include "Support/AccessibleControls.h"
#include "Support/FakeHttpsClient.h"
#include "Support/FakeTools.h"
#include "Support/Printing.h"
#include "Support/UpdateWorld.h"

#include <QPlainTextEdit>

namespace morvane {
namespace {

using Phase = UpdateManager::Phase;

class UpdateWindowTest : public testing::Test, protected UpdateWorld {
protected:
    UpdateWindowTest() { updates.start(); }

    void offer() {
        updates.checkForUpdates();
        window.present();
        https.answer(HttpsAnswer{200, {}, feed(R"("notes":"<b>Bold</b>",)")});
    }

    FormButton *button(const char *text) { return shownControl<FormButton>(window, text); }

    FakeHttpsClient https;
    FakeTools tools;
    UpdateManager updates{defaults,
                          means(https, tools),
                          {QUrl("https://updates.example/feed.json"), QByteArray(32, 'k'), "1.0"}};
    UpdateWindow window{updates};
};

TEST_F(UpdateWindowTest, AsksBeforeItDownloads) {
    offer();
    EXPECT_TRUE(window.isVisible());
    const auto *notes = window.findChild<QPlainTextEdit *>();
    EXPECT_EQ(notes->toPlainText(), "<b>Bold</b>");
    EXPECT_EQ(AccessibleControls(window).faults(), QStringList());
    const std::size_t before = https.requests.size();
    button("Download")->click();
    EXPECT_EQ(https.requests.size(), before + 1);
    EXPECT_EQ(button("Download"), nullptr);
    button("Cancel")->click();
    EXPECT_FALSE(window.isVisible());
    EXPECT_EQ(updates.phase(), Phase::idle);
    EXPECT_EQ(https.requests.back().finished, nullptr);

    offer();
    button("Skip this version")->click();
    EXPECT_FALSE(window.isVisible());
    EXPECT_EQ(defaults.value("SUSkippedVersion"), "1.1");
}

} // namespace
} // namespace morvane
