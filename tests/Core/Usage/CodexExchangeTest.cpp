#include "Core/Usage/CodexExchange.h"

#include "Support/Printing.h"

namespace morvane {
namespace {

TEST(CodexExchange, AsksOnceAndWaitsForItsAnswerAmongAllElse) {
    CodexExchange exchange;
    const auto consume = [&](const QByteArray &data) {
        const auto action = exchange.consume(data);
        return std::pair(action.sendsReadRequest, action.isOver);
    };
    constexpr std::pair nothing(false, false);
    EXPECT_EQ(consume("listening\n{\"method\":\"x\"}\n[1]\n{\"id\":\"1\",\"result\":{}}\n"),
              nothing);
    EXPECT_EQ(consume("{\"id\":1,\"error\":{}}\n{\"id\":1,\"res"), nothing);
    EXPECT_EQ(consume("ult\":{}}\n{\"id\":2,"), std::pair(true, false));
    EXPECT_EQ(consume(""), nothing);
    EXPECT_EQ(consume("\"result\":1}\n{\"id\":1,\"result\":{}}\n"), std::pair(false, true));
    EXPECT_EQ(exchange.response(), "{\"id\":2,\"result\":1}");
}

TEST(CodexExchange, GivesUpALineThatDoesNotEnd) {
    CodexExchange exchange;
    const QByteArray piece(65'536, 'x');
    int pieces = 1;
    while (pieces < 100 && !exchange.consume(piece).isOver) {
        ++pieces;
    }
    EXPECT_EQ(pieces, 17);
    EXPECT_FALSE(exchange.response());
}

} // namespace
} // namespace morvane
