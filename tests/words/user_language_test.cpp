// SPDX-License-Identifier: MIT
#include "core/file_time.h"
#include "core/text.h"
#include "words/user_language.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace raincast {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kNames[] = {"LANGUAGE",   "LC_ALL",  "LC_MESSAGES",
                                  "LC_NUMERIC", "LC_TIME", "LANG"};

/// Nothing in the environment says what the user reads; at the end it is as it was.
class UserLanguageTest : public testing::Test {
protected:
    UserLanguageTest() {
        for (const char* name : kNames) {
            before.push_back(qgetenv(name));
            qunsetenv(name);
        }
    }
    ~UserLanguageTest() override {
        Text::use({});
        for (std::size_t i = 0; i < before.size(); ++i) {
            before[i].isNull() ? qunsetenv(kNames[i]) : qputenv(kNames[i], before[i]);
        }
    }

    std::vector<QByteArray> before;
};

TEST_F(UserLanguageTest, IsTheListOrElseTheLocale) {
    EXPECT_THAT(userLanguages(), IsEmpty());
    qputenv("LANG", "es_MX.UTF-8");
    EXPECT_THAT(userLanguages(), ElementsAre("es_MX", "es"));
    qputenv("LC_MESSAGES", "gl_ES@euro");
    EXPECT_THAT(userLanguages(), ElementsAre("gl_ES", "gl"));
    qputenv("LC_ALL", "de_DE.UTF-8");
    EXPECT_THAT(userLanguages(), ElementsAre("de_DE", "de"));
    qputenv("LANGUAGE", "ca:es_AR:es");
    EXPECT_THAT(userLanguages(), ElementsAre("ca", "es_AR", "es"));
}

TEST_F(UserLanguageTest, IsNoneInTheLocaleC) {
    qputenv("LANGUAGE", "es");
    EXPECT_THAT(userLanguages(), ElementsAre("es")); // no locale is set
    qputenv("LANG", "C.UTF-8");
    EXPECT_THAT(userLanguages(), ElementsAre("es"));
    for (const char* name : {"C", "POSIX"}) {
        qputenv("LC_ALL", name);
        EXPECT_THAT(userLanguages(), IsEmpty()) << name;
    }
}

QString wordFor(const char* list) {
    qputenv("LANGUAGE", list);
    Text::use({});
    useUserLanguage();
    return Text::tr("&Close");
}

TEST_F(UserLanguageTest, HasSpanishWords) {
    EXPECT_EQ(wordFor("es"), "&Cerrar");
    EXPECT_EQ(wordFor("es_MX"), "&Cerrar");
    EXPECT_EQ(wordFor("ca:es"), "&Cerrar");
    EXPECT_EQ(wordFor("_ES:es"), "&Cerrar");
}

TEST_F(UserLanguageTest, IsEnglishWhereItHasNoWordsOrTheUserReadsEnglishRather) {
    EXPECT_EQ(wordFor("ca"), "&Close");
    EXPECT_EQ(wordFor("en_GB:es"), "&Close");
    EXPECT_EQ(wordFor("../es"), "&Close");
    qputenv("LC_ALL", "C");
    EXPECT_EQ(wordFor("es"), "&Close");
}

// A key's name may be spelled as the abbreviation of a word is.
TEST_F(UserLanguageTest, LeavesTheNamesOfKeysAlone) {
    EXPECT_EQ(wordFor("es"), "&Cerrar");
    EXPECT_EQ(Text::tr("L", "left"), "Br");
    for (const char* key : {"L", "W, D", "F5", "Esc", "Ctrl+Z", "F10, Alt"}) {
        EXPECT_EQ(Text::of(key), key);
    }
}

TEST_F(UserLanguageTest, TakesNumbersAndTimesFromTheirOwnCategories) {
    const CalendarTime time{.year = 2026, .month = 5, .day = 9, .hour = 20, .minute = 4};
    qputenv("LANG", "C.UTF-8");
    useUserLanguage();
    EXPECT_EQ(Text::number(0.5, 'f', 1), "0.5");
    EXPECT_EQ(Text::date(time), "2026-05-09");
    qputenv("LC_NUMERIC", "es_ES.UTF-8");
    useUserLanguage();
    EXPECT_EQ(Text::number(0.5, 'f', 1), "0,5");
    EXPECT_EQ(Text::date(time), "2026-05-09");
    qputenv("LC_TIME", "es_ES.UTF-8");
    useUserLanguage();
    EXPECT_EQ(Text::date(time), "9/5/2026");
}

} // namespace
} // namespace raincast
