// SPDX-License-Identifier: MIT
#include "persist/persistant_data.h"
#include "persist/registry_store.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <vector>

namespace raincast {
namespace {

using Branch = RegistryStore::Branch;
using Block = std::array<std::uint8_t, 8>;

std::vector<QString> exchanged;

struct Units : PersistantData {
    Units() : PersistantData("CUnitsTest") {}
    void exchange(SettingsExchange& values) override {
        exchanged.push_back(QStringLiteral("units"));
        values.dword("units", units);
        values.binary("data", data);
        values.binary("scale", scale);
        values.string("posnfmt", format);
    }
    std::uint32_t units = 0;
    Block data{};
    float scale = 0;
    QString format;
};

struct Installation : PersistantData {
    Installation() : PersistantData("CInstallationTest") {}
    void exchange(SettingsExchange& values) override {
        exchanged.push_back(QStringLiteral("installation"));
        values.string("server", server, true);
    }
    QString server;
};

Units units;
Installation installation;

const QString kApplication = QStringLiteral("Test_1");
const QString kRoot = QStringLiteral("Software/Quorvane/Test_1");
const QString kUnitsKey = QStringLiteral("Software/Quorvane/Test_1/CUnitsTest");
const QString kInstallationKey = QStringLiteral("Software/Quorvane/Test_1/CInstallationTest");
const QString kUnits = QStringLiteral("units");
const QString kData = QStringLiteral("data");
const QString kScale = QStringLiteral("scale");
const QString kFormat = QStringLiteral("posnfmt");
const QString kServer = QStringLiteral("server");

class PersistantDataTest : public testing::Test {
protected:
    void SetUp() override {
        units.units = 5;
        units.data = {1, 2, 3, 4, 5, 6, 7, 8};
        units.scale = 2.5F;
        units.format = QStringLiteral("Deg");
        installation.server = QStringLiteral("s");
        exchanged.clear();
    }
    QString machineFile() const { return m_folder.filePath(QStringLiteral("machine.json")); }
    QString userFile() const { return m_folder.filePath(QStringLiteral("user.json")); }
    void load() { PersistantData::loadAll(m_store, kApplication); }
    bool save() { return PersistantData::saveAll(m_store, kApplication).has_value(); }
    static QJsonDocument json(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll())
                                              : QJsonDocument();
    }

