// SPDX-License-Identifier: MIT
#include "core/program_log.h"

#include <QLoggingCategory>

#include <gtest/gtest.h>

namespace raincast {
namespace {

QString heard;

void hear(QtMsgType /*type*/, const QMessageLogContext& /*context*/, const QString& text) {
    heard += text;
}

class ProgramLogTest : public ::testing::Test {
protected:
    ProgramLogTest() : m_before(qInstallMessageHandler(hear)) {
        heard.clear();
        logToStandardError();
        ::testing::internal::CaptureStderr();
    }
    ~ProgramLogTest() override { qInstallMessageHandler(m_before); }

    QtMessageHandler m_before;
};

TEST_F(ProgramLogTest, LinesBeginWithTheProgramsNameButForInformation) {
    const QLoggingCategory log("raincast-sail");
    qCCritical(log, "Cannot tack: %s.", "no wind");
    qCInfo(log, "Course \"%s\"", "45°");
    qCWarning(log, "Gusts.");
    EXPECT_EQ(
        ::testing::internal::GetCapturedStderr(),
        "raincast-sail: Cannot tack: no wind.\nCourse \"45°\"\nraincast-sail: Gusts.\n"
    );
    EXPECT_EQ(heard, QString());
}

TEST(ForStandardErrorTest, OutsideTheJournalLinesHaveNoPriority) {
    EXPECT_EQ(forStandardError(QtCriticalMsg, "a\nb\n"), "a\nb\n");
}

TEST_F(ProgramLogTest, OtherCategoriesKeepTheirHandler) {
    qWarning("a default line");
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(heard, "a default line");
}

} // namespace
} // namespace raincast
