// SPDX-License-Identifier: MIT
#include "image/image_file.h"
#include "radar/bitmap.h"
#include "radar/radar_state.h"
#include "radar/warnings_file.h"
#include "support/files.h"
#include "support/gif_maker.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace raincast {
namespace {

const FileTime kFetched = fromCalendar({2019, 5, 19, 5, 54});

class WarningsFileTest : public ::testing::Test {
protected:
    WarningsFileTest() {
        const QByteArray gif = makeGif({.screen = {60, 55}, .pixel = [](int, int) { return 2; }});
        writeFile(m_folder.filePath("BMX/BMX_Warnings_0.gif"), gif);
    }
    void note(const QByteArray& text) {
        writeFile(m_folder.filePath("BMX/BMX_Warnings_0.time"), text);
    }
    [[nodiscard]] RadarWarnings load(const QString& range = "Short") const {
        return loadWarnings(m_folder.path(), "BMX", range, shownPictures().warnings);
    }

    QTemporaryDir m_folder;
};

TEST_F(WarningsFileTest, WhatWasNotedIsLoaded) {
    noteWarnings(m_folder.path(), {nullptr, "BMX", "Short", kFetched});
    const RadarWarnings warnings = load();
    ASSERT_TRUE(warnings.picture);
    EXPECT_EQ(warnings.picture->size(), QSize(60, 55));
    EXPECT_EQ(warnings.fetched, kFetched);
    EXPECT_EQ(warnings.siteId, "BMX");
    EXPECT_EQ(warnings.range, "Short");
}

TEST_F(WarningsFileTest, WithoutAGoodNoteThereAreNone) {
    EXPECT_FALSE(load().picture);
    const QByteArray notes[] = {
        "",
        "Short",
        "Short yesterday\n",
        "Short 2019-05-19T05:54:00Z more\n",
        "Long 2019-05-19T05:54:00Z\n",
        "Short 2019-05-19T05:54:00Z" + QByteArray(1000, ' '),
        QByteArray(40, '\xff')};
    for (const QByteArray& text : notes) {
        note(text);
        EXPECT_FALSE(load().picture) << text.toStdString();
    }
    note("Short 2019-05-19T05:54:00Z\n");
    EXPECT_TRUE(load().picture);
    EXPECT_FALSE(load("Long").picture);
}

TEST_F(WarningsFileTest, ANoteWithoutAPictureIsNone) {
    note("Short 2019-05-19T05:54:00Z\n");
    writeFile(m_folder.filePath("BMX/BMX_Warnings_0.gif"), "no picture");
    EXPECT_FALSE(load().picture);
}

class WarningsUseTest : public ::testing::Test {
protected:
    WarningsUseTest() {
        m_state.siteId = QStringLiteral("BMX");
        m_state.warnings = {
            std::make_shared<QImage>(6, 5, QImage::Format_RGB32), "BMX", "Short", kFetched};
        newest("20190519_0554");
    }
    void newest(const QString& stamp) {
        m_state.frames = {
            {nullptr, {}, "/c/BMX/BMX_20190519_0444_N0R.gif"},
            {nullptr, {}, "/c/BMX/BMX_" + stamp + "_N0R.gif"}};
    }

    RadarState m_state;
};

TEST_F(WarningsUseTest, TheyAreDrawnUpToAQuarterOfAnHourAfterTheirTime) {
    EXPECT_EQ(warningsUse(m_state), WarningsUse::drawn);
    newest("20190519_0609");
    EXPECT_EQ(warningsUse(m_state), WarningsUse::drawn);
    newest("20190519_0610");
    EXPECT_EQ(warningsUse(m_state), WarningsUse::stale);
    newest("20190519_0444");
    EXPECT_EQ(warningsUse(m_state), WarningsUse::drawn) << "newer than the frames";
}

TEST_F(WarningsUseTest, ThereAreNoneWithoutAPictureOrFramesOrWhenSwitchedOff) {
    RadarState state = m_state;
    state.showWarnings = false;
    EXPECT_EQ(warningsUse(state), WarningsUse::none);
    state = m_state;
    state.frames.clear();
    EXPECT_EQ(warningsUse(state), WarningsUse::none);
    state = m_state;
    state.warnings.picture = nullptr;
    EXPECT_EQ(warningsUse(state), WarningsUse::none);
}

TEST_F(WarningsUseTest, ThoseOfAnotherSiteOrRangeAreNotDrawn) {
    RadarState state = m_state;
    state.siteId = QStringLiteral("MUX");
    EXPECT_EQ(warningsUse(state), WarningsUse::none);
    state = m_state;
    state.product = 2; // the long-range one
    EXPECT_EQ(warningsUse(state), WarningsUse::none);
}

} // namespace
} // namespace raincast
