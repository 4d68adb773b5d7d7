// SPDX-License-Identifier: MIT
#include "letters/mnemonics.h"

#include <gtest/gtest.h>

namespace raincast {
namespace {

TEST(MnemonicsTest, TheMarkedLetterIsRead) {
    EXPECT_EQ(mnemonicOf(u"&Save"), u's');
    EXPECT_EQ(mnemonicOf(u"Save &Loop..."), u'l');
    EXPECT_EQ(mnemonicOf(u"Tides && &moon"), u'm');
    for (const QStringView none : {u"", u"Save", u"Tides && moon", u"at the end&", u"&&&&"}) {
        EXPECT_TRUE(mnemonicOf(none).isNull()) << none.toUtf8().constData();
    }
}

TEST(MnemonicsTest, TextsWithoutALetterGetOneThatIsFree) {
    EXPECT_EQ(withMnemonics({"OK", "Cancel"}), QStringList({"&OK", "&Cancel"}));
    EXPECT_EQ(
        withMnemonics({"&Cities", "OK", "Cancel"}), QStringList({"&Cities", "&OK", "C&ancel"})
    ) << "those that are marked keep theirs, wherever they stand";
    EXPECT_EQ(
        withMnemonics({"Show", "&Up", "Show all"}), QStringList({"&Show", "&Up", "Show &all"})
    ) << "the beginning of a word comes first";
    EXPECT_EQ(
        withMnemonics({"Cancel", "&Ok", "&cancel"}), QStringList({"C&ancel", "&Ok", "&cancel"})
    );
}

TEST(MnemonicsTest, AnAmpersandThatIsSeenStays) {
    EXPECT_EQ(
        withMnemonics({"&Tides", "Tides && moon"}), QStringList({"&Tides", "Tides && &moon"})
    );
}

TEST(MnemonicsTest, WhereNothingIsFreeNothingChanges) {
    EXPECT_EQ(withMnemonics({"&a", "A", "", "--"}), QStringList({"&a", "A", "", "--"}));
    EXPECT_EQ(withMnemonics({}), QStringList());
}

TEST(MnemonicsTest, ALetterWithAnAccentHasNoKeyOfItsOwn) {
    const QString text = QStringLiteral(u"A\u00F1adir");
    EXPECT_EQ(withMnemonics({"&A", text}), QStringList({"&A", QStringLiteral(u"A\u00F1a&dir")}));
    const QString only = QStringLiteral(u"a\u00F1a");
    EXPECT_EQ(withMnemonics({"&A", only}), QStringList({"&A", QStringLiteral(u"a&\u00F1a")}))
        << "better than none";
}

TEST(MnemonicsTest, DigitsWillDo) {
    EXPECT_EQ(withMnemonics({"&A", "A 1", "A 2"}), QStringList({"&A", "A &1", "A &2"}));
}

} // namespace
} // namespace raincast
