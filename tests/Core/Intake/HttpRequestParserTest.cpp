#include "Core/Intake/HttpRequestParser.h"

#include <gtest/gtest.h>

#include <tuple>

namespace morvane {
namespace {

using Status = HttpRequestParser::Status;

TEST(HttpRequestParser, ReadsARequestHoweverItArrives) {
    const std::string text = "POST /event?x=1 HTTP/1.1 more\r\n"
                             "X-Morvane-Token:\t abc \r\n"
                             "no colon here\r\n"
                             "x-two: first\r\n"
                             "X-TWO: last: with colon\r\n"
                             "Content-Length: 5\r\n\r\nhello, and more";
    const std::size_t complete = text.size() - std::string(", and more").size();
    for (std::size_t step : {std::size_t(1), std::size_t(7), text.size()}) {
        HttpRequestParser parser;
        std::string buffer;
        Status status = Status::unfinished;
        while (status == Status::unfinished && buffer.size() < text.size()) {
            buffer.append(text.substr(buffer.size(), step));
            status = parser.parse(buffer);
            EXPECT_EQ(status == Status::complete, buffer.size() >= complete);
        }
        const HttpRequest &request = parser.request();
        EXPECT_EQ(request.method, "POST");
        EXPECT_EQ(request.path, "/event?x=1");
        EXPECT_EQ(request.header("x-morvane-token"), "abc");
        EXPECT_EQ(request.header("x-two"), "last: with colon");
        EXPECT_EQ(request.header("X-TWO"), std::nullopt);
        EXPECT_EQ(request.body, "hello");
    }
}

TEST(HttpRequestParser, TakesTheLengthOnlyFromAnInteger) {
    const std::tuple<const char *, Status, std::string_view> cases[] = {
        {"3", Status::complete, "abc"},
        {"0", Status::complete, ""},
        {"", Status::complete, ""},
        {"three", Status::complete, ""},
        {"+-3", Status::complete, ""},
        {"0x3", Status::complete, ""},
        {"4", Status::unfinished, ""},
        {"-1", Status::broken, ""},
        {"9223372036854775807", Status::broken, ""},
        {"99999999999999999999999", Status::broken, ""},
    };
    for (const auto &[length, status, body] : cases) {
        HttpRequestParser parser;
        const std::string text =
            "POST / HTTP/1.1\r\nContent-Length: " + std::string(length) + "\r\n\r\nabc";
        EXPECT_EQ(parser.parse(text), status) << length;
        if (status == Status::complete) {
            EXPECT_EQ(parser.request().body, body) << length;
        }
    }
}

TEST(HttpRequestParser, KnowsAHeadThatNothingCanMend) {
    for (const char *head : {"GET\r\n\r\n", "\r\n\r\n", "POST / HTTP/1.1\r\nx: \xff\xfe\r\n\r\n"}) {
        HttpRequestParser parser;
        std::string buffer(head);
        EXPECT_EQ(parser.parse(buffer), Status::hopeless) << head;
        buffer.append("POST /event HTTP/1.1\r\n\r\n");
        EXPECT_EQ(parser.parse(buffer), Status::hopeless) << head;
    }
}

} // namespace
} // namespace morvane
