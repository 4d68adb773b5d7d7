// SPDX-License-Identifier: MIT
#include "provider/alert_reader.h"
#include "support/files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace raincast {
namespace {

using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr char kTriangle[] =
    R"({"type":"Polygon","coordinates":[[[-97,35],[-96,35],[-96,36],[-97,35]]]})";

/// A message of the weather service.
QByteArray alert(const QByteArray& more, const QByteArray& geometry = kTriangle) {
    return R"({"geometry":)" + geometry +
           R"(,"properties":{"status":"Actual","event":"Tornado Warning","messageType":"Alert",)"
           R"("sent":"2025-06-19T18:40:00-06:00","ends":"2025-06-19T19:15:00-06:00",)" +
           more + "}}";
}

QByteArray all(const std::vector<QByteArray>& features) {
    QByteArray list;
    for (const QByteArray& feature : features) {
        list += (list.isEmpty() ? "" : ",") + feature;
    }
    return R"({"type":"FeatureCollection","features":[)" + list + "]}";
}

std::vector<WeatherWarning> read(const std::vector<QByteArray>& features) {
    const auto alerts = readAlerts(all(features));
    EXPECT_TRUE(alerts);
    return warningsOf(*alerts);
}

QByteArray vtec(const char* action, const char* number = "0002") {
    return QByteArray(R"("parameters":{"VTEC":["/O.)") + action + ".KBIS.TO.W." + number +
           R"(.250620T0040Z-250620T0115Z/"]})";
}

TEST(AlertReaderTest, ReadsTextsTimesAndPlaces) {
    const auto warnings = read({alert(
        R"("id":"a","senderName":"NWS Bismarck ND","headline":"H","description":"D","instruction":"I","onset":"2025-06-19T18:41:00-06:00")"
    )});
    ASSERT_THAT(warnings, SizeIs(1));
    const WeatherWarning& warning = warnings[0];
    EXPECT_EQ(warning.kind, WarningKind::tornado);
    EXPECT_EQ(warning.office, "NWS Bismarck ND");
    EXPECT_EQ(warning.headline, "H");
    EXPECT_EQ(warning.text, "D");
    EXPECT_EQ(warning.instruction, "I");
    EXPECT_EQ(warning.begin, fromCalendar({2025, 6, 20, 0, 41}));
    EXPECT_EQ(warning.end, fromCalendar({2025, 6, 20, 1, 15}));
    ASSERT_THAT(warning.polygons, SizeIs(1));
    ASSERT_THAT(warning.polygons[0], SizeIs(1));
    ASSERT_THAT(warning.polygons[0][0], SizeIs(4));
    EXPECT_EQ(warning.polygons[0][0][1].latitude, 35);
    EXPECT_EQ(warning.polygons[0][0][1].longitude, -96);
}

TEST(AlertReaderTest, ANullEndFallsBackOnItsExpiry) {
    const auto warnings = read(
        {R"({"geometry":)" + QByteArray(kTriangle) +
         R"(,"properties":{"id":"a","event":"Special Weather Statement","ends":null,)"
         R"("expires":"2024-04-28T14:15:00-05:00"}})"}
    );
    ASSERT_THAT(warnings, SizeIs(1));
    EXPECT_EQ(warnings[0].end, fromCalendar({2024, 4, 28, 19, 15}));
}

TEST(AlertReaderTest, ReadsHolesAndSeveralPolygons) {
    const auto warnings = read({alert(
        R"("id":"a")",
        R"({"type":"MultiPolygon","coordinates":[[[[-97,35],[-96,35],[-96,36],[-97,35]],
        [[-96.5,35.1],[-96.4,35.1],[-96.4,35.2]]],[[[-95,35],[-94,35],[-94,36]]]]})"
    )});
    ASSERT_THAT(warnings, SizeIs(1));
    ASSERT_THAT(warnings[0].polygons, SizeIs(2));
    EXPECT_THAT(warnings[0].polygons[0], SizeIs(2));
    EXPECT_THAT(warnings[0].polygons[1], SizeIs(1));
}

TEST(AlertReaderTest, OfAnEventTheNewestMessageHolds) {
    const QByteArray later = R"("sent":"2025-06-19T18:55:00-06:00",)";
    const QByteArray first = alert(R"("id":"a","headline":"first",)" + vtec("NEW"));
    const QByteArray second = alert(later + R"("id":"b","headline":"second",)" + vtec("CON"));
    const QByteArray other = alert(R"("id":"c","headline":"other",)" + vtec("NEW", "0003"));
    for (const auto& order : {std::vector{first, second, other}, {other, second, first}}) {
        const auto warnings = read(order);
        ASSERT_THAT(warnings, SizeIs(2));
        EXPECT_EQ(warnings[0].headline, "second");
        EXPECT_EQ(warnings[1].headline, "other");
    }
}

TEST(AlertReaderTest, CancelledEventsGo) {
    const QByteArray later = R"("sent":"2025-06-19T18:55:00-06:00",)";
    const QByteArray first = alert(R"("id":"a",)" + vtec("NEW"));
    EXPECT_THAT(read({first, alert(later + vtec("CAN"), "null")}), IsEmpty());
    EXPECT_THAT(read({first, alert(later + vtec("EXP"))}), IsEmpty());
    const QByteArray cancel = R"("messageType":"Cancel",)";
    EXPECT_THAT(read({first, alert(cancel + later + vtec("CON"))}), IsEmpty());
}

