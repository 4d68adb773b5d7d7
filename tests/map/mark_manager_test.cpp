// SPDX-License-Identifier: MIT
#include "map/mark_manager.h"
#include "persist/sample_bytes.h"
#include "persist/serial_reader.h"
#include "persist/serial_writer.h"
#include "support/record_listeners.h"

#include <QBuffer>

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

namespace raincast {
namespace {

using testing::ElementsAre;

const GeoPosition kHarbour{54.5, 11.25};
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();

std::vector<std::string> namesOf(const CMarkManager& manager) {
    std::vector<std::string> names;
    for (const COverlayMark& mark : manager.marks()) {
        names.push_back(mark.name.toStdString());
    }
    return names;
}

QByteArray saved(const CSerializable& object) {
    QBuffer file;
    file.open(QIODevice::WriteOnly);
    CSerialWriter writer(file);
    EXPECT_TRUE(object.Write(writer));
    EXPECT_TRUE(writer.finish());
    return file.data();
}

Bytes bytesIn(const QByteArray& array) {
    return {array.begin(), array.end()};
}

Bytes number8(double value) {
    const auto bytes = toLittleEndian(value);
    return join(number(8), bytes);
}

// A mark of a name of one letter.
Bytes markBytes(char letter, double latitude, double longitude) {
    const Bytes name{static_cast<std::uint8_t>(letter), 0};
    return join(number(3), number(2), name, number8(latitude), number8(longitude));
}

class Noting : private Listener<COverlayObject> {
public:
    int changed = 0;
    int removed = 0;
    const COverlayObject* last = nullptr;

private:
    void onPublished(COverlayObject& object) override {
        (object.change() == COverlayObject::Change::removed ? removed : changed) += 1;
        last = &object;
    }
};

class MarkManagerTest : public testing::Test {
protected:
    // A position metres east and north of the harbour.
    static void publish(double east, double north, float course = 0, int fixType = kFixGps) {
        const GeoPosition place = LocalFrame(kHarbour).fromMetres({east, north});
        publishAt(place, course, fixType);
    }
    static void publishAt(const GeoPosition& place, float course = 0, int fixType = kFixGps) {
        CDataGPSPosition position;
        position.latitude = place.latitude;
        position.longitude = place.longitude;
        position.course = course;
        position.fixType = fixType;
        Listener<CDataGPSPosition>::Notify(position);
    }
    COverlayMark& addHarbour() { return manager.add(kHarbour, QStringLiteral("Harbour")); }
    void aim() { manager.setTarget(addHarbour()); }

