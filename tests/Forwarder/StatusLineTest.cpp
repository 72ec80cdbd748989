#include "CapturingListener.h"
#include "HookProcess.h"
#include "Support/TemporaryHome.h"

#include <fstream>
#include <memory>
#include <sys/stat.h>
#include <sys/wait.h>

namespace morvane::tests {

namespace {

namespace fs = std::filesystem;

/// A status, and the line that is made of it.
using LineCase = std::pair<std::string, std::string>;

std::string repeated(const char *text, int count) {
    return QByteArray(text).repeated(count).toStdString();
}

std::string statusOf(const std::string &model, const std::string &folder = "/a") {
    return R"({"model":{"display_name":")" + model + R"("},"cwd":")" + folder + R"("})";
}

/// Shortened, but otherwise as the agent writes it.
const std::string usualStatus =
    R"({"session_id":"b7faad07-53a1","cwd":"/h","model":{"id":"claude-opus-4-1",)"
    R"("display_name":"Opus 4.1"},"workspace":{"current_dir":"/h/webshop",)"
    R"("added_dirs":["/x","/y"]},"cost":{"total_cost_usd":0.01234},"context_window":)"
    R"({"context_window_size":200000,"used_percentage":8,"current_usage":{"input_tokens":8500}},)"
    R"("exceeds_200k_tokens":false,"rate_limits":{"five_hour":{"used_percentage":41.5,)"
    R"("resets_at":1738425600},"seven_day":{"used_percentage":13.2,"resets_at":1738857600}}})";

const std::string usualLine = "Opus 4.1 · webshop · context 8% · 5h 42% · 7d 13%";

std::vector<LineCase> lineCases() {
    return {
        {usualStatus, usualLine},
        {"\r\n { \"cwd\" :\t\"/a/b/\" ,\r\n\"b\" : [ -0.5e+10 , [ ] , { } , null ] }\n\n", "b"},
        {R"({"cwd":"/"})", "/"},
        // Only numbers count, and they are clamped to the same bounds as in the bars.
        {R"({"rate_limits":{"five_hour":{"used_percentage":105},"seven_day":)"
         R"({"used_percentage":-3}},"context_window":{"used_percentage":null}})",
         "5h 100% · 7d 0%"},
        {R"({"rate_limits":{"five_hour":{"used_percentage":1.5e-7},"seven_day":)"
         R"({"used_percentage":99.5}},"context_window":{"used_percentage":"23"}})",
         "5h 0% · 7d 100%"},
        // A member that only looks like one of ours doesn't count.
        {R"({"model\"display_name":"X","model":[{"display_name":"Y"}],"[":{"display_name":"Z"},)"
         R"("x":{"cwd":"/b"},"cwd":"/a"})",
         "a"},
        {statusOf(R"(a\"b\\c\/d \u0041\u00e9\u20ac\ud83d\ude00)"), R"(a"b\c/d Aé€?? · a)"},
        {statusOf("x\\\\", "/a\\\\"), "x\\ · a\\"},
        {statusOf("größer Ё ā 日本", "/ordner-日本語"), "größer Ё ā 日本 · ordner-日本語"},
        // No text can break the line or hold a command to the terminal.
        {statusOf(R"(a\nb\u001b[31m\u0007\u007f\u009b2J)"), "ab[31m2J · a"},
        {statusOf("a\u009b2J\u0085b"), "a2Jb · a"},
        {statusOf("a\u202E\u200Bb\u2069–…"), "ab–… · a"},
        {statusOf("%s %d $(id) `id` * ~", "/-n"), "%s %d $(id) `id` * ~ · -n"},
        {statusOf(std::string(41, 'm'), "/" + repeated("日", 14)),
         std::string(37, 'm') + "… · " + repeated("日", 12) + "…"},
        {statusOf(std::string(5000, 'm')), "a"},
        {R"({"x":")" + std::string(200'000, 'y') + R"(","cwd":"/a"})", "a"},
        {R"({")" + std::string(200'000, 'y') + R"(":1,"cwd":"/a"})", "a"},
        {R"({"cwd":"/a","x":)" + repeated("[", 63) + repeated("]", 63) + "}", "a"},
    };
}

/// Statuses that are not JSON, or that would take too long to parse.
std::vector<std::string> hopelessStatuses() {
    std::vector<std::string> statuses;
    const QByteArray broken =
        "|\xef\xbb\xbf{\"cwd\":\"/a\"}|{\"cwd\":\"/a\n\"}|"
        R"({"cwd":"/a"|{"cwd":"/a"}}|{"cwd":"/a"}{}|{"cwd":"/a\"}|)"
        R"({"cwd":"/a\q"}|{"cwd":"/a\u12g4"}|{"cwd" "/a"}|{"cwd":"/a" "b":1})";
    for (const QByteArray &status : broken.split('|'))
        statuses.push_back(status.toStdString());
    for (const std::string &value :
         {std::string("1 2"), std::string("tru"), std::string("[1,]"), std::string("[1}"),
          repeated("[", 64) + repeated("]", 64), std::string(200'000, '1'),
          "[" + repeated("1, ", 60'000) + "1]", "[" + repeated(R"("a",)", 50'000) + "1]",
          "\"" + std::string(200'000, '\\') + "\"", "\"" + repeated("\\\"", 100'000) + "\"",
          repeated("[", 200'000), repeated(R"({"a":)", 40'000)})
        statuses.push_back(R"({"cwd":"/a","b":)" + value + "}");
    return statuses;
}

class StatusLine : public testing::TestWithParam<std::vector<std::string>> {
protected:
    HookProcess process(Carrier carrier, std::uint16_t port) const {
        return {carrier, port, GetParam(), "statusline.sh"};
    }
};

/// Expects that the status was posted unchanged.
void expectPosted(CapturingListener &listener, const std::string &status) {
    CapturedRequest request = listener.take();
    EXPECT_EQ(request.requestLine, "POST /usage HTTP/1.1");
    EXPECT_EQ(request.headers["x-morvane-token"], HookProcess::token());
    EXPECT_EQ(request.headers["x-morvane-agent"], "claude");
    EXPECT_TRUE(request.body == status);
}

void expectLine(const std::string &output, const std::string &line) {
    EXPECT_EQ(output, line.empty() ? "" : line + "\n");
}

TEST_P(StatusLine, ShowsWhatTheStatusHoldsIfItIsOneAndPostsItAnyway) {
    CapturingListener listener(response("200 OK", "not to be shown"));
    HookProcess script = process(Carrier::Client, listener.port());
    std::vector<LineCase> cases = lineCases();
    for (const std::string &status : hopelessStatuses())
        cases.push_back({status, ""});
    for (const auto &[status, line] : cases) {
        SCOPED_TRACE(status.substr(0, 120));
        expectLine(script.run({}, status), line);
        expectPosted(listener, status);
    }
}

TEST_P(StatusLine, NamesTheBranchOfTheNearestRepository) {
    const TemporaryHome folder;
    folder.write("shop/.git/HEAD", "ref: refs/heads/feature/checkout\n");
    folder.write("shop/src/deep/file", "");
    folder.write("linked/.git",
                 "gitdir: " + folder.path("shop/.git/worktrees/linked").toUtf8() + "\n");
    folder.write("shop/.git/worktrees/linked/HEAD", "ref: refs/heads/fix");
    folder.write("shop/part/.git", "gitdir: ../.git/modules/part\n");
    folder.write("shop/.git/modules/part/HEAD", "0123456789abcdef0123456789abcdef01234567\n");
    folder.write("long/.git/HEAD", "ref: refs/heads/" + QByteArray(60, 'b') + "\n");
    folder.write("hostile/.git/HEAD", "ref: refs/heads/a\x1b[31m\u009b2J\x07z\n");
    const QString endless =
        folder.write("endless/.git/HEAD", "ref: refs/heads/" + QByteArray(5'000, 'b'));
    fs::resize_file(endless.toStdString(), std::uintmax_t{1} << 36U); // no shell gets to its end
    folder.write("other/.git/HEAD", "ref: refs/heads/.invalid\n");
    folder.write("broken/.git", "nothing\n");
    folder.write("pipe/.git/config", "");
    ASSERT_EQ(mkfifo(folder.path("pipe/.git/HEAD").toUtf8().constData(), 0600), 0);

    const std::pair<const char *, std::string> cases[] = {
        {"shop/src/deep", "deep (feature/checkout)"},
        {"linked", "linked (fix)"},
        {"shop/part", "part (0123456)"},
        {"long", "long (" + std::string(37, 'b') + "…)"},
        {"hostile", "hostile (a[31m2Jz)"},
        {"endless", "endless"},
        {"other", "other"},
        {"broken", "broken"},
        {"pipe", "pipe"}};
    HookProcess script = process(Carrier::Client, portWithoutServer());
    for (const auto &[place, line] : cases) {
        SCOPED_TRACE(place);
        const auto path = folder.path(place).toStdString();
        script.setEnvironment({"PATH=" + script.folder().string()});
        expectLine(script.run({}, R"({"workspace":{"current_dir":")" + path + R"("}})"), line);
        // The client doesn't find a folder in this form, so the script reads its repository, with
        // programs from PATH.
        script.setEnvironment({});
        expectLine(script.run({}, statusOf("M", path)), "M · " + line);
    }
}

TEST_P(StatusLine, IsTheSameWithCurl) {
    CapturingListener listener(response("200 OK", "not to be shown"));
    HookProcess script = process(Carrier::Curl, listener.port());
    script.setEnvironment({"http_proxy=http://127.0.0.1:9", "ALL_PROXY=http://127.0.0.1:9",
                           "LC_ALL=C.UTF-8", "IFS=x-", "SHELLOPTS=nounset:xtrace:errexit",
                           "BASH_XTRACEFD=1"});
    for (const auto &[status, line] : std::vector<LineCase>{
             {usualStatus + "\n\n", usualLine},
             {R"({"x":")" + std::string(2'000'000, 'y') + R"(","cwd":"/ä"})", "ä"},
             {"nothing\n", ""}}) {
        expectLine(script.run({}, status), line);
        expectPosted(listener, status);
    }
    script.setEnvironment({"PATH=" + script.folder().string()});
    expectLine(script.run({}, usualStatus), "");
}

TEST(StatusLineLimits, LetItBeShownWithoutAServerOrAnswer) {
    const std::string large = R"({"cwd":"/a","x":")" + std::string(2'000'000, 'y') + R"("})";
    CapturingListener holding(std::nullopt);
    for (const Carrier carrier : {Carrier::Client, Carrier::Curl}) {
        for (const std::uint16_t port : {portWithoutServer(), holding.port()}) {
            HookProcess script(carrier, port, {"/bin/sh"}, "statusline.sh");
            expectLine(script.run({}, large), "a");
        }
    }
}

TEST_P(StatusLine, KeepsTheTokenOutOfTheArguments) {
    for (const Carrier carrier : {Carrier::Client, Carrier::Curl}) {
        auto holding = std::make_unique<CapturingListener>(std::nullopt);
        HookProcess script = process(carrier, holding->port());
        const pid_t running = script.start({});
        EXPECT_NE(holding->take().requestLine, "");
        EXPECT_FALSE(HookProcess::standsInSomeArguments(HookProcess::token()));
        holding.reset(); // curl would wait for a second
        waitpid(running, nullptr, 0);
    }
}

TEST_P(StatusLine, IsShownWhereTheClientCannotBeStarted) {
    CapturingListener listener(response("200 OK", ""));
    HookProcess script = process(Carrier::Client, listener.port());
    const std::ofstream busy(script.client(), std::ios::app); // no program starts meanwhile
    expectLine(script.run({}, statusOf("M")), "M · a");
    EXPECT_TRUE(listener.take().headers["user-agent"].starts_with("curl/"));
}

INSTANTIATE_TEST_SUITE_P(, StatusLine, testing::ValuesIn(HookProcess::shells()),
                         [](const auto &info) {
                             return fs::path(info.param.front()).filename().string();
                         });

} // namespace

} // namespace morvane::tests
