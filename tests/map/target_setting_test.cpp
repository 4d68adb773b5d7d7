// SPDX-License-Identifier: MIT
#include "map/mark_manager.h"
#include "map/target_setting.h"
#include "persist/registry_store.h"
#include "position/data_gps_position.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <limits>

namespace raincast {
namespace {

const QString kKey = QStringLiteral("Software/Quorvane/App/CMarkManager");
constexpr GeoPosition kPlace{54.5, 11.25};

/// A run of the program, with the same mark in its page file as in any other.
struct OneRun {
    CMarkManager marks;
    TargetSetting setting{marks};

    explicit OneRun(RegistryStore& store, bool withMark = true) {
        PersistantData::loadAll(store, QStringLiteral("App"));
        if (withMark) {
            marks.add({1, 2}, QStringLiteral("Other"));
            marks.add(kPlace, QStringLiteral("Harbour"));
        }
        setting.apply();
    }
    void publishAt(double latitude) {
        CDataGPSPosition position;
        position.latitude = latitude;
        position.longitude = kPlace.longitude;
        position.fixType = kFixGps;
        Listener<CDataGPSPosition>::Notify(position);
    }
    void save(RegistryStore& store) {
        EXPECT_TRUE(PersistantData::saveAll(store, QStringLiteral("App")));
    }
};

class TargetSettingTest : public testing::Test {
protected:
    /// The store as a new process finds it.
    RegistryStore store() const {
        return {folder.filePath("machine.json"), folder.filePath("user.json")};
    }
    /// A run in which the user chooses the target, and gets on the way to it.
    void choose() const {
        RegistryStore present = store();
        OneRun run(present);
        run.marks.setTarget(run.marks.marks().back());
        run.publishAt(54);
        run.save(present);
    }

    QTemporaryDir folder;
};

TEST_F(TargetSettingTest, TheNextRunHasTheTargetAndItsLine) {
    choose();
    for (int times = 0; times < 2; ++times) {
        RegistryStore present = store();
        OneRun run(present);
        ASSERT_TRUE(run.marks.hasTarget());
        EXPECT_TRUE(run.marks.isTarget(run.marks.marks().back()));
        ASSERT_TRUE(run.marks.chosenTarget()->start);
        EXPECT_NEAR(run.marks.chosenTarget()->start->northMetres, -55'600, 200);
        run.save(present);
    }
}

TEST_F(TargetSettingTest, ATargetThatIsClearedStaysCleared) {
    choose();
    {
        RegistryStore present = store();
        OneRun run(present);
        run.marks.clearTarget();
        run.save(present);
    }
    RegistryStore present = store();
    EXPECT_FALSE(OneRun(present).marks.hasTarget());
}

TEST_F(TargetSettingTest, OtherPagesWithoutTheMarkLeaveItRemembered) {
    choose();
    {
        RegistryStore present = store();
        OneRun run(present, false);
        EXPECT_FALSE(run.marks.hasTarget());
        run.save(present);
    }
    {
        RegistryStore present = store();
        EXPECT_TRUE(OneRun(present).marks.hasTarget());
    }
    {
        RegistryStore present = store();
        OneRun run(present, false);
        run.marks.setTarget(run.marks.add({5, 6}, QStringLiteral("Mine")));
        run.save(present);
    }
    RegistryStore present = store();
    EXPECT_FALSE(OneRun(present).marks.hasTarget()) << "the user has chosen another one";
}

TEST_F(TargetSettingTest, BadValuesAreIgnored) {
    choose();
    const double odd[] = {std::numeric_limits<double>::quiet_NaN(), 1e300, 91, 0, -54.5};
    for (const char* value : {"target_latitude", "target_longitude"}) {
        for (const double number : odd) {
            RegistryStore present = store();
            const auto bytes = toLittleEndian(number);
            present.setBinary(
                RegistryStore::Branch::user, kKey, QString::fromLatin1(value),
                QByteArray(reinterpret_cast<const char*>(bytes.data()), sizeof number)
            );
            EXPECT_FALSE(OneRun(present).marks.hasTarget()) << value << ' ' << number;
        }
    }
    RegistryStore present = store();
    present.setDword(RegistryStore::Branch::user, kKey, QStringLiteral("start_east"), 7);
    const OneRun run(present);
    EXPECT_TRUE(run.marks.hasTarget());
    EXPECT_FALSE(run.marks.chosenTarget()->start);
}

} // namespace
} // namespace raincast
