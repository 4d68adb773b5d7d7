// SPDX-License-Identifier: MIT
#include "persist/persistant_data.h"
#include "persist/registry_store.h"
#include "reading_state.h"
#include "support/files.h"

#include <QTemporaryDir>

namespace raincast {
namespace {

class ReadingSettingTest : public test::ReadingState {
protected:
    [[nodiscard]] RegistryStore store() const {
        return {m_folder.filePath("machine.json"), m_folder.filePath("user.json")};
    }
    void save() const {
        RegistryStore saved = store();
        EXPECT_TRUE(PersistantData::saveAll(saved, QStringLiteral("Test")));
    }
    void load() const {
        RegistryStore loaded = store();
        PersistantData::loadAll(loaded, QStringLiteral("Test"));
    }

    QTemporaryDir m_folder;
};

TEST_F(ReadingSettingTest, AtFirstTheScaleIsShownWhereThereIsRoom) {
    load();
    EXPECT_FALSE(ReadingSetting::scaleShown(399));
    EXPECT_TRUE(ReadingSetting::scaleShown(400));
    EXPECT_EQ(ReadingSetting::rings(), ReadingSetting::kNoRings);
}

TEST_F(ReadingSettingTest, TheChoiceIsKept) {
    for (const bool wanted : {true, false}) {
        ReadingSetting::showScale(wanted);
        ReadingSetting::showRings(ReadingSetting::kRingsRoundPosition);
        save();
        ReadingSetting::showScale(!wanted);
        ReadingSetting::showRings(ReadingSetting::kNoRings);
        load();
        EXPECT_EQ(ReadingSetting::scaleShown(100), wanted);
        EXPECT_EQ(ReadingSetting::scaleShown(1000), wanted);
        EXPECT_EQ(ReadingSetting::rings(), ReadingSetting::kRingsRoundPosition);
    }
}

} // namespace
} // namespace raincast
