// SPDX-License-Identifier: MIT
#include "persist/registry_store.h"
#include "support/full_disk.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace raincast {
namespace {

using Branch = RegistryStore::Branch;

const QString kKey = QStringLiteral("Software/Quorvane");
const QString kName = QStringLiteral("name");

class RegistryStoreTest : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(m_folder.isValid()); }

    QString machineFile() const {
        return m_folder.filePath(QStringLiteral("machine/registry.json"));
    }
    QString userFile() const { return m_folder.filePath(QStringLiteral("user/registry.json")); }
    RegistryStore open() const { return {machineFile(), userFile()}; }

    static void put(const QString& path, const QByteArray& bytes) {
        ASSERT_TRUE(QDir().mkpath(QFileInfo(path).path()));
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(bytes), bytes.size());
    }
    static QByteArray get(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    /// A user's file with one entry, kName, under kKey.
    void putEntry(const QByteArray& entry) const {
        put(userFile(), "{\"Software/Quorvane\":{\"name\":" + entry + "}}");
    }

    QTemporaryDir m_folder;
};

TEST_F(RegistryStoreTest, WithoutFilesNothingIsThereAndNothingIsCreated) {
    const RegistryStore store = open();
    for (const Branch branch : {Branch::machine, Branch::user}) {
        EXPECT_EQ(store.dword(branch, kKey, kName), std::nullopt);
        EXPECT_EQ(store.binary(branch, kKey, kName), std::nullopt);
        EXPECT_EQ(store.string(branch, kKey, kName), std::nullopt);
    }
    EXPECT_FALSE(QFileInfo::exists(m_folder.filePath(QStringLiteral("user"))));
}

TEST_F(RegistryStoreTest, ReadsEachType) {
    put(userFile(), R"({
        "Software/Quorvane/Raincast_1/CDefaultUnits": {
            "units": {"type": "dword", "value": 4294967295},
            "data": {"type": "binary", "value": "00ff7Fa0"},
            "posnfmt": {"type": "string", "value": "Deg,Min \u00b0"}
        },
        "Software/Quorvane": {"temp_folder": {"type": "string", "value": "/tmp"}}
    })");
    const RegistryStore store = open();
    const QString units = QStringLiteral("Software/Quorvane/Raincast_1/CDefaultUnits");
    EXPECT_EQ(store.dword(Branch::user, units, QStringLiteral("units")), 0xFFFFFFFFU);
    EXPECT_EQ(
        store.binary(Branch::user, units, QStringLiteral("data")), QByteArray("\x00\xFF\x7F\xA0", 4)
    );
    EXPECT_EQ(
        store.string(Branch::user, units, QStringLiteral("posnfmt")),
        QStringLiteral("Deg,Min \u00B0")
    );
    EXPECT_EQ(
        store.string(Branch::user, kKey, QStringLiteral("temp_folder")), QStringLiteral("/tmp")
    );
    EXPECT_EQ(store.string(Branch::machine, kKey, QStringLiteral("temp_folder")), std::nullopt);
}

TEST_F(RegistryStoreTest, WritesWhatItReads) {
    RegistryStore store = open();
    store.setDword(Branch::user, kKey, QStringLiteral("d"), 0x89ABCDEF);
    store.setBinary(Branch::user, kKey, QStringLiteral("b"), QByteArray("\x00\xFE", 2));
    store.setString(Branch::user, kKey, QStringLiteral("s"), QStringLiteral("a\u20AC"));
    store.addKey(Branch::user, QStringLiteral("Software/Quorvane/Empty"));
    EXPECT_EQ(store.dword(Branch::user, kKey, QStringLiteral("d")), 0x89ABCDEFU);
    ASSERT_TRUE(store.save(Branch::user));
    EXPECT_EQ(QJsonDocument::fromJson(get(userFile())), QJsonDocument::fromJson(R"({
            "Software/Quorvane": {
                "b": {"type": "binary", "value": "00fe"},
                "d": {"type": "dword", "value": 2309737967},
                "s": {"type": "string", "value": "a\u20ac"}
            },
            "Software/Quorvane/Empty": {}
        })"));
    const RegistryStore again = open();
    EXPECT_EQ(again.dword(Branch::user, kKey, QStringLiteral("d")), 0x89ABCDEFU);
    EXPECT_EQ(again.binary(Branch::user, kKey, QStringLiteral("b")), QByteArray("\x00\xFE", 2));
    EXPECT_EQ(again.string(Branch::user, kKey, QStringLiteral("s")), QStringLiteral("a\u20AC"));
    EXPECT_FALSE(QFileInfo::exists(machineFile()));
}

