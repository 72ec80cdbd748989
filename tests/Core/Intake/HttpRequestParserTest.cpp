#include "Core/Intake/HttpRequestParser.h"

#include <gtest/gtest.h>

#include <tuple>

namespace morvane {
namespace {

using Status = HttpRequestParser::Status;

constexpr std::string_view secret = "abc";
const std::string authorised = "POST / HTTP/1.1\r\nx-morvane-token: abc\r\n";

/// The status after the text has arrived in pieces of this size.
Status feed(HttpRequestParser &parser, std::string_view text, std::size_t step) {
    Status status = Status::unfinished;
    while (status == Status::unfinished && !text.empty()) {
        status = parser.take(text.substr(0, step));
        text.remove_prefix(std::min(step, text.size()));
    }
    return status;
}

TEST(HttpRequestParser, ReadsARequestHoweverItArrives) {
    constexpr std::string_view allButTheEnd = "POST /event?x=1 HTTP/1.1 more\r\n"
                                              "X-Morvane-Token:\t abc \r\n"
                                              "no colon here, \xc3\xa9\r\n"
                                              "x-unknown: \n\r\r\n"
                                              "x-tty: first\r\n"
                                              "X-TTY: last: with\rcolon\xe2\x82\xac\r\n"
                                              "Content-Length:5\r\n\r\nhell";
    for (std::size_t step = 1; step <= allButTheEnd.size(); ++step) {
        HttpRequestParser parser(secret);
        EXPECT_EQ(feed(parser, allButTheEnd, step), Status::unfinished);
        EXPECT_EQ(parser.take("o, and more"), Status::complete);
        EXPECT_TRUE(parser.request().isAuthorised);
        EXPECT_EQ(parser.request().method, "POST");
        EXPECT_EQ(parser.request().path, "/event?x=1");
        EXPECT_EQ(parser.request().header(HttpHeader::tty), "last: with\rcolon\xe2\x82\xac");
        EXPECT_EQ(parser.request().header(HttpHeader::agent), std::nullopt);
        EXPECT_EQ(parser.request().body.size(), 5u);
    }
}

TEST(HttpRequestParser, TakesTheLengthOnlyFromAnInteger) {
    const std::tuple<const char *, Status, std::string_view> cases[] = {
        {"", Status::complete, ""},
        {"three", Status::complete, ""},
        {"+3", Status::complete, "abc"},
        {"-1", Status::broken, ""},
        {"1099511627776", Status::unfinished, ""},
        {"1099511627777", Status::broken, ""},
        {"99999999999999999999999", Status::broken, ""},
    };
    for (const auto &[length, status, body] : cases) {
        HttpRequestParser parser(secret);
        const std::string text =
            authorised + "Content-Length: " + std::string(length) + "\r\n\r\nabc";
        EXPECT_EQ(parser.take(text), status) << length;
        EXPECT_EQ(parser.request().body, body) << length;
    }
}

TEST(HttpRequestParser, KnowsAHeadThatNothingCanMend) {
    for (const char *head : {"GET\r\n\r\n", "\r\n\r\n", "POST / HTTP/1.1\r\nx: \xff\xfe\r\n\r\n",
                             "POST / HTTP/1.1\r\nx: \xe2\x82\r\n\r\n", "POST \xc3\r\n\r\n"}) {
        for (std::size_t step : {1u, 20u, 100u}) {
            HttpRequestParser parser(secret);
            EXPECT_EQ(feed(parser, head, step), Status::hopeless) << head;
            EXPECT_EQ(parser.take("POST /event HTTP/1.1\r\n\r\n"), Status::hopeless) << head;
            EXPECT_TRUE(parser.isCounting());
        }
    }
}

TEST(HttpRequestParser, KeepsNothingOfAStrangersBody) {
    for (const char *token : {"abd", "ab", "abcd", "", "abc\r\nx-morvane-token: no"}) {
        HttpRequestParser parser(secret);
        const std::string head =
            "POST / HTTP/1.1\r\nx-morvane-token: " + std::string(token) + "\r\n";
        EXPECT_EQ(parser.take(head + "Content-Length: 10\r\n\r\n12345"), Status::unfinished);
        EXPECT_TRUE(parser.isCounting());
        EXPECT_EQ(parser.take("67890"), Status::complete) << token;
        EXPECT_FALSE(parser.request().isAuthorised);
        EXPECT_EQ(parser.request().body, "");
    }
}

// However long the head, the request can be read once the token has come.
TEST(HttpRequestParser, CutsWhatAStrangersHeadSaysTooMuch) {
    constexpr std::size_t room = HttpRequestParser::strangerRoom;
    std::string lines;
    for (int count = 0; count < 50'000; ++count) {
        lines += "x-tty: /dev/pts/1\r\na:\r\n";
    }
    const std::string longLine = ": " + std::string(900'000, 'h') + "\r\n";
    for (const std::string &head :
         {lines, "x-tmux-pane" + longLine + "x-tty" + longLine, "y" + longLine}) {
        for (std::size_t step : {std::size_t(1'000), head.size() * 2}) {
            HttpRequestParser parser(secret);
            const std::string text = "POST /event HTTP/1.1\r\n" + head +
                                     "x-morvane-token: abc\r\nx-orca-terminal: orc\r\n\r\n";
            EXPECT_EQ(feed(parser, text, step), Status::complete);
            EXPECT_TRUE(parser.request().isAuthorised);
            std::size_t kept = 0;
            for (const auto &value : parser.request().headers) {
                kept += value ? value->size() : 0;
            }
            EXPECT_LE(kept, room + 3);
        }
    }
    HttpRequestParser oftenSaid(secret); // a repeated header is kept once
    oftenSaid.take("POST / HTTP/1.1\r\n" + lines + "\r\n");
    EXPECT_EQ(oftenSaid.request().header(HttpHeader::tty), "/dev/pts/1");

    HttpRequestParser ours(secret);
    ours.take(authorised + "x-tty" + longLine + "\r\n");
    EXPECT_EQ(ours.request().header(HttpHeader::tty)->size(), 900'000u);
}

} // namespace
} // namespace morvane
