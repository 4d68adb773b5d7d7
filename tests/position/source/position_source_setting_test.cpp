// SPDX-License-Identifier: MIT
#include "persist/persistant_data.h"
#include "persist/registry_store.h"
#include "position/position_receiver.h"
#include "position/source/position_source_setting.h"
#include "support/fake_source.h"
#include "support/manual_timers.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace raincast {
namespace {

class PositionSourceSettingTest : public testing::Test {
protected:
    void TearDown() override { PositionSourceSetting::choose(QString()); }

    RegistryStore store() const {
        return {
            folder.filePath(QStringLiteral("machine.json")),
            folder.filePath(QStringLiteral("user.json"))};
    }
    void save() const {
        RegistryStore registry = store();
        ASSERT_TRUE(PersistantData::saveAll(registry, QStringLiteral("Raincast_1")));
    }
    void load() const {
        RegistryStore registry = store();
        PersistantData::loadAll(registry, QStringLiteral("Raincast_1"));
    }
    std::string saved() const {
        const auto value = store().string(
            RegistryStore::Branch::user,
            QStringLiteral("Software/Quorvane/Raincast_1/CPositionSource"),
            QStringLiteral("position_source")
        );
        return value ? value->toStdString() : "(none)";
    }

    QTemporaryDir folder;
};

TEST_F(PositionSourceSettingTest, WithoutAChoiceThereIsNone) {
    load();
    EXPECT_TRUE(PositionSourceSetting::text().isEmpty());
    const auto address = PositionSourceSetting::address();
    ASSERT_TRUE(address);
    EXPECT_FALSE(*address);
}

TEST_F(PositionSourceSettingTest, TheChoiceIsKept) {
    PositionSourceSetting::choose(QStringLiteral("udp:10110"));
    save();
    EXPECT_EQ(saved(), "udp:10110");
    PositionSourceSetting::choose(QString());
    load();
    EXPECT_EQ(PositionSourceSetting::address().value()->port, 10110);
}

TEST_F(PositionSourceSettingTest, ASourceForThisRunIsNeverSaved) {
    PositionSourceSetting::choose(QStringLiteral("udp:10110"));
    PositionSourceSetting::useForThisRun(QStringLiteral("gpsd:"));
    EXPECT_EQ(PositionSourceSetting::address().value()->kind, PositionSourceAddress::Kind::gpsd);
    save();
    EXPECT_EQ(saved(), "udp:10110");
    load();
    EXPECT_EQ(PositionSourceSetting::text(), QStringLiteral("gpsd:")) << "whenever it was given";

    PositionSourceSetting::choose(QStringLiteral("udp:10111"));
    EXPECT_EQ(PositionSourceSetting::address().value()->port, 10111);
    save();
    EXPECT_EQ(saved(), "udp:10111");
}

TEST_F(PositionSourceSettingTest, ATextThatMakesNoSenseIsSaid) {
    PositionSourceSetting::choose(QStringLiteral("udp:x"));
    const auto address = PositionSourceSetting::address();
    ASSERT_FALSE(address);
    EXPECT_EQ(
        address.error().toStdString(),
        "\"udp:x\" is not a source of positions: the port \"x\" is not a number from 1 to 65535"
    );
}

TEST_F(PositionSourceSettingTest, TheReceiverReadsWhatIsChosen) {
    FakeSource::reset();
    ManualTimers timers;
    PositionReceiver receiver(timers, FakeSource::make);
    PositionSourceSetting::useForThisRun(QStringLiteral("gpsd:"));
    EXPECT_TRUE(PositionSourceSetting::isForThisRun());
    EXPECT_EQ(FakeSource::opens, 0) << "not before it is applied";
    PositionSourceSetting::apply(receiver);
    EXPECT_EQ(receiver.address(), *PositionSourceAddress::parse(QStringLiteral("gpsd:")));

    PositionSourceSetting::choose(QStringLiteral("udp:10110"));
    PositionSourceSetting::apply(receiver);
    EXPECT_FALSE(PositionSourceSetting::isForThisRun());
    EXPECT_EQ(receiver.address()->port, 10110);
    EXPECT_EQ(FakeSource::opens, 2);

    PositionSourceSetting::choose(QStringLiteral("udp:10110"));
    PositionSourceSetting::apply(receiver);
    EXPECT_EQ(FakeSource::opens, 2) << "what is read already is not disturbed";

    PositionSourceSetting::choose(QStringLiteral("nonsense"));
    PositionSourceSetting::apply(receiver);
    EXPECT_EQ(receiver.state(), PositionReceiver::State::off);
}

} // namespace
} // namespace raincast