    CMarkManager manager;
    RecordListener<NavigationData> navigation;
};

TEST_F(MarkManagerTest, ThreeMarksComeBackInOrderAndTwiceMakeSix) {
    manager.add({1.5, -2.25}, QStringLiteral("a"));
    manager.add({-90, 180}, QString());
    manager.add({0, 0}, QStringLiteral("\u00DC\u20AC \U0001F6A2"));
    const Bytes file = bytesIn(saved(manager));

    CMarkManager other;
    for (int times = 1; times <= 2; ++times) {
        CSerialReader reader(file);
        ASSERT_TRUE(other.Read(reader));
        EXPECT_TRUE(reader.whole());
        ASSERT_EQ(other.marks().size(), 3U * static_cast<unsigned>(times));
    }
    auto original = manager.marks().begin();
    for (const COverlayMark& mark : other.marks()) {
        EXPECT_EQ(mark.name, original->name);
        EXPECT_EQ(mark.position(), original->position());
        if (++original == manager.marks().end()) {
            original = manager.marks().begin();
        }
    }
}

TEST_F(MarkManagerTest, TheBodyIsACountAndRecordsOfThreeFields) {
    manager.add({37.5, -105.25}, QStringLiteral("A"));
    manager.add({-1, 2}, QStringLiteral("B"));
    EXPECT_EQ(
        bytesIn(saved(manager)),
        join(number(2), markBytes('A', 37.5, -105.25), markBytes('B', -1, 2))
    );
}

TEST_F(MarkManagerTest, WhatIsLoadedIsAnnounced) {
    Noting noting;
    const Bytes file = join(number(2), markBytes('A', 1, 2), markBytes('B', 3, 4));
    CSerialReader reader(file);
    ASSERT_TRUE(manager.Read(reader));
    EXPECT_EQ(noting.changed, 2);
}

TEST_F(MarkManagerTest, TheMarksOfAnotherOneTakeThePlaceOfAll) {
    aim();
    CMarkManager other;
    const COverlayMark& first = other.add({1, 2}, QStringLiteral("A"));
    other.setTarget(other.add({3, 4}, QStringLiteral("B")));
    Noting noting;
    manager.takeFrom(other);
    EXPECT_EQ(noting.removed, 1) << "the harbour";
    ASSERT_EQ(manager.marks().size(), 2U);
    EXPECT_EQ(&manager.marks().front(), &first);
    EXPECT_EQ(manager.marks().back().name, "B");
    EXPECT_TRUE(other.marks().empty());
    EXPECT_FALSE(manager.hasTarget());
    EXPECT_FALSE(other.hasTarget());
    manager.remove(first);
    EXPECT_EQ(noting.last, &first);
}

struct Damage {
    const char* what;
    Bytes bytes;
    std::vector<std::string> names;
};

TEST_F(MarkManagerTest, OfADamagedBodyEverythingIsReadThatCanBe) {
    const Bytes good = markBytes('G', 1, 2);
    const Bytes last = markBytes('L', 3, 4);
    const Bytes cut(good.begin(), good.end() - 1);
    const Bytes two(good.begin() + 4, good.end() - 12);
    const Damage rows[] = {
        {"nothing", {}, {}},
        {"half a count", {1, 0}, {}},
        {"a huge count", join(number(0x7FFFFFFF), good, last), {"G", "L"}},
        {"a negative count", join(number(0xFFFFFFFF), good), {}},
        {"a mark cut short", join(number(2), last, cut), {"L"}},
        {"two fields", join(number(2), number(2), two, last), {"L"}},
        {"a short latitude",
         join(number(2), number(3), number(0), number(4), Bytes(4), number8(1), last),
         {"L"}},
        {"records of no fields", join(number(3), number(0), number(0), last), {"L"}},
    };
    for (const Damage& row : rows) {
        CMarkManager damaged;
        CSerialReader reader(row.bytes);
        EXPECT_FALSE(damaged.Read(reader)) << row.what;
        EXPECT_EQ(namesOf(damaged), row.names) << row.what;
    }
}

// Whatever made them, they are the user's: also the bits of a number that is none.
TEST_F(MarkManagerTest, MarksOutOfRangeAreKeptByteForByte) {
    Bytes odd = markBytes('P', 0, 0);
    const Bytes payload{0x0D, 0xF0, 0xAD, 0x8B, 0xEF, 0xBE, 0xFC, 0x7F};
    std::copy(payload.begin(), payload.end(), odd.end() - 8);
    const Bytes file = join(
        number(7), markBytes('N', kNoNumber, 0), markBytes('I', 0, -kInfinity),
        markBytes('B', 90.5, 0), markBytes('G', 12, 34), markBytes('F', 0, 1e300), odd,
        markBytes('Z', -0.0, -360.5)
    );
    CSerialReader reader(file);
    EXPECT_TRUE(manager.Read(reader)) << "nothing is lost";
    EXPECT_TRUE(reader.whole());
    EXPECT_THAT(namesOf(manager), ElementsAre("N", "I", "B", "G", "F", "P", "Z"));
    EXPECT_EQ(bytesIn(saved(manager)), file);

    manager.rename(manager.marks().back(), QStringLiteral("Y"));
    manager.remove(manager.marks().front());
    CMarkManager again;
    const Bytes rest = bytesIn(saved(manager));
    CSerialReader second(rest);
    EXPECT_TRUE(again.Read(second));
    EXPECT_THAT(namesOf(again), ElementsAre("I", "B", "G", "F", "P", "Y"));
}

TEST_F(MarkManagerTest, AMarkOutOfRangeIsNoTarget) {
    const Bytes file = join(number(2), markBytes('N', kNoNumber, 0), markBytes('B', 90.5, 0));
    CSerialReader reader(file);
    EXPECT_TRUE(manager.Read(reader));
    for (const COverlayMark& mark : manager.marks()) {
        manager.setTarget(mark);
        EXPECT_FALSE(manager.hasTarget());
    }
    EXPECT_TRUE(navigation.records.empty());
}

TEST_F(MarkManagerTest, FieldsOfANewerProgramArePassedOver) {
    Bytes longer = markBytes('A', 1, 2);
    longer[0] = 4;
    const Bytes file = join(number(2), longer, number(3), Bytes(3), markBytes('B', 3, 4));
    CSerialReader reader(file);
    EXPECT_TRUE(manager.Read(reader));
    EXPECT_THAT(namesOf(manager), ElementsAre("A", "B"));
    EXPECT_TRUE(reader.skippedData());
}

TEST_F(MarkManagerTest, AMarkIsAtAPlaceWhateverItIsAddedAt) {
    struct Row {
        GeoPosition asked;
        GeoPosition taken;
    };
    const Row rows[] = {
        {{54.5, 11.25}, {54.5, 11.25}},
        {{91, 190}, {90, 190}},
        {{-kInfinity, 1e9}, {-90, 360}},
        {{kNoNumber, kNoNumber}, {0, 0}},
    };
    for (const Row& row : rows) {
        const COverlayMark& mark = manager.add(row.asked, {});
        EXPECT_EQ(mark.position(), row.taken);
        EXPECT_TRUE(mark.isPlaced());
    }
}

TEST_F(MarkManagerTest, MarksAreAnnouncedAddedRenamedAndRemoved) {
    Noting noting;
    const COverlayMark& mark = addHarbour();
    EXPECT_EQ(noting.changed, 1);
    EXPECT_EQ(noting.last, &mark);
    manager.rename(mark, QStringLiteral("Home"));
    EXPECT_EQ(noting.changed, 2);
    EXPECT_THAT(namesOf(manager), ElementsAre("Home"));
    manager.remove(mark);
    EXPECT_EQ(noting.removed, 1);
    EXPECT_TRUE(manager.marks().empty());

    manager.add({1, 2}, {});
    manager.add({3, 4}, {});
    manager.clear();
    EXPECT_EQ(noting.removed, 3);
    EXPECT_TRUE(manager.marks().empty());
}

TEST_F(MarkManagerTest, AStrangersMarkChangesNothing) {
    addHarbour();
    CMarkManager other;
    const COverlayMark& stranger = other.add({1, 2}, QStringLiteral("stranger"));
    manager.rename(stranger, QStringLiteral("x"));
    manager.remove(stranger);
    manager.setTarget(stranger);
    EXPECT_THAT(namesOf(manager), ElementsAre("Harbour"));
    EXPECT_THAT(namesOf(other), ElementsAre("stranger"));
    EXPECT_FALSE(manager.hasTarget());
}

TEST_F(MarkManagerTest, WithoutATargetOnlyThePositionIsKept) {
    addHarbour();
    EXPECT_FALSE(manager.currentPosition());
    publishAt({1, 2});
    EXPECT_EQ(manager.currentPosition(), (GeoPosition{1, 2}));
    EXPECT_EQ(manager.navigation(), nullptr);
    EXPECT_TRUE(navigation.records.empty());
}

TEST_F(MarkManagerTest, PositionsWithoutAFixChangeNothing) {
    publish(0, 0, 0, kFixNone);
    EXPECT_FALSE(manager.currentPosition());
    aim();
    publish(0, -100);
    const std::size_t before = navigation.records.size();
    const GeoPosition there = *manager.currentPosition();
    publish(50, -80, 0, kFixNone);
    EXPECT_EQ(manager.currentPosition(), there);
    EXPECT_EQ(navigation.records.size(), before);
    ASSERT_NE(manager.navigation(), nullptr);
    EXPECT_NEAR(manager.navigation()->distance, 100, 0.01);
}

TEST_F(MarkManagerTest, DistanceAndBearingAreThoseToTheTarget) {
    struct Row {
        double east;
        double north;
        float distance;
        float bearing;
    };
    const Row rows[] = {
        {0, -100, 100, 0},  {-30, -40, 50, 36.8699F}, {-100, 0, 100, 90},
        {0, 100, 100, 180}, {100, 0, 100, 270},       {1, -1, 1.41421F, 315},
    };
    aim();
    for (const Row& row : rows) {
        publish(row.east, row.north);
        ASSERT_NE(manager.navigation(), nullptr);
        EXPECT_NEAR(manager.navigation()->distance, row.distance, 0.001);
        EXPECT_NEAR(manager.navigation()->bearing, row.bearing, 0.001);
        EXPECT_EQ(manager.navigation()->targetName.toStdString(), "Harbour");
        EXPECT_EQ(navigation.records.back().distance, manager.navigation()->distance);
    }
    publish(0, 0);
    EXPECT_NEAR(manager.navigation()->distance, 0, 0.001);
    EXPECT_GE(manager.navigation()->bearing, 0);
    EXPECT_LE(manager.navigation()->bearing, 360);
}

TEST_F(MarkManagerTest, TheRelativeBearingIsTheShorterTurn) {
    struct Row {
        float bearing;
        float course;
        float relative;
    };
    const Row rows[] = {{10, 350, 20},   {350, 10, -20},  {90, 90, 0},    {90, 360, 90},
                        {0, 180, -180},  {270, 90, 180},  {10, -350, 0},  {10, 3610, 0},
                        {90, -1e9F, -1}, {90, 3e38F, -1}, {90, 1e30F, -1}};
    aim();
    for (const Row& row : rows) {
        const double radians = row.bearing * std::acos(-1.0) / 180;
        publish(-1000 * std::sin(radians), -1000 * std::cos(radians), row.course);
        const float relative = manager.navigation()->relativeBearing;
        EXPECT_LE(std::fabs(relative), 180.001F) << row.course;
        if (row.relative != -1) {
            const float difference = std::fabs(relative - row.relative);
            EXPECT_LT(std::min(difference, std::fabs(difference - 360)), 0.01F) << row.course;
        }
    }
}

// Rounding must not turn straight back to the other side, and nothing near it may be turned.
TEST_F(MarkManagerTest, NearlyStraightBackStaysOnItsSide) {
    const struct {
        float course;
        float relative;
    } rows[] = {{180, -180},
                {-180, 180},
                {180.00005F, -180.00005F},
                {-180.00005F, 180.00005F},
                {179.995F, -179.995F},
                {-179.995F, 179.995F},
                {180.01F, 179.99F},
                {-180.01F, -179.99F}};
    aim();
    for (const auto& row : rows) {
        publish(0, -1000, row.course); // the target is straight north
        ASSERT_LT(std::fabs(manager.navigation()->bearing), 1e-5F);
        EXPECT_NEAR(manager.navigation()->relativeBearing, row.relative, 3e-5F) << row.course;
    }
}

TEST_F(MarkManagerTest, ACourseThatIsNoNumberCountsAsNorth) {
    aim();
    for (const double course : {kNoNumber, kInfinity, -kInfinity}) {
        publish(-100, 0, static_cast<float>(course));
        EXPECT_NEAR(manager.navigation()->relativeBearing, 90, 0.001);
    }
}

TEST_F(MarkManagerTest, AStraightApproachHasNoCrossTrackAndASidestepHas) {
    aim();
    for (int metres = 100; metres > 0; metres -= 7) {
        publish(0, -metres);
        EXPECT_NEAR(manager.navigation()->crossTrack, 0, 0.001) << metres;
    }
    publish(10, -50);
    EXPECT_NEAR(manager.navigation()->crossTrack, 10, 0.001) << "right of the way north";
    publish(-10, -50);
    EXPECT_NEAR(manager.navigation()->crossTrack, -10, 0.001);
    publish(10, 50);
    EXPECT_NEAR(manager.navigation()->crossTrack, 10, 0.001) << "past it, the line goes on";
}

TEST_F(MarkManagerTest, ASlantingApproachHasNoneEither) {
    aim();
    for (double part = 1; part > 0; part -= 0.1) {
        publish(60 * part, -80 * part);
        EXPECT_NEAR(manager.navigation()->crossTrack, 0, 0.001);
    }
    publish(60 + 8, -80 + 6);
    EXPECT_NEAR(manager.navigation()->crossTrack, 10, 0.001);
}

TEST_F(MarkManagerTest, WithinFiveMetresNoLineStarts) {
    aim();
    publish(3, 3);
    EXPECT_EQ(manager.navigation()->crossTrack, 0);
    publish(0, -4.99);
    publish(2, -1);
    EXPECT_EQ(manager.navigation()->crossTrack, 0);
    publish(-5.01, 0); // here it does, eastwards
    publish(-6, 2);
    EXPECT_NEAR(manager.navigation()->crossTrack, -2, 0.001);
}

TEST_F(MarkManagerTest, ChoosingATargetStartsTheLineAnew) {
    aim();
    publish(0, -100);
    publish(10, -50);
    EXPECT_NEAR(manager.navigation()->crossTrack, 10, 0.001);
    manager.setTarget(manager.marks().front());
    EXPECT_EQ(manager.navigation(), nullptr) << "until the next position";
    const NavigationData& begun = navigation.records.back();
    EXPECT_EQ(begun.targetName.toStdString(), "Harbour");
    EXPECT_EQ(begun.distance, 0);
    EXPECT_EQ(begun.bearing, 0);
    EXPECT_EQ(begun.relativeBearing, 0);
    EXPECT_EQ(begun.crossTrack, 0);
    publish(10, -50);
    EXPECT_EQ(manager.navigation()->crossTrack, 0);
    publish(1, 1);
    EXPECT_NE(manager.navigation()->crossTrack, 0);
}

TEST_F(MarkManagerTest, ATargetIsRestoredWithTheLineToIt) {
    aim();
    EXPECT_FALSE(manager.chosenTarget()->start);
    publish(0, -100);
    publish(10, -50);
    const auto chosen = manager.chosenTarget();
    ASSERT_TRUE(chosen && chosen->start);
    const float crossTrack = manager.navigation()->crossTrack;
    manager.clearTarget();
    EXPECT_FALSE(manager.chosenTarget());
    EXPECT_TRUE(manager.restoreTarget(*chosen));
    EXPECT_TRUE(manager.isTarget(manager.marks().front()));
    EXPECT_EQ(manager.navigation(), nullptr) << "until the next position";
    publish(10, -50);
    EXPECT_EQ(manager.navigation()->crossTrack, crossTrack);
}

TEST_F(MarkManagerTest, ATargetThatIsNoMarkIsNotRestored) {
    aim();
    const MarkData mark = manager.target();
    manager.clearTarget();
    for (const MarkData& other :
         {MarkData{mark.latitude, mark.longitude, QStringLiteral("Other")},
          MarkData{mark.latitude + 1e-9, mark.longitude, mark.name},
          MarkData{mark.latitude, kNoNumber, mark.name},
          MarkData{kInfinity, mark.longitude, mark.name}}) {
        EXPECT_FALSE(manager.restoreTarget({other, std::nullopt}));
        EXPECT_FALSE(manager.hasTarget());
    }
    const COverlayMark& equator = manager.add({0, 5}, QStringLiteral("Line"));
    manager.setTarget(equator);
    const auto chosen = manager.chosenTarget();
    manager.clearTarget();
    EXPECT_TRUE(manager.restoreTarget(*chosen));
    EXPECT_TRUE(manager.isTarget(equator));
}

TEST_F(MarkManagerTest, ALineThatStartsNowhereIsLeftOut) {
    aim();
    const MarkData mark = manager.target();
    for (const LocalOffset& start :
         {LocalOffset{0, 0}, LocalOffset{3, 3}, LocalOffset{kNoNumber, 100},
          LocalOffset{kInfinity, 0}, LocalOffset{0, 5e7}, LocalOffset{1e300, 1e300}}) {
        EXPECT_TRUE(manager.restoreTarget({mark, start}));
        EXPECT_FALSE(manager.chosenTarget()->start);
    }
}

TEST_F(MarkManagerTest, ListenersSeeThatTheTargetIsCleared) {
    aim();
    publish(0, -100);
    class Looking : private Listener<NavigationData> {
    public:
        explicit Looking(CMarkManager& manager) : m_manager(manager) {}
        int without = 0;

    private:
        void onPublished(NavigationData& record) override {
            EXPECT_TRUE(record.targetName.isEmpty());
            without += m_manager.navigation() == nullptr ? 1 : 0;
        }
        CMarkManager& m_manager;
    } looking(manager);
    manager.clearTarget();
    EXPECT_EQ(looking.without, 1);
    EXPECT_FALSE(manager.hasTarget());
    EXPECT_FALSE(manager.isTarget(manager.marks().front()));
    manager.clearTarget();
    EXPECT_EQ(looking.without, 1) << "there was none";
    publish(0, -90);
    EXPECT_EQ(manager.navigation(), nullptr);
}

TEST_F(MarkManagerTest, TheTargetFollowsItsMark) {
    const COverlayMark& mark = addHarbour();
    const COverlayMark& other = manager.add({1, 2}, QStringLiteral("other"));
    manager.setTarget(mark);
    EXPECT_TRUE(manager.isTarget(mark));
    EXPECT_FALSE(manager.isTarget(other));
    publish(0, -100);
    manager.rename(mark, QStringLiteral("Home"));
    EXPECT_EQ(manager.target().name.toStdString(), "Home");
    EXPECT_EQ(navigation.records.back().targetName.toStdString(), "Home");
    EXPECT_EQ(manager.navigation()->targetName.toStdString(), "Home");
    manager.remove(other);
    EXPECT_TRUE(manager.hasTarget());
    manager.remove(mark);
    EXPECT_FALSE(manager.hasTarget());
    EXPECT_EQ(manager.navigation(), nullptr);

    aim();
    manager.clear();
    EXPECT_FALSE(manager.hasTarget());
}

TEST_F(MarkManagerTest, AMarkOnTheEquatorCanBeTheTarget) {
    manager.setTarget(manager.add({0, 10}, QStringLiteral("Line")));
    EXPECT_TRUE(manager.hasTarget());
    publishAt({-0.001, 10});
    EXPECT_NEAR(manager.navigation()->distance, 110.57, 0.01);
}

TEST_F(MarkManagerTest, TheWayAcrossTheDateLineIsTheShortOne) {
    manager.setTarget(manager.add({0.5, -179.99}, QStringLiteral("Beyond")));
    publishAt({0.5, 179.99});
    EXPECT_NEAR(manager.navigation()->distance, 2226, 1);
    EXPECT_NEAR(manager.navigation()->bearing, 90, 0.001);
}

TEST_F(MarkManagerTest, PositionsThatAreNowhereDoNoHarm) {
    aim();
    publish(0, -100);
    const std::size_t before = navigation.records.size();
    for (const GeoPosition& nowhere :
         {GeoPosition{kNoNumber, 0}, GeoPosition{0, kInfinity}, GeoPosition{-kInfinity, 0}}) {
        publishAt(nowhere);
        EXPECT_NE(manager.currentPosition(), nowhere);
    }
    publishAt({1e300, 0});
    publishAt({1e30, 1e30});
    EXPECT_EQ(navigation.records.size(), before);
    for (const GeoPosition& odd : {GeoPosition{95, 0}, GeoPosition{-200, 4000}}) {
        publishAt(odd);
        EXPECT_TRUE(std::isfinite(manager.navigation()->distance));
        EXPECT_TRUE(std::isfinite(manager.navigation()->crossTrack));
    }
}

} // namespace
} // namespace raincast