struct Entry {
    const char* json;
    bool dword;
    bool binary;
    bool string;
};

TEST_F(RegistryStoreTest, AnEntryOfAnotherTypeOrFormIsNotThere) {
    const Entry entries[] = {
        {R"({"type":"dword","value":7})", true, false, false},
        {R"({"type":"dword","value":0})", true, false, false},
        {R"({"type":"dword","value":4294967296})", false, false, false},
        {R"({"type":"dword","value":-1})", false, false, false},
        {R"({"type":"dword","value":1.5})", false, false, false},
        {R"({"type":"dword","value":1e300})", false, false, false},
        {R"({"type":"dword","value":99999999999999999999999})", false, false, false},
        {R"({"type":"dword","value":"7"})", false, false, false},
        {R"({"type":"dword","value":null})", false, false, false},
        {R"({"type":"dword","value":[7]})", false, false, false},
        {R"({"type":"dword"})", false, false, false},
        {R"({"type":"binary","value":""})", false, true, false},
        {R"({"type":"binary","value":"0f"})", false, true, false},
        {R"({"type":"binary","value":"0"})", false, false, false},
        {R"({"type":"binary","value":"0g"})", false, false, false},
        {R"({"type":"binary","value":"0 1 "})", false, false, false},
        {R"({"type":"binary","value":12})", false, false, false},
        {R"({"type":"string","value":""})", false, false, true},
        {R"({"type":"string","value":"7"})", false, false, true},
        {R"({"type":"string","value":7})", false, false, false},
        {R"({"type":"string","value":{"value":"a"}})", false, false, false},
        {R"({"type":"float","value":7})", false, false, false},
        {R"({"type":7,"value":7})", false, false, false},
        {R"({"value":7})", false, false, false},
        {"7", false, false, false},
        {"\"7\"", false, false, false},
        {"null", false, false, false},
        {"[]", false, false, false},
    };
    for (const Entry& entry : entries) {
        putEntry(entry.json);
        const RegistryStore store = open();
        EXPECT_EQ(store.dword(Branch::user, kKey, kName).has_value(), entry.dword) << entry.json;
        EXPECT_EQ(store.binary(Branch::user, kKey, kName).has_value(), entry.binary) << entry.json;
        EXPECT_EQ(store.string(Branch::user, kKey, kName).has_value(), entry.string) << entry.json;
    }
}

TEST_F(RegistryStoreTest, AKeyThatIsNoObjectHasNoValuesAndIsReplacedWhenWritten) {
    put(userFile(), R"({"Software/Quorvane": 7, "other": [1, {"x": null}]})");
    RegistryStore store = open();
    EXPECT_EQ(store.dword(Branch::user, kKey, kName), std::nullopt);
    store.setDword(Branch::user, kKey, kName, 1);
    ASSERT_TRUE(store.save(Branch::user));
    EXPECT_EQ(
        QJsonDocument::fromJson(get(userFile())),
        QJsonDocument::fromJson(
            R"({"Software/Quorvane": {"name": {"type": "dword", "value": 1}}, "other": [1, {"x": null}]})"
        )
    );
}

TEST_F(RegistryStoreTest, TextEndsAtItsTerminator) {
    putEntry(R"({"type":"string","value":"ab\u0000cd"})");
    EXPECT_EQ(open().string(Branch::user, kKey, kName), QStringLiteral("ab"));
}

TEST_F(RegistryStoreTest, ASaveKeepsWhatOthersWroteMeanwhile) {
    putEntry(R"({"type":"dword","value":1})");
    RegistryStore store = open();
    store.setDword(Branch::user, kKey, kName, 2);
    put(userFile(), R"({
        "Software/Quorvane": {
            "name": {"type": "dword", "value": 9},
            "later": {"type": "qword", "value": 9007199254740993}
        },
        "Software/Other": {"x": 0.1}
    })");
    ASSERT_TRUE(store.save(Branch::user));
    EXPECT_EQ(QJsonDocument::fromJson(get(userFile())), QJsonDocument::fromJson(R"({
            "Software/Quorvane": {
                "name": {"type": "dword", "value": 2},
                "later": {"type": "qword", "value": 9007199254740993}
            },
            "Software/Other": {"x": 0.1}
        })"));
    EXPECT_TRUE(get(userFile()).contains("9007199254740993"));
    // The store knows them now, and saves no change twice.
    put(userFile(), "{}");
    ASSERT_TRUE(store.save(Branch::user));
    EXPECT_EQ(get(userFile()), "{}");
}