    QTemporaryDir m_folder;
    RegistryStore m_store{machineFile(), userFile()};
};

TEST_F(PersistantDataTest, WithoutKeysEveryMemberKeepsItsDefault) {
    load();
    EXPECT_EQ(units.units, 5U);
    EXPECT_EQ(units.data, (Block{1, 2, 3, 4, 5, 6, 7, 8}));
    EXPECT_EQ(units.scale, 2.5F);
    EXPECT_EQ(units.format, QStringLiteral("Deg"));
    EXPECT_FALSE(QFileInfo::exists(userFile()));
}

TEST_F(PersistantDataTest, SavingCreatesTheKeysAndEveryValue) {
    EXPECT_TRUE(save());
    EXPECT_EQ(json(userFile()), QJsonDocument::fromJson(R"({
        "Software/Quorvane/Test_1": {},
        "Software/Quorvane/Test_1/CUnitsTest": {
            "units": {"type": "dword", "value": 5},
            "data": {"type": "binary", "value": "0102030405060708"},
            "scale": {"type": "binary", "value": "00002040"},
            "posnfmt": {"type": "string", "value": "Deg"}
        }
    })"));
    EXPECT_EQ(json(machineFile()), QJsonDocument::fromJson(R"({
        "Software/Quorvane/Test_1": {},
        "Software/Quorvane/Test_1/CInstallationTest": {
            "server": {"type": "string", "value": "s"}
        }
    })"));
}

TEST_F(PersistantDataTest, LoadsWhatItSaved) {
    ASSERT_TRUE(save());
    units.units = 0;
    units.data = {};
    units.scale = 0;
    units.format.clear();
    installation.server.clear();
    load();
    EXPECT_EQ(units.units, 5U);
    EXPECT_EQ(units.data, (Block{1, 2, 3, 4, 5, 6, 7, 8}));
    EXPECT_EQ(units.scale, 2.5F);
    EXPECT_EQ(units.format, QStringLiteral("Deg"));
    EXPECT_EQ(installation.server, QStringLiteral("s"));
}

TEST_F(PersistantDataTest, TheRecordConstructedLastComesFirst) {
    load();
    ASSERT_TRUE(save());
    const QString later = QStringLiteral("installation");
    const QString earlier = QStringLiteral("units");
    EXPECT_EQ(exchanged, (std::vector<QString>{later, earlier, later, earlier}));
}

TEST_F(PersistantDataTest, TheUsersValueWinsAndTheMachinesIsTheDefault) {
    m_store.setDword(Branch::machine, kUnitsKey, kUnits, 1);
    m_store.setDword(Branch::user, kUnitsKey, kUnits, 2);
    m_store.setString(Branch::machine, kUnitsKey, kFormat, QStringLiteral("Min"));
    load();
    EXPECT_EQ(units.units, 2U);
    EXPECT_EQ(units.format, QStringLiteral("Min"));
}

TEST_F(PersistantDataTest, TheBranchesOfABlockLieOverEachOther) {
    m_store.setBinary(Branch::machine, kUnitsKey, kData, QByteArray("\x0A\x0B\x0C\x0D", 4));
    m_store.setBinary(Branch::user, kUnitsKey, kData, QByteArray("\x1A\x1B", 2));
    load();
    EXPECT_EQ(units.data, (Block{0x1A, 0x1B, 0x0C, 0x0D, 5, 6, 7, 8}));
}

TEST_F(PersistantDataTest, OfALongerBlockTheFirstBytesAreTaken) {
    m_store.setBinary(Branch::user, kUnitsKey, kData, QByteArray(12, '\x09'));
    m_store.setBinary(Branch::user, kUnitsKey, kScale, QByteArray("\x00\x00\x80\x3F\xFF", 5));
    load();
    EXPECT_EQ(units.data, (Block{9, 9, 9, 9, 9, 9, 9, 9}));
    EXPECT_EQ(units.scale, 1.0F);
}

TEST_F(PersistantDataTest, AnEmptyBlockChangesNothing) {
    m_store.setBinary(Branch::user, kUnitsKey, kData, {});
    load();
    EXPECT_EQ(units.data, (Block{1, 2, 3, 4, 5, 6, 7, 8}));
}

TEST_F(PersistantDataTest, AnEmptyTextIsAValue) {
    m_store.setString(Branch::user, kUnitsKey, kFormat, {});
    load();
    EXPECT_EQ(units.format, QString());
}

TEST_F(PersistantDataTest, AValueOfAnotherTypeChangesNothing) {
    m_store.setBinary(Branch::user, kUnitsKey, kUnits, QByteArray(4, '\1'));
    m_store.setBinary(Branch::user, kUnitsKey, kFormat, QByteArray("A\0\0\0", 4));
    m_store.setDword(Branch::user, kUnitsKey, kScale, 3);
    m_store.setString(Branch::user, kUnitsKey, kData, QStringLiteral("0102"));
    load();
    EXPECT_EQ(units.units, 5U);
    EXPECT_EQ(units.data, (Block{1, 2, 3, 4, 5, 6, 7, 8}));
    EXPECT_EQ(units.scale, 2.5F);
    EXPECT_EQ(units.format, QStringLiteral("Deg"));
}

TEST_F(PersistantDataTest, ANumberOfMoreThanFourBytesChangesNothing) {
    m_store.setBinary(Branch::user, kUnitsKey, kUnits, QByteArray(8, '\1'));
    load();
    EXPECT_EQ(units.units, 5U);

    QFile file(userFile());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(
        R"({"Software/Quorvane/Test_1/CUnitsTest": {"units": {"type": "dword", "value": 4294967296}}})"
    );
    file.close();
    RegistryStore store(machineFile(), userFile());
    PersistantData::loadAll(store, kApplication);
    EXPECT_EQ(units.units, 5U);
}

TEST_F(PersistantDataTest, WhatTheMachineBranchRefusesGoesToTheUsers) {
    RegistryStore store(m_folder.path(), userFile()); // a folder is no file to write
    EXPECT_TRUE(PersistantData::saveAll(store, kApplication));
    EXPECT_EQ(store.string(Branch::user, kInstallationKey, kServer), QStringLiteral("s"));
    const RegistryStore again(m_folder.path(), userFile());
    EXPECT_EQ(again.string(Branch::user, kInstallationKey, kServer), QStringLiteral("s"));
}

TEST_F(PersistantDataTest, AUserBranchThatCannotBeWrittenIsReported) {
    RegistryStore store(machineFile(), m_folder.path());
    EXPECT_FALSE(PersistantData::saveAll(store, kApplication));
}

struct WithOption : PersistantData {
    explicit WithOption(const char* name) : PersistantData(name) {}
    void exchange(SettingsExchange& values) override {
        values.string("config_file", file);
        values.dword("other", other);
        loading = values.loading();
    }
    QString file = QStringLiteral("/a");
    std::uint32_t other = 1;
    bool loading = false;
};

TEST_F(PersistantDataTest, AValueSetForThisRunIsNotSaved) {
    WithOption record("CWithOptionTest");
    const QString key = kRoot + QStringLiteral("/CWithOptionTest");
    const QString name = QStringLiteral("config_file");
    m_store.setString(Branch::user, key, name, QStringLiteral("/stored"));
    load();
    EXPECT_TRUE(record.loading);
    EXPECT_EQ(record.file, QStringLiteral("/stored"));
    record.setForThisRun("config_file", record.file, QStringLiteral("/from the command line"));
    EXPECT_EQ(record.file, QStringLiteral("/from the command line"));
    record.other = 2;
    ASSERT_TRUE(save());
    EXPECT_FALSE(record.loading);
    const RegistryStore again(machineFile(), userFile());
    EXPECT_EQ(again.string(Branch::user, key, name), QStringLiteral("/stored"));
    EXPECT_EQ(again.dword(Branch::user, key, QStringLiteral("other")), 2U);
}

TEST_F(PersistantDataTest, WhatIsSetForARunEndsWithIt) {
    WithOption record("CEndOfRunTest");
    const QString key = kRoot + QStringLiteral("/CEndOfRunTest");
    const QString name = QStringLiteral("config_file");
    load();
    record.setForThisRun("config_file", record.file, QStringLiteral("/from the command line"));
    record.setForThisRun("config_file", record.file, QStringLiteral("/and another"));
    ASSERT_TRUE(save());
    EXPECT_FALSE(m_store.string(Branch::user, key, name));

    load(); // the next run
    EXPECT_EQ(record.file, QStringLiteral("/a"));
    record.file = QStringLiteral("/chosen");
    ASSERT_TRUE(save());
    EXPECT_EQ(m_store.string(Branch::user, key, name), QStringLiteral("/chosen"));
}

TEST_F(PersistantDataTest, ARecordThatIsGoneIsNeitherLoadedNorSaved) {
    const QString key = kRoot + QStringLiteral("/CWithOptionTest");
    {
        const auto first = std::make_unique<WithOption>("CWithOptionTest");
        auto second = std::make_unique<WithOption>("CWithOptionTest");
        const WithOption third("CWithOptionTest");
        second.reset(); // from the middle of the list
        load();
        EXPECT_TRUE(first->loading);
        EXPECT_TRUE(third.loading);
    }
    load();
    ASSERT_TRUE(save());
    const RegistryStore again(machineFile(), userFile());
    EXPECT_EQ(again.dword(Branch::user, key, QStringLiteral("other")), std::nullopt);
    EXPECT_EQ(again.dword(Branch::user, kUnitsKey, kUnits), 5U) << "the others are there";
}

} // namespace
} // namespace raincast
