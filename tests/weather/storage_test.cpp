// SPDX-License-Identifier: MIT
#include "core/storage_cards.h"
#include "geo/local_frame.h"
#include "radar/catalogue/sites.h"
#include "support/files.h"
#include "weather/storage.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <limits>

namespace raincast {
namespace {

// One file of each kind, and one of none.
const char* const kKinds[] = {
    "20070615_1830_N0R.gif", "Warnings_0.gif",   "Notes.txt",      "County_Short.gif",
    "Highways_Short.gif",    "Rivers_Short.gif", "Topo_Short.jpg", "Xtra"};
constexpr const char* kAll = "2CHNRTWX";

class StorageTest : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_folder.isValid());
        m_dataHome = qgetenv("XDG_DATA_HOME");
        qputenv("XDG_DATA_HOME", QFile::encodeName(at("data")));
    }
    void TearDown() override { qputenv("XDG_DATA_HOME", m_dataHome); }

    QString at(const QString& name) const { return m_folder.filePath(name); }
    QString cache() const { return at("data/Quorvane/Temp/Weather"); }

    void fillSite(const QString& id) const {
        for (const char* kind : kKinds) {
            writeFile(cache() + '/' + id + '/' + id + '_' + kind);
        }
    }
    /// The kind letters of the files that a site has.
    std::string kindsOf(const QString& id) const {
        QString kinds;
        for (const QString& name : QDir(cache() + '/' + id).entryList(QDir::Files, QDir::Name)) {
            kinds += name[4];
        }
        return kinds.toStdString();
    }
    StorageRequest request(const std::optional<QString>& card) const {
        StorageRequest request;
        request.card = card;
        request.cleanup.cachedFiles = false;
        request.viewCentre = {37.0, -122.0};
        request.cacheFolder = cache();
        request.siteId = "MUX";
        return request;
    }

    QTemporaryDir m_folder;
    QByteArray m_dataHome;
};

TEST_F(StorageTest, TheLastCardThatTheCacheLiesOnIsSelected) {
    const QStringList cards = {"/media/SD", "/media/SD2", "/media/sd", "/media"};
    EXPECT_EQ(selectedStorage(cards, "/home/mia/.local/share/Quorvane/Temp/Weather"), 0);
    EXPECT_EQ(selectedStorage(cards.mid(0, 3), "/media/SD/Quorvane/Temp/Weather"), 1);
    EXPECT_EQ(selectedStorage(cards.mid(0, 3), "/media/SD2/Quorvane/Temp/Weather"), 2);
    EXPECT_EQ(selectedStorage(cards.mid(0, 3), "/media/sd/Quorvane/Temp/Weather"), 3);
    EXPECT_EQ(selectedStorage(cards, "/media/SD/Quorvane/Temp/Weather"), 4);
    EXPECT_EQ(selectedStorage(cards.mid(0, 3), "/media/S"), 0);
    EXPECT_EQ(selectedStorage({}, "/media/SD"), 0);
    EXPECT_EQ(selectedStorage(cards, ""), 0);
}

TEST_F(StorageTest, TheBoxesDecideWhatGoes) {
    struct Row {
        const char* why;
        StorageCleanup cleanup;
        std::string near;
        std::string far;
    };
    // cachedFiles, keepNearbyRadar, basemaps, keepNearbyBasemaps
    const Row rows[] = {
        {"as the dialog opens", {}, "CHRTX", "CHRTX"},
        {"nothing", {false, false, true, false}, kAll, kAll},
        {"near radar images kept", {true, true, false, true}, kAll, "CHRTX"},
        {"far basemaps too", {true, true, true, true}, kAll, "X"},
        {"all radar images, far basemaps", {true, false, true, true}, "CHRTX", "X"},
        {"everything but near radar images", {true, true, true, false}, "2NWX", "X"},
        {"everything", {true, false, true, false}, "X", "X"},
        {"a box that counts for nothing", {true, false, false, false}, "CHRTX", "CHRTX"},
    };
    const GeoPosition viewCentre{37.0, -122.0};
    for (const Row& row : rows) {
        fillSite("MUX");
        fillSite("TLX");
        cleanUpCache(cache(), row.cleanup, viewCentre);
        EXPECT_EQ(kindsOf("MUX"), row.near) << row.why;
        EXPECT_EQ(kindsOf("TLX"), row.far) << row.why;
    }
}

