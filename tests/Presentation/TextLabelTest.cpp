#include "Presentation/TextLabel.h"

#include "Presentation/Typography.h"
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
    TextLabel single(Typography::text(12), Qt::white, 1, nullptr);
    single.setText("one\ntwo");
    EXPECT_EQ(single.lines(400), QStringList({"one two"}));
}

} // namespace
} // namespace morvane
