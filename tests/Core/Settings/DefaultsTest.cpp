#include "Core/Settings/Defaults.h"

#include "Core/Settings/DefaultsFixture.h"

#include <limits>
#include <pthread.h>
#include <utility>

namespace morvane {
namespace {

using DefaultsTest = DefaultsFixture;

TEST_F(DefaultsTest, KeepTypesAcrossARestart) {
    const QVariantMap values{
        {"yes", true},
        {"one", 1},
        {"least", std::numeric_limits<qint64>::min()},
        {"greatest", std::numeric_limits<quint64>::max()},
        {"whole", 2.0},
        {"text", QString("é \U0001F469 \" \n ") + QChar(0)},
        {"\uFEFFkey", "\uFEFF\uFEFFtext"},
        {"bytes", QByteArray("\0\xff{", 3)},
        {"list", QVariantList{1, "x", QVariantList(), QVariantMap{{"", false}}}},
    };
    {
        Defaults defaults = load();
        defaults.setValues(values);
    }
    const Defaults defaults = load();
    for (auto entry = values.begin(); entry != values.end(); ++entry) {
        EXPECT_EQ(defaults.value(entry.key()), entry.value()) << entry.key().toStdString();
    }
    EXPECT_EQ(defaults.value("yes").typeId(), QMetaType::Bool);
    EXPECT_EQ(defaults.value("whole").typeId(), QMetaType::Double);
}

TEST_F(DefaultsTest, AreForTheirOwnerAlone) {
    EXPECT_EQ(Defaults::folder(), home.path(".config/morvane"));
    ASSERT_EQ(::chmod(QFile::encodeName(home.write(file, "{}")).constData(), 0604), 0);
    for (int times = 0; times < 2; ++times) {
        load().setValue("key", times);
        EXPECT_EQ(home.mode(file), 0600U);
        EXPECT_EQ(home.mode("defaults"), 0700U);
        QFile::remove(home.path(file));
    }
}

TEST_F(DefaultsTest, PutAsideWhatTheyCannotRead) {
    const QByteArray deep = "{\"x\":" + QByteArray(200'000, '[') + QByteArray(200'000, ']') + "}";
    for (const QByteArray &broken :
         {QByteArray("{\"eventToken\": \"T\""), QByteArray("[1]"), QByteArray(""),
          QByteArray("{\"x\":\"\xff\"}"), QByteArray("{\"x\":1e400}"), deep}) {
        home.write(file, broken);
        home.write(file + ".unreadable", "older");
        Defaults defaults = load();
        EXPECT_FALSE(defaults.contains("eventToken"));
        EXPECT_EQ(home.read(file), broken);
        defaults.setValue("key", 1);
        defaults.setValue("key", 2);
        EXPECT_EQ(stored(defaults), (json{{"key", 2}}));
        EXPECT_EQ(home.read(file + ".unreadable"), broken);
    }
}

TEST_F(DefaultsTest, WriteTheEndOfABurstForSure) {
    Defaults defaults = load();
    for (int value = 1; value <= 300; ++value) {
        defaults.setValue("key", value);
    }
    EXPECT_EQ(stored(defaults), (json{{"key", 300}}));
    EXPECT_EQ(QDir(home.path("defaults")).entryList(QDir::Files).size(), 1);
}

TEST_F(DefaultsTest, AreWrittenWhereThereIsNoThreadToBeHad) {
    Defaults defaults = load();
    pthread_attr_t usual{};
    ASSERT_EQ(::pthread_getattr_default_np(&usual), 0);
    pthread_attr_t impossible = usual;
    ASSERT_EQ(::pthread_attr_setstacksize(&impossible, std::size_t(1) << 62), 0);
    for (const auto &[value, threads] : {std::pair(1, &impossible), std::pair(2, &usual)}) {
        ASSERT_EQ(::pthread_setattr_default_np(threads), 0);
        defaults.setValue("key", value);
        EXPECT_EQ(stored(defaults), (json{{"key", value}}));
    }
}

TEST_F(DefaultsTest, OfTwoMachinesWithOneHomeKeepEachOthersKeys) {
    Defaults one = load();
    one.setValues({{"a", 1}, {"b", 1}, {"c", 1}});
    one.flush();
    Defaults other = load();
    other.setValue("b", 2);
    other.setValue("d", 2);
    other.remove("c");
    other.flush();
    one.setValue("a", 3);
    EXPECT_EQ(stored(one), (json{{"a", 3}, {"b", 2}, {"d", 2}}));
    one.remove(QStringList{"a", "d"});
    EXPECT_EQ(stored(one), (json{{"b", 2}}));
    // What was known is not lost with the file.
    for (const char *damage : {"", "{"}) {
        home.write(file, damage);
        one.setValue("a", 4);
        EXPECT_EQ(stored(one), (json{{"a", 4}, {"b", 1}, {"c", 1}}));
        EXPECT_EQ(home.read(file + ".unreadable"), damage);
    }
}

TEST_F(DefaultsTest, BehindALinkStayThere) {
    home.write("dotfiles/target.json", R"({"key":1})");
    QDir().mkpath(home.path("defaults"));
    ASSERT_TRUE(QFile::link("../dotfiles/target.json", home.path(file)));
    load().setValue("other", 2);
    EXPECT_TRUE(QFileInfo(home.path(file)).isSymLink());
    EXPECT_EQ(json::parse(home.read("dotfiles/target.json").toStdString()),
              (json{{"key", 1}, {"other", 2}}));
    home.write("dotfiles/target.json", "{");
    load().setValue("other", 3);
    EXPECT_TRUE(QFileInfo(home.path(file)).isSymLink());
    EXPECT_EQ(home.read(file + ".unreadable"), "{");
}

} // namespace
} // namespace morvane