TEST(AlertReaderTest, WithoutVtecReferencesTell) {
    const QByteArray first = alert(R"("id":"a","headline":"first")");
    const QByteArray second = alert(
        R"("id":"b","headline":"second","references":[{"@id":"https://x/a","identifier":"a"}])"
    );
    const QByteArray unrelated = alert(R"("id":"c","headline":"third")");
    const auto warnings = read({first, second, unrelated});
    ASSERT_THAT(warnings, SizeIs(2));
    EXPECT_EQ(warnings[0].headline, "second");
    EXPECT_EQ(warnings[1].headline, "third");
}

TEST(AlertReaderTest, OnlyWarningsWithAnOutlineAreShown) {
    EXPECT_THAT(read({alert(R"("id":"a")", "null")}), IsEmpty());
    EXPECT_THAT(read({alert(R"("id":"a","event":"Tornado Watch")")}), IsEmpty());
    EXPECT_THAT(read({alert(R"("id":"a","status":"Test")")}), IsEmpty());
    for (const char* const geometry :
         {R"({"type":"Polygon"})", R"({"type":"Polygon","coordinates":[[[-97,35],[-96,35]]]})",
          R"({"type":"Polygon","coordinates":[[[-97,95],[-96,35],[-96,36]]]})",
          R"({"type":"Polygon","coordinates":[[["a",35],[-96,35],[-96,36]]]})",
          R"({"type":"Point","coordinates":[-97,35]})", R"([])", R"(7)"}) {
        EXPECT_THAT(read({alert(R"("id":"a")", geometry)}), IsEmpty()) << geometry;
    }
}

TEST(AlertReaderTest, RefusesWhatIsNoList) {
    for (const char* const json : {"", "{", "[]", "{}", R"({"features":{}})", "<html></html>"}) {
        EXPECT_FALSE(readAlerts(json)) << json;
        EXPECT_FALSE(readStormWarnings(json)) << json;
    }
    EXPECT_THAT(read({"7", "null", R"({"properties":[]})"}), IsEmpty());
}

TEST(AlertReaderTest, ReadsTheOtherProvidersForm) {
    const auto feature = [](const QByteArray& status, int number) {
        return R"({"id":"x","properties":{"status":")" + status +
               R"(","phenomena":"SV","significance":"W","ps":"Severe Thunderstorm Warning",)"
               R"("wfo":"BIS","eventid":)" +
               QByteArray::number(number) +
               R"(,"polygon_begin":"2025-06-20T00:40:00Z","polygon_end":"2025-06-20T01:15:00Z"},)"
               R"("geometry":)" +
               kTriangle + "}";
    };
    const auto alerts = readStormWarnings(all(
        {feature("NEW", 1), feature("CAN", 2), feature("EXP", 3), feature("UPG", 4),
         R"({"properties":{"phenomena":"FA","significance":"Y"}})"}
    ));
    ASSERT_TRUE(alerts);
    const auto warnings = warningsOf(*alerts);
    ASSERT_THAT(warnings, SizeIs(1));
    EXPECT_EQ(warnings[0].kind, WarningKind::severeThunderstorm);
    EXPECT_EQ(warnings[0].end, fromCalendar({2025, 6, 20, 1, 15}));
    EXPECT_EQ(warnings[0].headline, "Severe Thunderstorm Warning");
    EXPECT_EQ(warnings[0].id, "BIS.SV.W.0001") << "as the weather service's messages have it";
}

TEST(AlertReaderTest, AWarningIsCalledAsItsEvent) {
    const auto event = read({alert(vtec("NEW") + R"(,"id":"a")")});
    ASSERT_THAT(event, SizeIs(1));
    EXPECT_EQ(event[0].id, "BIS.TO.W.0002");
    const auto statement = read({alert(R"("id":"urn:a")")});
    ASSERT_THAT(statement, SizeIs(1));
    EXPECT_EQ(statement[0].id, "urn:a");
}

std::vector<WeatherWarning> recorded(const char* name) {
    const QString file =
        qEnvironmentVariable("RAINCAST_TEST_DATA") + QStringLiteral("/live/") + QLatin1String(name);
    if (!QFile::exists(file)) {
        return {};
    }
    const auto alerts = readAlerts(readFile(file));
    EXPECT_TRUE(alerts);
    return warningsOf(*alerts);
}

TEST(RealDataAlertReaderTest, ReadsPublishedAnswers) {
    const auto storms = recorded("alerts-ggw-2023-07-23.geojson");
    const auto statements = recorded("alerts-ewx-2024-04-28.geojson");
    if (storms.empty()) {
        GTEST_SKIP() << "RAINCAST_TEST_DATA names no folder with live";
    }
    ASSERT_THAT(storms, SizeIs(1));
    EXPECT_EQ(storms[0].kind, WarningKind::severeThunderstorm);
    EXPECT_EQ(storms[0].end, fromCalendar({2023, 7, 23, 6, 30}));
    EXPECT_THAT(storms[0].polygons.at(0).at(0), SizeIs(6));
    // A flood advisory has no outline; a statement without an end has an expiry.
    ASSERT_THAT(statements, SizeIs(1));
    EXPECT_EQ(statements[0].kind, WarningKind::specialWeatherStatement);
    EXPECT_EQ(statements[0].end, fromCalendar({2024, 4, 28, 19, 15}));
}

} // namespace
} // namespace raincast
