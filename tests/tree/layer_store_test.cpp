// SPDX-License-Identifier: MIT
#include "fake_frames.h"
#include "support/files.h"
#include "support/full_disk.h"
#include "tree/layer_store.h"

#include <QImage>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace raincast {
namespace {

const AntennaPosition& kAntenna = *findAntenna("LWX");

class LayerStoreTest : public ::testing::Test {
protected:
    /// The only folder of layers.
    [[nodiscard]] QString kept() const {
        return m_folder.path() + '/' + QString::fromStdString(namesIn(m_folder.path()));
    }

    QTemporaryDir m_folder;
    MapDataFiles m_files;
    const QByteArray m_other = gifThatSays("kept");
};

TEST_F(LayerStoreTest, PaintsOnceAndKeeps) {
    const MapData data(m_files);
    const LayerStore store(data, m_folder.path());
    const QByteArray painted = store.layer(LayerKind::rivers, kAntenna, Range::longRange).value();
    EXPECT_EQ(QImage::fromData(painted, "GIF").size(), QSize(600, 550));
    EXPECT_EQ(namesIn(kept()), "LWX_rivers_Long");
    writeFile(kept() + "/LWX_rivers_Long", m_other);
    EXPECT_EQ(store.layer(LayerKind::rivers, kAntenna, Range::longRange), m_other);
    EXPECT_EQ(store.layer(LayerKind::rivers, kAntenna, Range::shortRange), painted);
}

TEST_F(LayerStoreTest, OtherDataHaveOtherLayers) {
    const QTemporaryDir dataFolder;
    m_files.roads = dataFolder.filePath("roads.json");
    writeFile(m_files.roads, "{}");
    const MapData data(m_files);
    const LayerStore store(data, m_folder.path());
    static_cast<void>(store.layer(LayerKind::highways, kAntenna, Range::shortRange));
    writeFile(kept() + "/LWX_highways_Short", m_other);
    EXPECT_EQ(store.layer(LayerKind::highways, kAntenna, Range::shortRange), m_other);

    writeFile(m_files.roads, R"({"type":"LineString","coordinates":[[-78,39],[-77,39]]})");
    const MapData newData(m_files);
    const LayerStore newStore(newData, m_folder.path());
    EXPECT_NE(newStore.layer(LayerKind::highways, kAntenna, Range::shortRange), m_other);
}

TEST_F(LayerStoreTest, AFullDiskKeepsNoCutLayer) {
    const MapData data(m_files);
    const LayerStore store(data, m_folder.path());
    QByteArray painted;
    {
        const FullDisk disk(100);
        painted = store.layer(LayerKind::rivers, kAntenna, Range::longRange).value();
    }
    EXPECT_EQ(QImage::fromData(painted, "GIF").size(), QSize(600, 550));
    EXPECT_EQ(namesIn(kept()), "");
    EXPECT_EQ(store.layer(LayerKind::rivers, kAntenna, Range::longRange), painted);
    EXPECT_EQ(readFile(kept() + "/LWX_rivers_Long"), painted);
}

TEST_F(LayerStoreTest, AKeptLayerOfTheWrongLengthIsPaintedAgain) {
    const MapData data(m_files);
    const LayerStore store(data, m_folder.path());
    for (const LayerKind layer : {LayerKind::topo, LayerKind::rivers}) { // a JPEG and a GIF
        const QByteArray painted = store.layer(layer, kAntenna, Range::longRange).value();
        const QString file =
            kept() + "/LWX_" + (layer == LayerKind::topo ? "topo" : "rivers") + "_Long";
        ASSERT_EQ(readFile(file), painted);
        for (const QByteArray& wrong :
             {QByteArray(), painted.chopped(1), painted.first(100), painted + "more"}) {
            writeFile(file, wrong);
            EXPECT_EQ(store.layer(layer, kAntenna, Range::longRange), painted);
            EXPECT_EQ(readFile(file), painted);
        }
    }
}

TEST_F(LayerStoreTest, AFolderThatCannotBeMadeKeepsNothing) {
    writeFile(m_folder.filePath("file"));
    const MapData data(m_files);
    const LayerStore store(data, m_folder.filePath("file"));
    const QByteArray painted = store.layer(LayerKind::rivers, kAntenna, Range::shortRange).value();
    EXPECT_EQ(QImage::fromData(painted, "GIF").size(), QSize(600, 550));
    EXPECT_EQ(readFile(m_folder.filePath("file")), "x");
}

} // namespace
} // namespace raincast