TEST_F(StorageTest, ThreeHundredKilometresAreStillNear) {
    const RadarSite& guam = *findRadarSite(u"GUA");
    const auto distance = [&](double latitude) {
        return siteDistanceMetres(LocalFrame({latitude, guam.longitude}), guam);
    };
    double near = guam.latitude + 2.0;
    double far = guam.latitude + 3.0;
    for (int step = 0; step < 60; ++step) {
        const double middle = (near + far) / 2;
        (distance(middle) <= 300'000 ? near : far) = middle;
    }
    ASSERT_EQ(distance(near), 300'000);
    ASSERT_GT(distance(far), 300'000);
    const StorageCleanup cleanup{true, true, true, true};
    fillSite("GUA");
    cleanUpCache(cache(), cleanup, {near, guam.longitude});
    EXPECT_EQ(kindsOf("GUA"), kAll);
    cleanUpCache(cache(), cleanup, {std::numeric_limits<double>::quiet_NaN(), 0});
    EXPECT_EQ(kindsOf("GUA"), kAll) << "without a position nothing is far";
    cleanUpCache(cache(), cleanup, {far, guam.longitude});
    EXPECT_EQ(kindsOf("GUA"), "X");
}

TEST_F(StorageTest, CleansOnlyTheFoldersOfSites) {
    for (const char* name :
         {"MUX_2.gif", "mux/MUX_2.gif", "ZZZ/ZZZ_2.gif", "MUX/MUX_2.gif",
          "MUX/MUX_2below/MUX_2.gif", "TLX/TLX_2.gif", "BMX/BMX_W.gif"}) {
        writeFile(cache() + '/' + name);
    }
    writeFile(at("outside/LWX_2.gif"));
    ASSERT_TRUE(QFile::link(at("outside"), cache() + "/LWX"));
    writeFile(cache() + "/DAX");
    cleanUpCache(cache(), {}, {37.0, -122.0});
    EXPECT_EQ(namesIn(cache()), "DAX LWX MUX MUX_2.gif ZZZ mux") << "empty site folders went";
    EXPECT_EQ(namesIn(cache() + "/MUX"), "MUX_2below");
    EXPECT_EQ(namesIn(cache() + "/MUX/MUX_2below"), "MUX_2.gif");
    EXPECT_EQ(namesIn(cache() + "/mux"), "MUX_2.gif");
    EXPECT_EQ(namesIn(at("outside")), "LWX_2.gif") << "a link leads out of the cache";
    cleanUpCache(at("missing"), {}, {37.0, -122.0});
    cleanUpCache("", {}, {37.0, -122.0});
}

TEST_F(StorageTest, MovesTheCacheToACard) {
    fillSite("TLX");
    ASSERT_TRUE(QDir().mkpath(at("SD")));
    StorageRequest toCard = request(at("SD"));
    std::string seen;
    toCard.progress = [&](int done, int wanted) {
        seen += std::to_string(done) + "/" + std::to_string(wanted) + " ";
    };
    const StorageResult result = applyStorage(toCard);
    EXPECT_EQ(result.error, std::nullopt);
    EXPECT_EQ(result.cacheFolder, at("SD/Quorvane/Temp/Weather"));
    EXPECT_EQ(namesIn(result.cacheFolder), "MUX TLX") << "with a folder for the current site";
    EXPECT_FALSE(QFileInfo::exists(cache()));
    EXPECT_EQ(seen, "0/8 1/8 2/8 3/8 4/8 5/8 6/8 7/8 8/8 ");

    StorageRequest back = request(std::nullopt);
    back.cacheFolder = result.cacheFolder;
    const StorageResult after = applyStorage(back);
    EXPECT_EQ(after.error, std::nullopt);
    EXPECT_EQ(after.cacheFolder, cache());
    EXPECT_EQ(kindsOf("TLX"), kAll);
}

TEST_F(StorageTest, CleansUpBeforeItMoves) {
    fillSite("TLX");
    ASSERT_TRUE(QDir().mkpath(at("SD")));
    StorageRequest toCard = request(at("SD"));
    toCard.cleanup.cachedFiles = true;
    const StorageResult result = applyStorage(toCard);
    EXPECT_EQ(result.error, std::nullopt);
    EXPECT_EQ(
        namesIn(result.cacheFolder + "/TLX"), "TLX_County_Short.gif TLX_Highways_Short.gif "
                                              "TLX_Rivers_Short.gif TLX_Topo_Short.jpg TLX_Xtra"
    );
}

TEST_F(StorageTest, TheLocationInUseMovesNothing) {
    fillSite("TLX");
    StorageRequest stay = request(std::nullopt);
    stay.progress = [](int, int) { ADD_FAILURE() << "moved a file"; };
    const StorageResult result = applyStorage(stay);
    EXPECT_EQ(result.error, std::nullopt);
    EXPECT_EQ(result.cacheFolder, cache());
    EXPECT_EQ(namesIn(cache()), "TLX") << "not even a folder for the current site";
}

TEST_F(StorageTest, ACardThatCannotHoldTheFolderChangesNothing) {
    fillSite("TLX");
    writeFile(at("SD/Quorvane"), "in the way");
    StorageRequest toCard = request(at("SD"));
    toCard.cleanup.cachedFiles = true;
    const StorageResult result = applyStorage(toCard);
    EXPECT_EQ(result.error, "Failed to create folder: " + at("SD/Quorvane/Temp/Weather"));
    EXPECT_EQ(result.cacheFolder, cache());
    EXPECT_EQ(kindsOf("TLX"), kAll);
}

TEST_F(StorageTest, AMoveThatFailsIsUndone) {
    fillSite("BMX");
    fillSite("TLX");
    writeFile(at("SD/Quorvane/Temp/Weather/TLX"), "in the way");
    writeFile(at("SD/Quorvane/Temp/Weather/LWX/LWX_2.gif"), "there before");
    StorageRequest toCard = request(at("SD"));
    toCard.cleanup = {true, true, false, true};
    const StorageResult result = applyStorage(toCard);
    EXPECT_EQ(result.error, "Failed to move data to " + at("SD/Quorvane/Temp/Weather"));
    EXPECT_EQ(result.cacheFolder, cache());
    EXPECT_EQ(namesIn(cache()), "BMX TLX");
    EXPECT_EQ(kindsOf("BMX"), "CHRTX") << "cleaned up, and that stays";
    EXPECT_EQ(kindsOf("TLX"), "CHRTX");
    EXPECT_EQ(namesIn(at("SD/Quorvane/Temp/Weather")), "LWX TLX");
}

TEST_F(StorageTest, ACacheThatIsGoneCannotBeMoved) {
    ASSERT_TRUE(QDir().mkpath(at("SD")));
    StorageRequest toCard = request(at("SD"));
    toCard.cacheFolder = at("card that was taken out");
    const StorageResult result = applyStorage(toCard);
    EXPECT_EQ(result.error, "Failed to move data to " + at("SD/Quorvane/Temp/Weather"));
    EXPECT_EQ(result.cacheFolder, toCard.cacheFolder);
}

TEST_F(StorageTest, WithoutApplicationDataThereIsNoInternalMemory) {
    writeFile(at("data"), "in the way");
    writeFile(at("cache/TLX/TLX_2.gif"));
    StorageRequest inside = request(std::nullopt);
    inside.cacheFolder = at("cache");
    const StorageResult result = applyStorage(inside);
    EXPECT_EQ(result.error, "Failed to move data to ");
    EXPECT_EQ(result.cacheFolder, at("cache"));
    EXPECT_EQ(namesIn(at("cache/TLX")), "TLX_2.gif");
}

} // namespace
} // namespace raincast
