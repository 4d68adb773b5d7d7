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
    void TearDown() override { CPositionSource::choose(QString()); }

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
            RegistryStore::Branch::User,
            QStringLiteral("Software/Quorvane/Raincast_1/CPositionSource"),
            QStringLiteral("position_source")
        );
        return value ? value->toStdString() : "(none)";
    }

    QTemporaryDir folder;
};

TEST_F(PositionSourceSettingTest, WithoutAChoiceThereIsNone) {
    load();
    EXPECT_TRUE(CPositionSource::text().isEmpty());
    QString error;
    EXPECT_FALSE(CPositionSource::address(&error));
    EXPECT_TRUE(error.isEmpty());
}

TEST_F(PositionSourceSettingTest, TheChoiceIsKept) {
    CPositionSource::choose(QStringLiteral("udp:10110"));
    save();
    EXPECT_EQ(saved(), "udp:10110");
    CPositionSource::choose(QString());
    load();
    EXPECT_EQ(CPositionSource::address()->port, 10110);
}

TEST_F(PositionSourceSettingTest, ASourceForThisRunIsNeverSaved) {
    CPositionSource::choose(QStringLiteral("udp:10110"));
    CPositionSource::useForThisRun(QStringLiteral("gpsd:"));
    EXPECT_EQ(CPositionSource::address()->kind, PositionSourceAddress::Kind::Gpsd);
    save();
    EXPECT_EQ(saved(), "udp:10110");
    load();
    EXPECT_EQ(CPositionSource::text(), QStringLiteral("gpsd:")) << "whenever it was given";

    CPositionSource::choose(QStringLiteral("udp:10111"));
    EXPECT_EQ(CPositionSource::address()->port, 10111);
    save();
    EXPECT_EQ(saved(), "udp:10111");
}

TEST_F(PositionSourceSettingTest, ATextThatMakesNoSenseIsSaid) {
    CPositionSource::choose(QStringLiteral("udp:x"));
    QString error;
    EXPECT_FALSE(CPositionSource::address(&error));
    EXPECT_EQ(
        error.toStdString(),
        "\"udp:x\" is no source of positions: the port \"x\" is not a number from 1 to 65535"
    );
}

TEST_F(PositionSourceSettingTest, TheReceiverReadsWhatIsChosen) {
    FakeSource::reset();
    ManualTimers timers;
    PositionReceiver receiver(timers, FakeSource::make);
    CPositionSource::useForThisRun(QStringLiteral("gpsd:"));
    EXPECT_TRUE(CPositionSource::isForThisRun());
    CPositionSource::setReceiver(&receiver);
    EXPECT_EQ(CPositionSource::receiver(), &receiver);
    EXPECT_EQ(FakeSource::opens, 0) << "not before it is told to";
    CPositionSource::apply();
    EXPECT_EQ(receiver.address(), PositionSourceAddress::parse(QStringLiteral("gpsd:")));

    CPositionSource::choose(QStringLiteral("udp:10110"));
    EXPECT_FALSE(CPositionSource::isForThisRun());
    EXPECT_EQ(receiver.address()->port, 10110);
    EXPECT_EQ(FakeSource::opens, 2);

    CPositionSource::choose(QStringLiteral("udp:10110"));
    CPositionSource::apply();
    EXPECT_EQ(FakeSource::opens, 2) << "what is read already is not disturbed";

    CPositionSource::choose(QStringLiteral("nonsense"));
    EXPECT_EQ(receiver.state(), PositionReceiver::State::Off);

    CPositionSource::setReceiver(nullptr);
    CPositionSource::choose(QStringLiteral("udp:10111"));
    EXPECT_EQ(receiver.state(), PositionReceiver::State::Off);
}

} // namespace
} // namespace raincast
