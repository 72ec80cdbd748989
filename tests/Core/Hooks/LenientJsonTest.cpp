#include "Core/Hooks/LenientJson.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace morvane {
namespace {

using nlohmann::json;

std::string rewritten(const QByteArray &text) {
    const auto root = LenientJson::parse(text);
    return root ? LenientJson::write(*root).toStdString() : "unreadable";
}

TEST(LenientJsonTest, ReadsWhatPeopleAndAgentsWrite) {
    const json expected{{"a", json::array({1, {{"b", nullptr}}, true, false, "x"})},
                        {"c", json::object()}};
    for (const char *text : {
             R"({"a":[1,{"b":null},true,false,"x"],"c":{}})",
             "\xEF\xBB\xBF\t{\r\n\"a\" : [ 1 , {\"b\":null},true,false,\"x\" ] , \"c\":{ } }\r\n",
             R"({"a":[1,{"b":null,},true,false,"x",],"c":{},})",
             "// first\n{/**/\"a\"/* // */:[1,{\"b\":null}, // \"]\n true,false,\"x\"/*,*/,],"
             "\"c\":{/* none */}} // last",
             R"({"a":0,"c":{},"a":[1,{"b":null},true,false,"\u0078"]})",
         }) {
        EXPECT_EQ(LenientJson::parse(text), expected) << text;
    }
}

TEST(LenientJsonTest, RefusesWhatIsNoJson) {
    const QByteArray texts =
        R"({ [1 {"a"} {"a":} {a:1} {'a':1} {"a":1,"b"2} [,] [1,,] {,} [01] [+1] [.5] [1.]
        [1e] [-] [NaN] [tru] [1]x [1]/*noend {}/* ["a] ["\x"] ["\u12g4"] {1:2} #a{} [1]] {])";
    for (const QByteArray &text : texts.simplified().split(' ')) {
        EXPECT_EQ(LenientJson::parse(text), std::nullopt) << text.constData();
    }
    for (const QByteArray &text : {QByteArray(), QByteArray(" "), QByteArray("[\"a\nb\"]"),
                                   QByteArray("# a\n{}"), QByteArray("[\0]", 3)}) {
        EXPECT_EQ(LenientJson::parse(text), std::nullopt) << text.constData();
    }
}

TEST(LenientJsonTest, KeepsTheValueOfEveryNumberStringAndKey) {
    for (const char *token :
         {"0", "-0", "9223372036854775807", "-9223372036854775808", "18446744073709551615",
          "18446744073709551616", "123456789012345678901234567890", "0.1", "1.50", "1E+3", "1e400",
          "-1e-400", "3.141592653589793238462643383279", "\"é 漢 🙂 /\"",
          "\"\\u0000\\t\\\"\\\\\"", "\"half a pair: \\ud83d\"", "\"no UTF-8: \xff\""}) {
        EXPECT_EQ(rewritten(QByteArray("[") + token + "]"), std::string("[\n  ") + token + "\n]\n");
    }
    EXPECT_EQ(rewritten("{\"\\ud800\":1,\"b\xff\":{\"a\":2},\"\xc3\xbf\":3}"),
              "{\n  \"\xc3\xbf\": 3,\n  \"\\ud800\": 1,\n  \"b\xff\": {\n    \"a\": 2\n  }\n}\n");
}

TEST(LenientJsonTest, BoundsItsDepth) {
    const auto nested = [](qsizetype levels) {
        return QByteArray(levels, '[') + QByteArray(levels, ']');
    };
    for (const qsizetype levels : {500, 1001, 1002, 100'000}) {
        const std::string text = rewritten(nested(levels));
        EXPECT_EQ(std::ranges::count(text, ']'), levels);
        EXPECT_EQ(text, rewritten(text.c_str()));
    }
    EXPECT_EQ(LenientJson::parse(QByteArray(1'000'000, '[')), std::nullopt);
}

} // namespace
} // namespace morvane
