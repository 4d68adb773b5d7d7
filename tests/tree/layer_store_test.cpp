// SPDX-License-Identifier: MIT
#include "fake_frames.h"
#include "support/files.h"
#include "support/full_disk.h"
#include "tree/layer_store.h"

#include <QDateTime>
#include <QDir>
#include <QImage>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace raincast {
namespace {

const AntennaPosition& kAntenna = *findAntenna("LWX");

class LayerStoreTest : public ::testing::Test {
protected:
    /// The only folder of described layers.
    [[nodiscard]] QString kept() const {
        const QDir folder(m_folder.path());
        return folder.filePath(
            folder.entryList({"1-*"}, QDir::Dirs | QDir::NoDotAndDotDot).join(' ')
        );
    }
    /// The file of a layer of more detail.
    [[nodiscard]] QString sharpFile(const QByteArray& name) const {
        return m_folder.filePath("sharp/") + QFileInfo(kept()).fileName() + '_' + name;
    }

    QTemporaryDir m_folder;
    MapDataFiles m_files;
    const QByteArray m_other = gifThatSays("kept");
};

TEST_F(LayerStoreTest, PaintsOnceAndKeeps) {
    const MapData data(m_files);
    const LayerStore store(data, m_folder.path());
    const QByteArray painted = store.layer({LayerKind::rivers, kAntenna, Range::longRange}).value();
    EXPECT_EQ(QImage::fromData(painted, "GIF").size(), QSize(600, 550));
    EXPECT_EQ(namesIn(kept()), "LWX_rivers_Long");
    writeFile(kept() + "/LWX_rivers_Long", m_other);
    EXPECT_EQ(store.layer({LayerKind::rivers, kAntenna, Range::longRange}), m_other);
    EXPECT_EQ(store.layer({LayerKind::rivers, kAntenna, Range::shortRange}), painted);
}

TEST_F(LayerStoreTest, KeepsSharpLayersInAFolderOfTheirOwn) {
    const MapData data(m_files);
    const LayerStore store(data, m_folder.path());
    const QByteArray described =
        store.layer({LayerKind::topo, kAntenna, Range::shortRange}).value();
    for (const int detail : {2, 4}) {
        const LayerStore::Wanted wanted{LayerKind::topo, kAntenna, Range::shortRange, detail};
        const QByteArray painted = store.layer(wanted).value();
        EXPECT_EQ(QImage::fromData(painted, "JPG").size(), QSize(600, 550) * detail);
        const QString file = sharpFile("LWX_topo_Short_x" + QByteArray::number(detail));
        EXPECT_EQ(readFile(file), painted);
        writeFile(file, m_other);
        EXPECT_EQ(store.layer(wanted), m_other);
    }
    EXPECT_EQ(store.layer({LayerKind::topo, kAntenna, Range::shortRange}), described);
}

TEST_F(LayerStoreTest, SharpLayersHaveABoundAndTheOldestGo) {
    const MapData data(m_files);
    const auto wanted = [](std::string_view site) {
        return LayerStore::Wanted{LayerKind::rivers, *findAntenna(site), Range::shortRange, 2};
    };
    const qsizetype one = LayerStore(data, {}).layer(wanted("LWX")).value().size();
    const LayerStore store(data, m_folder.path(), 2 * one);
    static_cast<void>(store.layer({LayerKind::rivers, kAntenna, Range::shortRange}));
    const QDateTime past = QDateTime::currentDateTime().addSecs(-3600);
    int minute = 0;
    for (const char* site : {"LWX", "TLX", "INX"}) {
        static_cast<void>(store.layer(wanted(site)));
        QFile file(sharpFile(QByteArray(site) + "_rivers_Short_x2"));
        ASSERT_TRUE(file.open(QIODevice::ReadWrite)) << site;
        ASSERT_TRUE(file.setFileTime(past.addSecs(60 * ++minute), QFile::FileModificationTime));
    }
    EXPECT_FALSE(QFile::exists(sharpFile("LWX_rivers_Short_x2")));
    EXPECT_TRUE(QFile::exists(sharpFile("TLX_rivers_Short_x2")));
    EXPECT_TRUE(QFile::exists(sharpFile("INX_rivers_Short_x2")));
    EXPECT_EQ(namesIn(kept()), "LWX_rivers_Short") << "described ones stay";
}

TEST_F(LayerStoreTest, OtherDataHaveOtherLayers) {
    const QTemporaryDir dataFolder;
    m_files.roads = dataFolder.filePath("roads.json");
    writeFile(m_files.roads, "{}");
    const MapData data(m_files);
    const LayerStore store(data, m_folder.path());
    static_cast<void>(store.layer({LayerKind::highways, kAntenna, Range::shortRange}));
    writeFile(kept() + "/LWX_highways_Short", m_other);
    EXPECT_EQ(store.layer({LayerKind::highways, kAntenna, Range::shortRange}), m_other);

    writeFile(m_files.roads, R"({"type":"LineString","coordinates":[[-78,39],[-77,39]]})");
    const MapData newData(m_files);
    const LayerStore newStore(newData, m_folder.path());
    EXPECT_NE(newStore.layer({LayerKind::highways, kAntenna, Range::shortRange}), m_other);
}

TEST_F(LayerStoreTest, AFullDiskKeepsNoCutLayer) {
    const MapData data(m_files);
    const LayerStore store(data, m_folder.path());
    QByteArray painted;
    {
        const FullDisk disk(100);
        painted = store.layer({LayerKind::rivers, kAntenna, Range::longRange}).value();
    }
    EXPECT_EQ(QImage::fromData(painted, "GIF").size(), QSize(600, 550));
    EXPECT_EQ(namesIn(kept()), "");
    EXPECT_EQ(store.layer({LayerKind::rivers, kAntenna, Range::longRange}), painted);
    EXPECT_EQ(readFile(kept() + "/LWX_rivers_Long"), painted);
}

TEST_F(LayerStoreTest, AKeptLayerOfTheWrongLengthIsPaintedAgain) {
    const MapData data(m_files);
    const LayerStore store(data, m_folder.path());
    for (const LayerKind layer : {LayerKind::topo, LayerKind::rivers}) { // a JPEG and a GIF
        const QByteArray painted = store.layer({layer, kAntenna, Range::longRange}).value();
        const QString file =
            kept() + "/LWX_" + (layer == LayerKind::topo ? "topo" : "rivers") + "_Long";
        ASSERT_EQ(readFile(file), painted);
        for (const QByteArray& wrong :
             {QByteArray(), painted.chopped(1), painted.first(100), painted + "more"}) {
            writeFile(file, wrong);
            EXPECT_EQ(store.layer({layer, kAntenna, Range::longRange}), painted);
            EXPECT_EQ(readFile(file), painted);
        }
    }
}

TEST_F(LayerStoreTest, AFolderThatCannotBeMadeKeepsNothing) {
    writeFile(m_folder.filePath("file"));
    const MapData data(m_files);
    const LayerStore store(data, m_folder.filePath("file"));
    const QByteArray painted =
        store.layer({LayerKind::rivers, kAntenna, Range::shortRange}).value();
    EXPECT_EQ(QImage::fromData(painted, "GIF").size(), QSize(600, 550));
    EXPECT_EQ(readFile(m_folder.filePath("file")), "x");
}

} // namespace
} // namespace raincast
