// SPDX-License-Identifier: MIT
// Holds the rooms to their one direction of inclusion: each may include those before it in
// kRooms, never those after.
#include <QFile>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

const Names kRooms = {"platform", "geo",   "persist", "net",     "radar",   "window",
                      "paged",    "units", "gps",     "display", "weather", "app"};
// The programs without windows: what each may include beside itself.
const Names kFetch = {"platform", "geo", "persist", "net", "radar"};
const Names kServer = {"platform", "geo", "radar"};

Names allowedFor(const std::string& room) {
    Names allowed;
    if (room == "fetch") {
        allowed = kFetch;
    } else if (room == "server") {
        allowed = kServer;
    } else {
        allowed.assign(kRooms.begin(), std::find(kRooms.begin(), kRooms.end(), room));
    }
    allowed.push_back(room);
    return allowed;
}

Names includedRooms(const fs::path& file) {
    QFile source(file);
    EXPECT_TRUE(source.open(QIODevice::ReadOnly)) << file;
    static const QRegularExpression include(QStringLiteral("#include \"([a-z]+)/"));
    Names rooms;
    for (const auto& match : include.globalMatch(QString::fromUtf8(source.readAll()))) {
        rooms.push_back(match.captured(1).toStdString());
    }
    return rooms;
}

TEST(RoomOrderTest, NoRoomIncludesOneThatStandsAfterIt) {
    int files = 0;
    for (const auto& entry : fs::recursive_directory_iterator(RAINCAST_SOURCE_DIR "/src")) {
        const fs::path& path = entry.path();
        if (path.extension() != ".h" && path.extension() != ".cpp") {
            continue;
        }
        ++files;
        const Names allowed = allowedFor(path.parent_path().filename());
        for (const std::string& included : includedRooms(path)) {
            EXPECT_NE(std::find(allowed.begin(), allowed.end(), included), allowed.end())
                << path << " includes " << included;
        }
    }
    EXPECT_GT(files, 0);
}

} // namespace