TEST_F(RegistryStoreTest, AFileThatHasTheChangesAlreadyIsNotTouched) {
    const QByteArray byHand = R"({ "Software/Quorvane":{"name":{"value":1,"type":"dword"}} })";
    put(userFile(), byHand);
    RegistryStore store = open();
    store.setDword(Branch::user, kKey, kName, 1);
    store.addKey(Branch::user, kKey);
    EXPECT_TRUE(store.save(Branch::user));
    EXPECT_EQ(get(userFile()), byHand);
}

TEST_F(RegistryStoreTest, ASaveThatFailsLeavesTheFileAndTheChanges) {
    putEntry(R"({"type":"dword","value":1})");
    const QByteArray before = get(userFile());
    RegistryStore store = open();
    store.setString(Branch::user, kKey, kName, QString(100, u'x'));
    {
        const FullDisk disk(50);
        const auto saved = store.save(Branch::user);
        ASSERT_FALSE(saved);
        EXPECT_EQ(saved.error(), "File too large");
    }
    EXPECT_EQ(get(userFile()), before);
    EXPECT_TRUE(store.save(Branch::user));
    EXPECT_EQ(open().string(Branch::user, kKey, kName), QString(100, u'x'));
}

TEST_F(RegistryStoreTest, AFolderThatCannotBeMadeFailsTheSave) {
    put(m_folder.filePath(QStringLiteral("machine")), "a file where the folder should be");
    RegistryStore store = open();
    store.setDword(Branch::machine, kKey, kName, 1);
    const auto saved = store.save(Branch::machine);
    ASSERT_FALSE(saved);
    EXPECT_EQ(saved.error(), "Not a directory");
    EXPECT_EQ(store.path(Branch::machine), machineFile());
    EXPECT_EQ(store.path(Branch::user), userFile());
    store.moveMachineChangesToUser();
    EXPECT_EQ(store.dword(Branch::user, kKey, kName), 1U);
    EXPECT_TRUE(store.save(Branch::user));
    EXPECT_EQ(open().dword(Branch::user, kKey, kName), 1U);
}

TEST_F(RegistryStoreTest, ADamagedFileIsSetAsideAndSaidOnce) {
    const QByteArray damaged[] = {
        "",
        "{\"Software/Quorvane\":{\"na",
        "[]",
        "7",
        "\xFF\xFE{}",
        "{\"a\":1e999999}",
        QByteArray(4096, '\0'),
        QByteArray(1'000'000, '['),
        QByteArray("{\"a\":").repeated(100'000),
        QByteArray(RegistryStore::kMaxSize, ' ') + "{}",
    };
    for (const QByteArray& bytes : damaged) {
        put(userFile(), bytes);
        testing::internal::CaptureStderr();
        RegistryStore store = open();
        EXPECT_EQ(store.dword(Branch::user, kKey, kName), std::nullopt);
        EXPECT_FALSE(QFileInfo::exists(userFile()));
        EXPECT_EQ(get(userFile() + QStringLiteral(".bad")), bytes);
        put(userFile(), bytes);
        store.setDword(Branch::user, kKey, kName, 3);
        EXPECT_TRUE(store.save(Branch::user));
        const QByteArray said(testing::internal::GetCapturedStderr().c_str());
        EXPECT_EQ(said.count('\n'), 1) << said.constData();
        EXPECT_TRUE(said.contains(userFile().toUtf8() + ".bad")) << said.constData();
        EXPECT_EQ(open().dword(Branch::user, kKey, kName), 3U);
    }
}

TEST_F(RegistryStoreTest, WhatIsNoFileIsNeitherReadNorReplaced) {
    ASSERT_TRUE(QDir().mkpath(QFileInfo(userFile()).path()));
    ASSERT_EQ(mkfifo(qPrintable(userFile()), 0600), 0);
    RegistryStore store = open();
    store.setDword(Branch::user, kKey, kName, 3);
    const auto saved = store.save(Branch::user);
    ASSERT_FALSE(saved);
    EXPECT_EQ(saved.error(), "Not a regular file");
    struct stat status {};
    ASSERT_EQ(stat(qPrintable(userFile()), &status), 0);
    EXPECT_TRUE(S_ISFIFO(status.st_mode));
}

TEST_F(RegistryStoreTest, TheClassesRootAsksTheUserBeforeTheMachine) {
    put(machineFile(), R"({
        "Software/Classes/QVNavObj/Shell/Open/Command": {"": {"type": "string", "value": "machine"}},
        "Software/Classes/Both": {"": {"type": "string", "value": "machine"}}
    })");
    put(userFile(), R"({"Software/Classes/Both": {"": {"type": "string", "value": "user"}}})");
    const RegistryStore store = open();
    EXPECT_EQ(
        store.classesString(QStringLiteral("QVNavObj/Shell/Open/Command"), QString()),
        QStringLiteral("machine")
    );
    EXPECT_EQ(store.classesString(QStringLiteral("Both"), QString()), QStringLiteral("user"));
    EXPECT_EQ(store.classesString(QStringLiteral("None"), QString()), std::nullopt);
}

