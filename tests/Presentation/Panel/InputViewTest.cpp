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

/// A line of two rows at most, and what is left and right of the middle of it.
struct Look {
    Look(Sign sign, const QString &text) {
        InputView view(nullptr);
        view.setLines({{sign, text}});
        view.resize(width, 4 * view.fontMetrics().lineSpacing());
        whole = scaledImage(view, 1);
        left = whole.copy(0, 0, width / 2, whole.height());
        right = whole.copy(width / 2, 0, width / 2, whole.height());
    }

    QImage whole;
    QImage left;
    QImage right;
};

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
    EXPECT_EQ(Look(Sign::prose, twice).right.copy(0, 0, width / 2, metrics.lineSpacing()),
              Look(Sign::prose, word).right.copy(0, 0, width / 2, metrics.lineSpacing()));
    EXPECT_NE(Look(Sign::prose, twice).whole, Look(Sign::plain, twice).whole);

    const Look nothing(Sign::prose, {});
    const Look fromRight(Sign::prose, QStringLiteral("שלום npm"));
    EXPECT_EQ(fromRight.left, nothing.left);
    EXPECT_NE(fromRight.right, nothing.right);
    EXPECT_NE(fromRight.right, Look(Sign::prose, QStringLiteral("npm שלום")).right);
    // A call is read from the left, whatever it begins with.
    EXPECT_EQ(Look(Sign::plain, QStringLiteral("שלום npm")).right, nothing.right);
}

} // namespace
} // namespace morvane
