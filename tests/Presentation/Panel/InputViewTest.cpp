#include "Presentation/Panel/InputView.h"

#include <gtest/gtest.h>

namespace morvane {
namespace {

using Line = ReadableInput::Line;
using Sign = ReadableInput::Sign;

constexpr int width = 300;

int heightOf(const QList<Line> &lines) {
    InputView view(nullptr);
    view.setHeightLimit(100'000);
    view.setLines(lines);
    return view.heightForWidth(width);
}

int rowsOf(const QList<Line> &lines) {
    const int lineHeight = QFontMetrics(InputView(nullptr).font()).lineSpacing();
    return 1 + (heightOf(lines) - heightOf({{Sign::plain, {}}})) / lineHeight;
}

TEST(InputView, GivesEachCharacterTheRoomThatItTakes) {
    const QFontMetricsF metrics(InputView(nullptr).font());
    constexpr double overlap = 1.4; // what letters of other fonts may reach out
    for (const char16_t *const character : {u"की", u"﷽", u"漢"}) {
        const QString text = QString::fromUtf16(character).repeated(100);
        EXPECT_GE(rowsOf({{Sign::plain, text}}) * width * overlap, metrics.horizontalAdvance(text));
    }
}

} // namespace
} // namespace morvane
