// SPDX-License-Identifier: MIT
// Holds the sources to the list of rooms: every folder stands in it, no room includes one that
// stands above it or beside it, no two have classes of one name, and none outgrows what one can
// keep in mind.
#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QStringList>

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>

namespace {

namespace fs = std::filesystem;

constexpr int kMostLines = 4000;
constexpr int kMostFiles = 64;

struct Room {
    QSet<QString> folders;
    QSet<QString> mayInclude;
    int lines = 0;
};

QString contentOf(const fs::path& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path;
    return QString::fromUtf8(file.readAll());
}

QSet<QString> wordsIn(const QString& text) {
    const QStringList words = text.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    return {words.begin(), words.end()};
}

/// Lines "name | folders | rooms that it may include | what it holds".
std::map<QString, Room> readRooms() {
    std::map<QString, Room> rooms;
    const QStringList lines =
        contentOf(RAINCAST_ROOMS_FILE).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (const QString& line : lines) {
        const QStringList fields = line.split(QStringLiteral(" | "));
        EXPECT_EQ(fields.size(), 4) << qPrintable(line);
        const QString name = fields.value(0).trimmed();
        rooms[name] = {wordsIn(fields.value(1)), wordsIn(fields.value(2)) + QSet{name}};
    }
    return rooms;
}

struct Source {
    fs::path path;
    QString room;
    QString folder; ///< below the room; empty in the room itself
};

std::vector<Source> sourcesBelow(const char* top) {
    const fs::path root = fs::path(RAINCAST_SOURCE_DIR) / top;
    std::vector<Source> sources;
    for (const auto& entry : fs::recursive_directory_iterator(root)) {
        const fs::path& path = entry.path();
        if (path.extension() == ".h" || path.extension() == ".cpp") {
            const fs::path folder = fs::relative(path.parent_path(), root);
            const fs::path room = *folder.begin();
            const fs::path below = fs::relative(folder, room);
            sources.push_back(
                {path, QString::fromStdString(room.string()),
                 below == "." ? QString() : QString::fromStdString(below.string())}
            );
        }
    }
    EXPECT_GT(sources.size(), 100U);
    return sources;
}

class RoomsTest : public testing::Test {
protected:
    std::map<QString, Room> rooms = readRooms();
};

TEST_F(RoomsTest, EveryFolderOfSourcesIsInTheList) {
    for (const Source& source : sourcesBelow("src")) {
        const auto room = rooms.find(source.room);
        ASSERT_NE(room, rooms.end()) << source.path << " is in no room";
        EXPECT_TRUE(source.folder.isEmpty() || room->second.folders.contains(source.folder))
            << source.path << " is in a folder that its room does not have";
    }
}

TEST_F(RoomsTest, TestsStandInTheSameFolders) {
    for (const Source& source : sourcesBelow("tests")) {
        const auto room = rooms.find(source.room);
        if (room != rooms.end()) {
            EXPECT_TRUE(source.folder.isEmpty() || room->second.folders.contains(source.folder))
                << source.path;
        }
    }
}

TEST_F(RoomsTest, NoRoomIncludesWhatItMayNot) {
    static const QRegularExpression include(QStringLiteral("#include \"([a-z_]+)/"));
    int seen = 0;
    for (const Source& source : sourcesBelow("src")) {
        for (const auto& match : include.globalMatch(contentOf(source.path))) {
            ++seen;
            EXPECT_TRUE(rooms[source.room].mayInclude.contains(match.captured(1)))
                << source.path << " includes " << qPrintable(match.captured(1));
        }
    }
    EXPECT_GT(seen, 1000);
}

// A program has several rooms: of two classes of one name the linker would take the functions of
// either for both.
TEST_F(RoomsTest, NoNameIsThatOfTwoClasses) {
    static const QRegularExpression definition(
        QStringLiteral("^(?:class|struct|union|enum class|enum) (\\w+)(?: final)?(?: : .*| \\{.*)$"
        ),
        QRegularExpression::MultilineOption
    );
    std::map<QString, fs::path> places;
    for (const Source& source : sourcesBelow("src")) {
        if (source.path.extension() != ".h") {
            continue;
        }
        for (const auto& match : definition.globalMatch(contentOf(source.path))) {
            const auto [place, isNew] = places.insert({match.captured(1), source.path});
            EXPECT_TRUE(isNew) << qPrintable(match.captured(1)) << " is in " << place->second
                               << " and in " << source.path;
        }
    }
    EXPECT_GT(places.size(), 300U);
}

TEST_F(RoomsTest, NoRoomAndNoFolderIsTooLarge) {
    std::map<fs::path, int> files;
    for (const Source& source : sourcesBelow("src")) {
        rooms[source.room].lines +=
            static_cast<int>(contentOf(source.path).count(QLatin1Char('\n')));
        ++files[source.path.parent_path()];
    }
    for (const auto& [name, room] : rooms) {
        EXPECT_GT(room.lines, 0) << qPrintable(name) << " is empty";
        EXPECT_LE(room.lines, kMostLines) << qPrintable(name);
    }
    for (const auto& [folder, count] : files) {
        EXPECT_LE(count, kMostFiles) << folder;
    }
}

} // namespace
