#include "Core/Agents/ReadableInput.h"

#include "Core/Ground/JsonObject.h"
#include "Core/Ground/VisibleText.h"
#include "Support/Printing.h"

namespace morvane {
namespace {

/// The lines of an input, each behind its sign.
QString page(const QByteArray &input, ReadableInput (*of)(std::string_view) = &ReadableInput::of) {
    EXPECT_TRUE(JsonObject::parse(input)) << input.constData();
    const ReadableInput read = of({input.data(), std::size_t(input.size())});
    QStringList result;
    for (const auto &[sign, text] : read.lines) {
        result.append(QStringLiteral(" -+#p")[static_cast<int>(sign)] + text);
    }
    return result.join(u'\n');
}

qsizetype rest(const QByteArray &input, const QString &line) {
    const auto found = ReadableInput::of({input.data(), std::size_t(input.size())}).beyond(line);
    return found.lines > 0 ? found.lines : -found.characters;
}

TEST(ReadableInput, ShowsWhatRuns) {
    EXPECT_EQ(page(R"({"command":"{ rm -rf ~; }"})"), " { rm -rf ~; }");
    EXPECT_EQ(page(R"({"timeout":1e400,"command":"# note\nrm -rf ~\n","more":{"a":[1,{}]}})"),
              " # note\n rm -rf ~\n \n#\"timeout\": 1e400\n#\"more\": {\n#  \"a\": [\n"
              "#    1,\n#    {}\n#  ]\n#}");
    // The detail is read from the first of two members with one key; the other isn't lost.
    EXPECT_EQ(page(R"({"c\u006fmmand":"ls","command":"rm"})"), " ls\n#\"command\": \"rm\"");
    EXPECT_EQ(page(R"({"allowed":["rm"],"plan":"# Plan\n\n1. Look"})"),
              " # Plan\n \n 1. Look\n#\"allowed\": [\n#  \"rm\"\n#]");
    const QByteArray plan = R"({"plan":"\u26a0\ufe0f Plan \n\u202e1","b":"\ufe0f"})";
    EXPECT_EQ(page(plan, &ReadableInput::ofPlan),
              "p⚠\uFE0F Plan \np⟨U+202E⟩1\n#\"b\": \"\\ufe0f\"");
    EXPECT_EQ(page(plan), " ⚠⟨U+FE0F⟩ Plan⟨U+0020⟩\n ⟨U+202E⟩1\n#\"b\": \"\\ufe0f\"");
    EXPECT_EQ(page(R"({"command":"ls"})", &ReadableInput::ofPlan), " ls");
    EXPECT_EQ(page(R"({"command":" ", "x": "\ud800"})"),
              " {\n   \"command\": \" \",\n   \"x\": \"\\ud800\"\n }");
    EXPECT_EQ(page(R"({"command":["ls","-l"]})"),
              " {\n   \"command\": [\n     \"ls\",\n     \"-l\"\n   ]\n }");
    EXPECT_EQ(page(R"({"url":"https://a.example"})"), " https://a.example");
    EXPECT_EQ(page("{}"), "");
    EXPECT_EQ(page(R"({"edits":[{"old_string":"","new_string":""}]})"), "#@@ 1 / 1 @@");
    EXPECT_EQ(ReadableInput::of(R"(["rm","-rf"])").lines.size(), 4);
    EXPECT_EQ(ReadableInput::of(R"("rm -rf ~")").lines.first().text, "rm -rf ~");
}

TEST(ReadableInput, ShowsWhatChanges) {
    EXPECT_EQ(page(R"({"file_path":"/f","old_string":"a\nb\nc","new_string":"a\nB\nB\nc"})"),
              "#\"file_path\": \"/f\"\n a\n-b\n+B\n+B\n c");
    EXPECT_EQ(page(R"({"oldString":"","newString":"+ a\n- b"})"), "++ a\n+- b");
    EXPECT_EQ(page(R"({"command":"str_replace","path":"/f","old_str":"a","new_str":"b"})"),
              "#\"command\": \"str_replace\"\n#\"path\": \"/f\"\n-a\n+b");
    EXPECT_EQ(page(R"({"old_str":"x\nx","new_str":"x"})"), " x\n-x");
    EXPECT_EQ(page(R"({"file_path":"/f","edits":[{"old_string":"a","new_string":"b"},)"
                   R"({"old_string":"c","new_string":"","replace_all":true}]})"),
              "#\"file_path\": \"/f\"\n#@@ 1 / 2 @@\n-a\n+b\n#@@ 2 / 2 @@\n"
              "#\"replace_all\": true\n-c");
    EXPECT_EQ(page(R"({"edits":[{"old_string":"a"}]})").count(u'\n'), 6);
    EXPECT_EQ(page(R"({"content":"one\ntwo","file_path":"/f"})"),
              "#\"file_path\": \"/f\"\n+one\n+two");
}

TEST(ReadableInput, LeavesNothingInvisibleOrOutOfOrder) {
    EXPECT_EQ(page("{\"command\":\"a\xE2\x80\xAE"
                   "b\\u0000\\t|\xC2\xA0\xE2\x9F\xA8\\r\"}"),
              " a⟨U+202E⟩b⟨U+0000⟩⇥   |⟨U+00A0⟩⟨U+27E8⟩⟨U+000D⟩");
    EXPECT_EQ(page("{\"x\\\"\":\"\\u202e\\\\u0041 \xF3\xA0\x81\x81\\n\"}"),
              " {\n   \"x\\\"\": \"\\u202e\\\\u0041 \\udb40\\udc41\\n\"\n }");
    EXPECT_EQ(VisibleText::of(u"e\u0301\u0301\u0301\u0301"), u"e\u0301\u0301\u0301⟨U+0301⟩");
    EXPECT_EQ(page("{\"command\":\"\xEF\xBB\xBFls \\\\ \\n\xEF\xBB\xBFx\"}"),
              " ⟨U+FEFF⟩ls \\⟨U+0020⟩\n ⟨U+FEFF⟩x");
    EXPECT_EQ(VisibleText::of(u"\uD7B0\uD7B0\uD7B0\uD7B0\uFF9E"),
              u"\uD7B0\uD7B0\uD7B0⟨U+D7B0⟩⟨U+FF9E⟩");
    EXPECT_EQ(VisibleText::of(u"gradlew\uFFFCtest"), u"gradlew⟨U+FFFC⟩test");
    // A mark on a blank is as invisible as the blank.
    EXPECT_EQ(VisibleText::of(u"\u0301rm \u0301\u0338/home\t\u20DD"),
              u"⟨U+0301⟩rm ⟨U+0301⟩⟨U+0338⟩/home⇥   ⟨U+20DD⟩");
    EXPECT_EQ(VisibleText::of(u"a 🏽 👍🏽 \u1112\u1161\u11AB"),
              u"a ⟨U+1F3FD⟩ 👍🏽 \u1112\u1161\u11AB");
    EXPECT_EQ(VisibleText::quoted(u"run \u0301tests\t\u0301"), R"("run \u0301tests\t\u0301")");
    EXPECT_EQ(VisibleText::of(u"שלום 🎉 日本"), u"שלום 🎉 日本");
    EXPECT_EQ(VisibleText::of(u"⚠\uFE0F می\u200Cخ"), u"⚠⟨U+FE0F⟩ می⟨U+200C⟩خ");
    // Decomposed Hangul: the parts of each syllable make one character.
    const QString syllables =
        QStringLiteral("한국어 한국").normalized(QString::NormalizationForm_D);
    EXPECT_EQ(VisibleText::of(syllables), syllables);
    EXPECT_EQ(VisibleText::of(u"\u1100\u1100\u1100\u1100\u1100"),
              u"\u1100\u1100\u1100\u1100⟨U+1100⟩");
}

TEST(VisibleText, LeavesWordsAsPeopleWriteThem) {
    const char16_t *const words[] = {
        u"⚠\uFE0F Delete?",
        u"1\uFE0F\u20E3 ℹ\uFE0F 🏳\uFE0F\u200D🌈",
        u"👨\u200D💻 👩🏽\u200D❤\uFE0F\u200D💋\u200D👨🏽",
        u"👨🏽\u200D👩🏽\u200D👧🏽\u200D👦🏽",
        u"می\u200Cخواهم API\u200Cها",
        u"क्\u200Dष ক্\u200Cষ র\u200D্যাব",
        u"လျှို့ဝှက်",
        u"one\n\n  two ",
    };
    for (const char16_t *const word : words) {
        const QString text = QString::fromUtf16(word);
        EXPECT_EQ(VisibleText::paragraph(text), text);
    }
    EXPECT_EQ(VisibleText::paragraph(QStringLiteral("Quoi\u202F?\u3000\u00A0a\u2007b\u200A")),
              u"Quoi\u00A0? \u00A0a\u00A0b ");
    // Outside of words and emoji, these characters would only be overlooked.
    const std::pair<const char16_t *, const char16_t *> others[] = {
        {u"a\uFE0F\u200Db\u200C", u"a⟨U+FE0F⟩⟨U+200D⟩b⟨U+200C⟩"},
        {u"⚠\uFE0F\uFE0F 1\uFE0F", u"⚠\uFE0F⟨U+FE0F⟩ 1⟨U+FE0F⟩"},
        {u"💻\u200D x \u200D💻", u"💻⟨U+200D⟩ x ⟨U+200D⟩💻"},
        {u"ی\u200C\u200Cخ\u200C", u"ی⟨U+200C⟩⟨U+200C⟩خ⟨U+200C⟩"},
        {u"💻\u200D💻\u200D💻\u200D💻\u200D💻", u"💻\u200D💻\u200D💻\u200D💻⟨U+200D⟩💻"},
        {u"\u202Eש\u200F.\u200B", u"⟨U+202E⟩ש⟨U+200F⟩.⟨U+200B⟩"},
        {u"a \u0301\u3000\u0301", u"a ⟨U+0301⟩ ⟨U+0301⟩"},
        {u"a\u0301\u0301\u0301\u0301\u0301\u0301\u0301",
         u"a\u0301\u0301\u0301\u0301\u0301\u0301⟨U+0301⟩"},
    };
    for (const auto &[given, shown] : others) {
        EXPECT_EQ(VisibleText::paragraph(QString::fromUtf16(given)), QString::fromUtf16(shown));
    }
}

TEST(ReadableInput, TellsWhatALineLeavesOut) {
    EXPECT_EQ(rest(R"({"command":"make"})", "make"), 0);
    EXPECT_EQ(rest(R"({"command":"make\u200b"})", VisibleText::of(u"make\u200b")), 0);
    EXPECT_EQ(rest(R"({"command":" make"})", "make"), -1);
    EXPECT_EQ(rest("{\"command\":\"" + QByteArray(460, 'x') + "\"}", QString(120, u'x') + u'…'),
              -339);
    EXPECT_EQ(rest(R"({"command":"a\nb","timeout":5})", "a b"), 2);
}

TEST(ReadableInput, KeepsSixtyFourKilobytesAndSaysWhenThereIsMore) {
    const auto read = [](const QByteArray &command) {
        const QByteArray input = "{\"command\":\"" + command + "\"}";
        return ReadableInput::of({input.data(), std::size_t(input.size())});
    };
    EXPECT_FALSE(read(QByteArray(ReadableInput::limit, 'x')).isCut);
    const ReadableInput longLine = read(QByteArray(ReadableInput::limit - 1, 'x') + "🎉 rm");
    EXPECT_TRUE(longLine.isCut);
    EXPECT_EQ(longLine.lines.first().text.size(), ReadableInput::limit - 1);
    const ReadableInput manyLines = read("x" + QByteArray("\\n").repeated(500'000));
    EXPECT_TRUE(manyLines.isCut);
    EXPECT_LE(manyLines.lines.size(), ReadableInput::limit + 1);
    EXPECT_TRUE(read(QByteArray(1'000'000, '\x7f')).isCut);

    const QByteArray plan =
        "{\"plan\":\"" + QByteArray(16'000, 'x') + "\\ny\\n" + QByteArray(1'000, 'z') + "\\ny\"}";
    const auto lines = ReadableInput::ofPlan({plan.data(), std::size_t(plan.size())}).lines;
    ASSERT_EQ(lines.size(), 4);
    EXPECT_EQ(lines[1].sign, ReadableInput::Sign::prose);
    EXPECT_EQ(lines[2].sign, ReadableInput::Sign::plain);
}

} // namespace
} // namespace morvane
