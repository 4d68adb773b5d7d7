// SPDX-License-Identifier: MIT
#include "tree/warnings_text.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

namespace raincast {
namespace {

const ImageGeometry kImage(35, -97, Range::shortRange);

WeatherWarning triangleAt(double latitude, double longitude, WarningKind kind) {
    WeatherWarning warning;
    warning.kind = kind;
    warning.id = "OUN.TO.W.0123";
    warning.office = "NWS Norman OK";
    warning.headline = "Take cover";
    warning.text = "A storm\nmoves east";
    warning.instruction = "Go inside";
    warning.begin = fromCalendar({2026, 11, 21, 17, 40});
    warning.end = fromCalendar({2026, 11, 21, 18, 15});
    warning.polygons = {
        {{{latitude, longitude}, {latitude + .5, longitude}, {latitude, longitude + .123456}}}};
    return warning;
}

QJsonArray textsOf(const std::vector<WeatherWarning>& warnings) {
    const QByteArray json = warningsText(kImage, {warnings, false});
    return QJsonDocument::fromJson(json).object()["warnings"].toArray();
}

TEST(WarningsTextTest, TellsAllOfAWarning) {
    const auto list = textsOf({triangleAt(35, -97, WarningKind::tornado)});
    ASSERT_EQ(list.size(), 1);
    const QJsonObject warning = list[0].toObject();
    EXPECT_EQ(warning["id"], "OUN.TO.W.0123");
    EXPECT_EQ(warning["event"], "Tornado Warning");
    EXPECT_EQ(warning["office"], "NWS Norman OK");
    EXPECT_EQ(warning["headline"], "Take cover");
    EXPECT_EQ(warning["text"], "A storm\nmoves east");
    EXPECT_EQ(warning["instruction"], "Go inside");
    EXPECT_EQ(warning["begin"], "2026-11-21T17:40:00Z");
    EXPECT_EQ(warning["end"], "2026-11-21T18:15:00Z");
    const QJsonArray ring = warning["polygons"].toArray()[0].toArray()[0].toArray();
    ASSERT_EQ(ring.size(), 3);
    EXPECT_EQ(ring[2], (QJsonArray{35, -96.8765}));
}

TEST(WarningsTextTest, TheMostDangerousComesFirst) {
    const auto list = textsOf(
        {triangleAt(35, -97, WarningKind::severeThunderstorm),
         triangleAt(35, -97, WarningKind::tornado),
         triangleAt(35, -97, WarningKind::specialWeatherStatement)}
    );
    ASSERT_EQ(list.size(), 3);
    EXPECT_EQ(list[0].toObject()["event"], "Tornado Warning");
    EXPECT_EQ(list[2].toObject()["event"], "Special Weather Statement");
}

TEST(WarningsTextTest, LeavesOutWhatThePictureDoesNotShow) {
    EXPECT_EQ(textsOf({triangleAt(45, -97, WarningKind::tornado)}).size(), 0);
    EXPECT_EQ(textsOf({triangleAt(35, -80, WarningKind::tornado)}).size(), 0);
    EXPECT_EQ(textsOf({WeatherWarning()}).size(), 0);
}

TEST(WarningsTextTest, AnUnknownEndIsNull) {
    WeatherWarning warning = triangleAt(35, -97, WarningKind::tornado);
    warning.end = 0;
    EXPECT_TRUE(textsOf({warning})[0].toObject()["end"].isNull());
}

TEST(WarningsTextTest, SampleWarningsSaySo) {
    const auto whole = QJsonDocument::fromJson(warningsText(kImage, {{}, true})).object();
    EXPECT_EQ(whole["sample"], true);
    EXPECT_TRUE(whole["warnings"].isArray());
}

} // namespace
} // namespace raincast
