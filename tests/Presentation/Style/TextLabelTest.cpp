#include "Presentation/Style/TextLabel.h"

#include "Presentation/ScaledImage.h"
#include "Presentation/Style/Typography.h"
#include "Support/Printing.h"

namespace morvane {
namespace {

TEST(TextLabel, NeverTakesMoreRoomThanThereIs) {
    for (const int maxLines : {1, 3}) {
        TextLabel label(Typography::text(12), Qt::white, maxLines, nullptr);
        label.setText(QStringLiteral("unbroken").repeated(80));
        const QStringList lines = label.lines(200);
        EXPECT_EQ(lines.size(), maxLines);
        EXPECT_TRUE(lines.last().endsWith(u'…'));
        for (const QString &line : lines) {
            EXPECT_LE(label.fontMetrics().horizontalAdvance(line), 200);
        }
        EXPECT_LT(label.minimumSizeHint().width(), 50);
    }
}

TEST(TextLabel, OutsideTextNeitherBreaksItsLineNorTurnsIt) {
    TextLabel single(Typography::text(12), Qt::white, 1, nullptr);
    single.setText(QStringLiteral("a\r\nb\tc\u2028d\u202ee\u0007f"));
    EXPECT_EQ(single.lines(400), QStringList({"a  b c de f"}));
    EXPECT_EQ(single.heightForWidth(400), single.fontMetrics().lineSpacing());
}

TEST(TextLabel, EachLineReadsInTheDirectionOfItsParagraphAndBeginsAtTheLeft) {
    const auto bottomLine = [](const QString &text, int width) {
        TextLabel label(Typography::text(12), Qt::white, 0, nullptr);
        label.setText(text);
        const int lineHeight = label.fontMetrics().lineSpacing();
        const auto above = static_cast<int>(label.lines(width).size() - 1) * lineHeight;
        label.resize(width, above + lineHeight);
        return scaledImage(label, 1).copy(0, above, width, lineHeight);
    };
    const QString question = QStringLiteral("שאלה על ההתקנה:");
    const QString command = QStringLiteral("npm install של");
    const QFontMetrics metrics(Typography::text(12));
    const int width = metrics.horizontalAdvance(question) + 2;
    ASSERT_LT(metrics.horizontalAdvance(command), width);
    // After an invisible mark, a line of its own is read from the right.
    const QImage fromRight = bottomLine(u'\u200f' + command, width);
    const QImage fromLeft = bottomLine(command, width);
    EXPECT_NE(fromRight, fromLeft);
    EXPECT_LT(paintedPart(fromRight).right(), metrics.horizontalAdvance(command) + 2);
    EXPECT_EQ(bottomLine(question + u' ' + command, width), fromRight);
    EXPECT_EQ(bottomLine(question + u'\n' + command, width), fromLeft);
}

} // namespace
} // namespace morvane
