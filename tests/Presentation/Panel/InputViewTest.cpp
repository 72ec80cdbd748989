#include "Presentation/Panel/InputView.h"

#include "Presentation/ScaledImage.h"
#include "Support/Printing.h"

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

/// What is to be seen of the first row of a line, right of its middle.
QImage rightOf(Sign sign, const QString &text) {
    InputView view(nullptr);
    view.setLines({{sign, text}});
    view.resize(width, 4 * view.fontMetrics().lineSpacing());
    return scaledImage(view, 1).copy(width / 2, 0, width / 2, view.fontMetrics().lineSpacing());
}

TEST(InputView, GivesEachCharacterTheRoomThatItTakes) {
    const QFontMetricsF metrics(InputView(nullptr).font());
    constexpr double overlap = 1.4; // what letters of other fonts may reach out
    for (const char16_t *const character : {u"की", u"﷽", u"漢"}) {
        const QString text = QString::fromUtf16(character).repeated(100);
        EXPECT_GE(rowsOf({{Sign::plain, text}}) * width * overlap, metrics.horizontalAdvance(text));
    }
}

TEST(InputView, ShowsProseInWordsAndEachLineInItsDirection) {
    const QFontMetrics metrics(InputView(nullptr).font());
    const QString word(width * 2 / 3 / metrics.horizontalAdvance(u'x'), u'x');
    EXPECT_EQ(rowsOf({{Sign::prose, word + "  " + word + ' '}, {Sign::prose, {}}}), 3);
    const QString twice = word + ' ' + word;
    EXPECT_EQ(rightOf(Sign::prose, twice), rightOf(Sign::prose, word));
    EXPECT_NE(rightOf(Sign::prose, twice), rightOf(Sign::plain, twice));

    const QImage nothing = rightOf(Sign::prose, {});
    const QImage fromRight = rightOf(Sign::prose, QStringLiteral("שלום npm"));
    EXPECT_NE(fromRight, nothing);
    EXPECT_NE(fromRight, rightOf(Sign::prose, QStringLiteral("npm שלום")));
    // A call is read from the left, whatever it begins with.
    EXPECT_EQ(rightOf(Sign::plain, QStringLiteral("שלום npm")), nothing);
}

} // namespace
} // namespace morvane
