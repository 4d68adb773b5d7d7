// SPDX-License-Identifier: MIT
#include "core/file_time.h"
#include "core/text.h"

#include <QLocale>
#include <QTranslator>

#include <gtest/gtest.h>

namespace raincast {
namespace {

/// A language that says everything in capitals, with forms for one, for two and for more.
class Capitals : public QTranslator {
public:
    QString translate(const char* context, const char* source, const char* meaning, int number)
        const override {
        EXPECT_STREQ(context, "Text");
        const QString text = QString::fromUtf8(source);
        if (text == u"nothing") {
            return {};
        }
        const QString more = meaning != nullptr ? u'/' + QString::fromUtf8(meaning) : QString();
        // As languages do that go by the last digits, too.
        const QString form =
            number >= 0 ? QString::number(number > 3 ? number % 100 : number) : QString();
        return text.toUpper().replace(QStringLiteral("%N"), QStringLiteral("%n")) + more + form;
    }
    [[nodiscard]] bool isEmpty() const override { return false; }
};

constexpr CalendarTime kEvening{.year = 2026, .month = 5, .day = 9, .hour = 20, .minute = 4};
constexpr CalendarTime kMorning{.year = 2026, .month = 5, .day = 9, .hour = 8, .minute = 15};

class TextTest : public testing::Test {
protected:
    ~TextTest() override { Text::use({}); }

    Capitals words;
    const QLocale spanish{QStringLiteral("es_ES")};
    const QLocale american{QStringLiteral("en_US")};
};

TEST_F(TextTest, IsEnglishAtFirst) {
    EXPECT_EQ(Text::tr("&Close"), "&Close");
    EXPECT_EQ(Text::tr("Open", "of a file"), "Open");
    EXPECT_EQ(Text::of("20 \u00B0"), QStringLiteral(u"20 \u00B0"));
    EXPECT_EQ(Text::of(u"Velocity"), "Velocity");
    EXPECT_EQ(Text::counted("%n files", "%n file", 0), "0 files");
    EXPECT_EQ(Text::counted("%n files", "%n file", 1), "1 file");
    EXPECT_EQ(Text::counted("%n files", "%n file", 1204), "1,204 files");
}

TEST_F(TextTest, AsksTheTranslation) {
    Text::use({.words = &words});
    EXPECT_EQ(Text::tr("&Close"), "&CLOSE");
    EXPECT_EQ(Text::tr("Open", "of a file"), "OPEN/of a file");
    EXPECT_EQ(Text::of(u"Velocity"), "VELOCITY");
    EXPECT_EQ(Text::counted("%n files", "%n file", 1), "1 FILES/1 file1");
    EXPECT_EQ(
        Text::counted("%n files", "%n file", 7'000'000'021),
        "7,000,000,021 FILES/7,000,000,021 file21"
    );
    EXPECT_EQ(
        Text::counted("%n files", "%n file", 2'147'483'648),
        "2,147,483,648 FILES/2,147,483,648 file48"
    );
}

TEST_F(TextTest, StaysEnglishWithoutATranslation) {
    Text::use({.words = &words});
    EXPECT_EQ(Text::tr("nothing"), "nothing");
    EXPECT_EQ(Text::of(u"nothing"), "nothing");
    EXPECT_EQ(Text::counted("nothing", "just one", 1), "just one");
}

TEST_F(TextTest, WritesNumbersAsTheUserDoes) {
    EXPECT_EQ(Text::number(3.25, 'f', 1), QString::number(3.25, 'f', 1));
    EXPECT_EQ(Text::number(0.1, 'g', 3), "0.1");
    EXPECT_EQ(Text::dataSize(31'000'000), "31 MB");
    Text::use({.numbers = &spanish});
    EXPECT_EQ(Text::number(0.1, 'g', 3), "0,1");
    EXPECT_EQ(Text::number(qint64{12345}), "12.345");
    EXPECT_EQ(Text::dataSize(31'000'000), "31 MB");
}

TEST_F(TextTest, ReadsNumbersInTheUsersFormAndWithAPoint) {
    bool good = false;
    EXPECT_EQ(Text::typedNumber(QStringLiteral("1.5"), &good), 1.5);
    EXPECT_TRUE(good);
    static_cast<void>(Text::typedNumber(QStringLiteral("1,5"), &good));
    EXPECT_FALSE(good);
    Text::use({.numbers = &spanish});
    for (const QString& text : {QStringLiteral("1,5"), QStringLiteral("1.5")}) {
        EXPECT_EQ(Text::typedNumber(text, &good), 1.5) << qPrintable(text);
        EXPECT_TRUE(good);
    }
    static_cast<void>(Text::typedNumber(QStringLiteral("x"), &good));
    EXPECT_FALSE(good);
}

TEST_F(TextTest, WritesTimesAsTheUserDoes) {
    EXPECT_EQ(Text::date(kEvening), "2026-05-09");
    EXPECT_EQ(Text::clock(kEvening), "20:04");
    EXPECT_EQ(Text::clock(kMorning), "8:15");
    EXPECT_EQ(Text::clock(kMorning, Text::Hours::twoDigits), "08:15");
    EXPECT_EQ(Text::clock(kEvening, Text::Hours::upTo12), "8:04");
    EXPECT_EQ(Text::clock(kMorning, Text::Hours::upTo12), "8:15");
    Text::use({.times = &spanish});
    EXPECT_EQ(Text::date(kEvening), "9/5/2026");
    EXPECT_EQ(Text::clock(kEvening, Text::Hours::upTo12), "20:04");
    Text::use({.times = &american});
    EXPECT_EQ(Text::date(kEvening), "5/9/2026");
    EXPECT_EQ(Text::clock(kEvening).left(4), "8:04");
}

} // namespace
} // namespace raincast
