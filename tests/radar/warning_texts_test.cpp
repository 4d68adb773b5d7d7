// SPDX-License-Identifier: MIT
#include "radar/warning_texts.h"
#include "radar/warnings_file.h"
#include "support/files.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace raincast {
namespace {

const QByteArray kWhole = R"({"sample": true, "more": 1, "warnings": [{
    "event": "Tornado Warning", "office": "NWS Norman OK", "headline": "One", "text": "Two\nlines",
    "instruction": "TAKE COVER NOW!", "begin": "2026-11-21T17:40:00Z",
    "end": "2026-11-21T18:15:00Z", "new": {},
    "polygons": [[[[35, -97.5], [35, -97], [35.5, -97]], [[35.1, -97.1], [35.1, -97.2], [35.2, -97.2]]],
                 [[[1, 2], [3, 4], [5, 6]]]]}, {"event": "Special Marine Warning"}]})";

TEST(WarningTextsTest, AreReadAsTheyStand) {
    const auto texts = readWarningTexts(kWhole);
    ASSERT_TRUE(texts);
    EXPECT_TRUE(texts->isSample);
    ASSERT_EQ(texts->warnings.size(), 2U);
    const WarningText& first = texts->warnings[0];
    EXPECT_EQ(first.event, "Tornado Warning");
    EXPECT_EQ(first.office, "NWS Norman OK");
    EXPECT_EQ(first.headline, "One");
    EXPECT_EQ(first.text, "Two\nlines");
    EXPECT_EQ(first.instruction, "TAKE COVER NOW!");
    EXPECT_EQ(first.begin, fromCalendar({2026, 11, 21, 17, 40}));
    EXPECT_EQ(first.end, fromCalendar({2026, 11, 21, 18, 15}));
    ASSERT_EQ(first.polygons.size(), 2U);
    ASSERT_EQ(first.polygons[0].size(), 2U);
    EXPECT_EQ(first.polygons[0][0][2], (GeoPosition{35.5, -97}));
    EXPECT_EQ(first.polygons[0][1][1], (GeoPosition{35.1, -97.2}));
    EXPECT_EQ(first.polygons[1][0].size(), 3U);
    EXPECT_EQ(texts->warnings[1].begin, 0);
    EXPECT_EQ(texts->warnings[1].end, 0);
    EXPECT_TRUE(texts->warnings[1].polygons.empty());
}

// Servers of before gave no ids.
TEST(WarningTextsTest, HaveAnIdThatStaysWhenTheyAreProlonged) {
    const auto idOf = [](const QByteArray& members) {
        const auto texts = readWarningTexts(R"({"warnings": [{"event": "A", )" + members + "}]}");
        return texts && texts->warnings.size() == 1 ? texts->warnings[0].id : QString();
    };
    EXPECT_EQ(idOf(R"("id": "OUN.TO.W.0123", "end": "2026-11-21T18:15:00Z")"), "OUN.TO.W.0123");
    const QByteArray begin = R"("office": "O", "begin": "2026-11-21T17:40:00Z")";
    const QString first = idOf(begin + R"(, "end": "2026-11-21T18:15:00Z")");
    EXPECT_FALSE(first.isEmpty());
    EXPECT_EQ(idOf(begin + R"(, "end": "2026-11-21T18:30:00Z", "id": "")"), first);
    EXPECT_NE(idOf(R"("office": "O", "begin": "2026-11-21T17:41:00Z")"), first);
    EXPECT_NE(idOf(R"("office": "P", "begin": "2026-11-21T17:40:00Z")"), first);
}

TEST(WarningTextsTest, WhatIsNotOfTheFormIsPassedOver) {
    const auto texts = readWarningTexts(
        R"({"warnings": [1, null, [], {}, {"event": ""}, {"event": 5}, {"event": "A",
            "office": 7, "begin": "now", "end": "99999-01-01T00:00:00Z", "polygons": [1, [], [[]],
            [[[91, 0], [1, 2]]], [[["35", 0]]], [[[1]]], [[[1, 2]], [[1, 400]], [[3, 4]]]]},
            {"event": "B", "begin": "0001-01-01T00:00:00Z", "polygons": {}}]})"
    );
    ASSERT_TRUE(texts);
    ASSERT_EQ(texts->warnings.size(), 2U);
    const WarningText& first = texts->warnings[0];
    EXPECT_EQ(first.office, "");
    EXPECT_EQ(first.begin, 0);
    EXPECT_EQ(first.end, 0);
    ASSERT_EQ(first.polygons.size(), 1U);
    ASSERT_EQ(first.polygons[0].size(), 2U) << "a hole with a corner off the earth";
    EXPECT_EQ(first.polygons[0][1][0], (GeoPosition{3, 4}));
    EXPECT_EQ(texts->warnings[1].begin, 0);
}

TEST(WarningTextsTest, AreNoMoreThanFits) {
    QByteArray many = R"({"warnings": [)";
    for (int i = 0; i < 1000; ++i) {
        many += R"({"event": "A"},)";
    }
    const QByteArray letters(20'000, 'a');
    const auto texts = readWarningTexts(many + R"({"event": "B"}]})");
    ASSERT_TRUE(texts);
    EXPECT_EQ(texts->warnings.size(), kMostWarningTexts);
    const auto one =
        readWarningTexts(R"({"warnings": [{"event": "A", "text": ")" + letters + R"("}]})");
    ASSERT_TRUE(one);
    EXPECT_EQ(one->warnings.at(0).text.size(), kMostTextLetters);
}

TEST(WarningTextsTest, StandInTheCacheBesideTheirPicture) {
    const QTemporaryDir folder;
    EXPECT_EQ(warningTextsFile({}, "BMX"), QString()) << "no path from the root";
    EXPECT_FALSE(loadWarningTexts(folder.path(), "BMX", "Short"));
    writeFile(warningTextsFile(folder.path(), "BMX"), kWhole);
    EXPECT_FALSE(loadWarningTexts(folder.path(), "BMX", "Short")) << "of which range?";
    noteWarnings(folder.path(), {nullptr, "BMX", "Short", fromCalendar({2026, 11, 21})});
    EXPECT_TRUE(loadWarningTexts(folder.path(), "BMX", "Short"));
    EXPECT_FALSE(loadWarningTexts(folder.path(), "BMX", "Long"));
    writeFile(warningTextsFile(folder.path(), "BMX"), QByteArray(2 * kMostWarningTextBytes, ' '));
    EXPECT_FALSE(loadWarningTexts(folder.path(), "BMX", "Short"));
}

} // namespace
} // namespace raincast