/// Folders of its own in the place of the standard ones: the user's is "home", the machine's are
/// "first", "second" and "third".
class StandardFoldersTest : public RegistryStoreTest {
protected:
    StandardFoldersTest() {
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_folder.filePath("home")));
        QByteArrayList folders;
        for (const char* name : {"first", "second", "third"}) {
            folders.append(QFile::encodeName(m_folder.filePath(name)));
        }
        qputenv("XDG_CONFIG_DIRS", folders.join(':'));
    }
    ~StandardFoldersTest() override {
        m_user.isNull() ? qunsetenv("XDG_CONFIG_HOME") : qputenv("XDG_CONFIG_HOME", m_user);
        m_machine.isNull() ? qunsetenv("XDG_CONFIG_DIRS") : qputenv("XDG_CONFIG_DIRS", m_machine);
    }

    QString fileIn(const char* folder) const {
        return m_folder.filePath(QString::fromLatin1(folder) + "/Quorvane/registry.json");
    }
    void putNumber(const char* folder, int number) const {
        put(fileIn(folder), "{\"Software/Quorvane\":{\"name\":{\"type\":\"dword\",\"value\":" +
                                QByteArray::number(number) + "}}}");
    }
    static std::optional<std::uint32_t> machineNumber() {
        return RegistryStore::inStandardFolders().dword(Branch::machine, kKey, kName);
    }

private:
    const QByteArray m_user = qgetenv("XDG_CONFIG_HOME");
    const QByteArray m_machine = qgetenv("XDG_CONFIG_DIRS");
};

TEST_F(StandardFoldersTest, TheMachinesFileIsTheFirstThatExists) {
    EXPECT_EQ(machineNumber(), std::nullopt);
    putNumber("third", 3);
    EXPECT_EQ(machineNumber(), 3U);
    putNumber("second", 2);
    EXPECT_EQ(machineNumber(), 2U);
    putNumber("first", 1);
    EXPECT_EQ(machineNumber(), 1U);
    putNumber("home", 0);
    EXPECT_EQ(machineNumber(), 1U);
}

TEST_F(StandardFoldersTest, TheFirstThatExistsCountsAlone) {
    putNumber("third", 3);
    put(fileIn("second"), "{}");
    EXPECT_EQ(machineNumber(), std::nullopt);
}

TEST_F(StandardFoldersTest, TheMachinesFileIsChangedWhereItIs) {
    putNumber("second", 2);
    RegistryStore store = RegistryStore::inStandardFolders();
    store.setDword(Branch::machine, kKey, kName, 7);
    EXPECT_TRUE(store.save(Branch::machine));
    EXPECT_FALSE(QFileInfo::exists(fileIn("first")));
    EXPECT_EQ(machineNumber(), 7U);
}

TEST_F(StandardFoldersTest, AreThoseOfTheEnvironment) {
    RegistryStore store = RegistryStore::inStandardFolders();
    store.setDword(Branch::machine, kKey, kName, 1);
    store.setDword(Branch::user, kKey, kName, 2);
    EXPECT_TRUE(store.save(Branch::machine));
    EXPECT_TRUE(store.save(Branch::user));
    EXPECT_TRUE(QFileInfo::exists(fileIn("first")));
    EXPECT_TRUE(QFileInfo::exists(fileIn("home")));
}

} // namespace
} // namespace raincast
