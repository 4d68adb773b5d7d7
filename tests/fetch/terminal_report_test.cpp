// SPDX-License-Identifier: MIT
#include "fetch/terminal_report.h"

#include <gtest/gtest.h>

#include <sstream>

namespace raincast {
namespace {

TEST(TerminalReportTest, AFileGetsTheStatusTextsOnly) {
    std::ostringstream stream;
    {
        TerminalReport report(stream, false);
        report.statusChanged(QStringLiteral("Updating radar image...\n"));
        report.progress(0, 2);
        report.progress(2, 2);
        report.statusChanged(QString());
    }
    EXPECT_EQ(stream.str(), "Updating radar image...\n");
}

TEST(TerminalReportTest, ATerminalGetsABarThatIsGoneInTheEnd) {
    std::ostringstream stream;
    {
        TerminalReport report(stream, true);
        report.progress(1, 2);
        EXPECT_EQ(stream.str(), "\r[###############               ] 1 of 2");
        report.progress(2, 2);
    }
    EXPECT_EQ(
        stream.str(), "\r[###############               ] 1 of 2"
                      "\r[##############################] 2 of 2\r\033[K"
    );
}

TEST(TerminalReportTest, AStatusTextTakesTheBarsPlace) {
    std::ostringstream stream;
    TerminalReport report(stream, true);
    report.progress(0, 1);
    report.statusChanged(QStringLiteral("Could not get\nall images.\n"));
    EXPECT_EQ(
        stream.str(), "\r[                              ] 0 of 1\r\033[K"
                      "Could not get\nall images.\n"
    );
}

} // namespace
} // namespace raincast
