#include "Presentation/Style/TextLabel.h"

#include "Presentation/ScaledImage.h"
#include "Presentation/Style/Typography.h"
#include "Support/Printing.h"

#include <gtest/gtest.h>

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

TEST(TextLabel, KeepsLineBreaksWhereItHasRoomForThem) {
    TextLabel label(Typography::text(12), Qt::white, 0, nullptr);
    label.setText("one\ntwo\nthree");
    EXPECT_EQ(label.lines(400), QStringList({"one", "two", "three"}));
}

TEST(TextLabel, OutsideTextNeitherBreaksItsLineNorTurnsIt) {
    TextLabel single(Typography::text(12), Qt::white, 1, nullptr);
    single.setText(QStringLiteral("a\r\nb\tc\u2028d\u202ee\u0007f"));
    EXPECT_EQ(single.lines(400), QStringList({"a  b c de f"}));
    EXPECT_EQ(single.heightForWidth(400), single.fontMetrics().lineSpacing());
}

TEST(TextLabel, StandsAtTheLeftWhateverItsDirection) {
    for (const QString &text : {QStringLiteral("lll"), QStringLiteral("\u05d5\u05d5\u05d5")}) {
        TextLabel label(Typography::text(12), Qt::white, 1, nullptr);
        label.setText(text);
        label.resize(300, 20);
        const QImage image = scaledImage(label, 1);
        const QImage right = image.copy(100, 0, 200, 20);
        QImage blank = right;
        blank.fill(Qt::transparent);
        EXPECT_EQ(right, blank);
        EXPECT_NE(image.copy(0, 0, 100, 20), blank.copy(0, 0, 100, 20));
    }
}

} // namespace
} // namespace morvane
