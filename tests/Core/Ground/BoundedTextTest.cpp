#include "Core/Ground/BoundedText.h"

#include "Support/Printing.h"

namespace morvane {
namespace {

TEST(BoundedText, CountsCharactersAsAPersonDoes) {
    const QString family = "\U0001F468\u200D\U0001F469\u200D\U0001F467";
    const QString tower = u'a' + QString(23, QChar(0x0301)); // the longest that counts as one
    for (const QString &character : {family, tower}) {
        const QString fits = character.repeated(120);
        EXPECT_EQ(BoundedText::of(fits, 120), fits);
        EXPECT_EQ(BoundedText::of(fits + character, 120), fits + u'…');
        EXPECT_EQ(BoundedText::of(fits + character.repeated(2000), 120), fits + u'…');
    }
}

TEST(BoundedText, CutsACharacterThatDoesNotEnd) {
    const QString tower = u'e' + QString(100'000, QChar(0x301));
    EXPECT_LE(BoundedText::of(tower, 120).size(), 25);
    const QString family = QStringLiteral("👨‍").repeated(50'000);
    EXPECT_LE(BoundedText::of(family + "x", 120).size(), 25);
    EXPECT_FALSE(BoundedText::of(family, 1).chopped(1).back().isHighSurrogate());
}

} // namespace
} // namespace morvane
