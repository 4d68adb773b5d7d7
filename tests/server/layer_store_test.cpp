// SPDX-License-Identifier: MIT
#include "server/layer_store.h"
#include "support/files.h"

#include <QImage>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace raincast {
namespace {

class LayerStoreTest : public ::testing::Test {
protected:
    /// The only folder of layers.
    [[nodiscard]] QString kept() const {
        return m_folder.path() + '/' + QString::fromStdString(namesIn(m_folder.path()));
    }

    QTemporaryDir m_folder;
    MapDataFiles m_files;
};

TEST_F(LayerStoreTest, PaintsOnceAndKeeps) {
    const MapData data(m_files);
    const LayerStore store(data, m_folder.path());
    const QByteArray painted = store.layer(LayerKind::rivers, "LWX", Range::longRange);
    EXPECT_EQ(QImage::fromData(painted, "GIF").size(), QSize(600, 550));
    EXPECT_EQ(namesIn(kept()), "LWX_rivers_Long");
    writeFile(kept() + "/LWX_rivers_Long", "kept");
    EXPECT_EQ(store.layer(LayerKind::rivers, "LWX", Range::longRange), "kept");
    EXPECT_EQ(store.layer(LayerKind::rivers, "LWX", Range::shortRange), painted);
}

TEST_F(LayerStoreTest, OtherDataHaveOtherLayers) {
    const QTemporaryDir dataFolder;
    m_files.roads = dataFolder.filePath("roads.json");
    writeFile(m_files.roads, "{}");
    const MapData data(m_files);
    const LayerStore store(data, m_folder.path());
    static_cast<void>(store.layer(LayerKind::highways, "LWX", Range::shortRange));
    writeFile(kept() + "/LWX_highways_Short", "kept");
    EXPECT_EQ(store.layer(LayerKind::highways, "LWX", Range::shortRange), "kept");

    writeFile(m_files.roads, R"({"type":"LineString","coordinates":[[-78,39],[-77,39]]})");
    const MapData newData(m_files);
    const LayerStore newStore(newData, m_folder.path());
    EXPECT_NE(newStore.layer(LayerKind::highways, "LWX", Range::shortRange), "kept");
}

TEST_F(LayerStoreTest, UnknownSitesHaveNone) {
    const MapData data(m_files);
    EXPECT_EQ(
        LayerStore(data, m_folder.path()).layer(LayerKind::topo, "ZZZ", Range::shortRange), ""
    );
}

TEST_F(LayerStoreTest, AFolderThatCannotBeMadeKeepsNothing) {
    writeFile(m_folder.filePath("file"));
    const MapData data(m_files);
    const LayerStore store(data, m_folder.filePath("file"));
    EXPECT_NE(store.layer(LayerKind::rivers, "LWX", Range::shortRange), "");
}

} // namespace
} // namespace raincast
