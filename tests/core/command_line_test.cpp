// SPDX-License-Identifier: MIT
#include "core/command_line.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

namespace raincast {
namespace {

using ::testing::HasSubstr;

class CommandLineTest : public ::testing::Test {
protected:
    CommandLineTest() { m_line.parser().addOptions(m_options); }

    tl::expected<void, CommandLineAnswer> parse(const QStringList& words) {
        return m_line.parse(QStringList("raincast-sail") + words);
    }

    QList<QCommandLineOption> m_options{
        {"cloth", "How much.", "METRES"}, {"reef", "Take some in."}};
    CommandLine m_line{"raincast-sail", "Sails."};
};

TEST_F(CommandLineTest, GoesOnWithoutAnAnswer) {
    EXPECT_TRUE(parse({"--cloth", "12", "--reef", "north"}).has_value());
    EXPECT_EQ(m_line.parser().value("cloth"), "12");
    EXPECT_EQ(m_line.parser().positionalArguments(), QStringList("north"));
    EXPECT_TRUE(m_line.requireValues(m_options).has_value());
}

TEST_F(CommandLineTest, HelpNamesTheOptionsAndEndsInTheFooter) {
    m_line.setHelpFooter("Mind the boom.");
    const auto answer = parse({"-h"});
    ASSERT_FALSE(answer.has_value());
    EXPECT_FALSE(answer.error().isUsageError);
    const std::string text = answer.error().text.toStdString();
    for (const char* part :
         {"Sails.", "--cloth <METRES>", "-h, --help", "Show this help.", "-v, --version",
          "Show the version."}) {
        EXPECT_THAT(text, HasSubstr(part));
    }
    EXPECT_THAT(text, ::testing::EndsWith("Mind the boom."));
}

TEST_F(CommandLineTest, TheVersionIsOneLine) {
    const auto answer = parse({"--version"});
    ASSERT_FALSE(answer.has_value());
    EXPECT_FALSE(answer.error().isUsageError);
    EXPECT_EQ(answer.error().text, "raincast-sail " RAINCAST_VERSION "\n");
}

TEST_F(CommandLineTest, AUsageErrorIsASentenceAfterTheProgramsName) {
    const auto answer = parse({"--keel"});
    ASSERT_FALSE(answer.has_value());
    EXPECT_TRUE(answer.error().isUsageError);
    EXPECT_EQ(
        answer.error().text, "raincast-sail: Unknown option 'keel'.\nTry raincast-sail --help.\n"
    );
    EXPECT_EQ(
        m_line.usageError("Cannot use \"%2\".").text,
        "raincast-sail: Cannot use \"%2\".\nTry raincast-sail --help.\n"
    );
}

TEST_F(CommandLineTest, AnOptionThatWasGivenNothingIsNamed) {
    ASSERT_TRUE(parse({"--reef", "--cloth", ""}).has_value());
    const auto values = m_line.requireValues(m_options);
    ASSERT_FALSE(values.has_value());
    EXPECT_EQ(values.error(), "--cloth takes a value.");
}

TEST(PrintAnswerTest, OnlyUsageErrorsAreErrors) {
    std::ostringstream out;
    std::ostringstream err;
    EXPECT_EQ(printAnswer({"Help.\n", false}, out, err), 0);
    EXPECT_EQ(out.str(), "Help.\n");
    EXPECT_EQ(err.str(), "");
    EXPECT_EQ(printAnswer({"Wrong.\n", true}, out, err), 2);
    EXPECT_EQ(out.str(), "Help.\n");
    EXPECT_EQ(err.str(), "Wrong.\n");
}

} // namespace
} // namespace raincast
