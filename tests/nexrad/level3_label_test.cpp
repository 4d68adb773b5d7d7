// SPDX-License-Identifier: MIT
#include "nexrad/level3_label.h"
#include "support/level3_maker.h"

#include <QByteArray>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace raincast {
namespace {

using ::testing::HasSubstr;

tl::expected<Level3Label, QString> read(const Level3ToMake& wanted, qsizetype chopped = 0) {
    return readLevel3Label(QByteArray::fromStdString(makeLevel3(wanted)).chopped(chopped));
}

TEST(Level3LabelTest, TellsSiteCodeAndTime) {
    for (const int zlibFrames : {0, 2}) {
        Level3ToMake wanted;
        wanted.zlibFrames = zlibFrames;
        const auto label = read(wanted);
        ASSERT_TRUE(label) << qPrintable(label.error());
        EXPECT_EQ(label->site, "TLX");
        EXPECT_EQ(label->code, 19);
        EXPECT_EQ(label->volumeTime, fromCalendar({2013, 5, 20, 20, 16, 43}));
    }
}

TEST(Level3LabelTest, WithoutAHeadingThereIsNoSite) {
    Level3ToMake wanted;
    wanted.wmoHeading = wanted.awipsId = "";
    EXPECT_EQ(read(wanted)->site, "");
}

TEST(Level3LabelTest, AMessageThatIsCutOffIsNone) {
    const auto label = read({}, 1);
    ASSERT_FALSE(label);
    EXPECT_THAT(label.error().toStdString(), HasSubstr("bytes"));
    EXPECT_FALSE(readLevel3Label(""));
    EXPECT_FALSE(readLevel3Label("<html><body>Log in to use this network</body></html>"));
}

TEST(Level3LabelTest, WhatFollowsTheMessageIsIgnored) {
    Level3ToMake wanted;
    wanted.startOfHeading = true;
    EXPECT_TRUE(read(wanted));
}

} // namespace
} // namespace raincast
