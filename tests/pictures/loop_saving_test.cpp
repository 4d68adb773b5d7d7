// SPDX-License-Identifier: MIT
#include "pictures/loop_saving.h"
#include "support/qt_app.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QThreadPool>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <optional>
#include <vector>

namespace raincast {
namespace {

class LoopSavingTest : public test::GuiTest {
protected:
    ~LoopSavingTest() override {
        m_saving.reset();
        QThreadPool::globalInstance()->waitForDone();
    }

    /// Counts the pictures that are in memory.
    std::optional<AnimatedGif::Frame> paint(int frame) {
        if (frame >= m_paintable) {
            return std::nullopt;
        }
        m_most = std::max(m_most, ++m_alive);
        auto* const pixels = new uchar[std::size_t{4} * 64 * 64];
        const auto gone = [](void* alive) { --*static_cast<std::atomic<int>*>(alive); };
        const QImage bare(pixels, 64, 64, QImage::Format_RGB32, gone, &m_alive);
        m_pixels.emplace_back(pixels);
        QImage picture = bare;
        std::fill_n(reinterpret_cast<QRgb*>(pixels), 64 * 64, qRgb(frame, 0, 0));
        return AnimatedGif::Frame{picture, 500};
    }
    void save(const QString& path, int count) {
        m_saving.emplace(
            path, count, [this](int frame) { return paint(frame); },
            [this](int done) { m_progress.push_back(done); },
            [this](const WholeFile::Result& result) { m_result = result; }
        );
    }
    [[nodiscard]] bool finish() {
        return QTest::qWaitFor([this] { return m_result.has_value(); }, 30'000);
    }
    [[nodiscard]] QStringList files() const { return QDir(m_folder.path()).entryList(QDir::Files); }

    QTemporaryDir m_folder;
    int m_paintable = 1000;
    std::atomic<int> m_alive = 0;
    int m_most = 0;
    std::vector<std::unique_ptr<uchar[]>> m_pixels; ///< they outlive their pictures
    std::vector<int> m_progress;
    std::optional<WholeFile::Result> m_result;
    std::optional<LoopSaving> m_saving;
};

TEST_F(LoopSavingTest, TheFileIsWholeAndProgressIsTold) {
    save(m_folder.filePath("loop.gif"), 3);
    ASSERT_TRUE(finish());
    EXPECT_TRUE(m_result->has_value());
    test::settle();
    EXPECT_THAT(m_progress, testing::ElementsAre(1, 2, 3));
    EXPECT_THAT(files(), testing::ElementsAre("loop.gif"));
    QFile file(m_folder.filePath("loop.gif"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    EXPECT_TRUE(bytes.startsWith("GIF89a"));
    EXPECT_TRUE(bytes.endsWith(';'));
}

TEST_F(LoopSavingTest, FewPicturesAreInMemoryAtATime) {
    save(m_folder.filePath("loop.gif"), 50);
    ASSERT_TRUE(finish());
    EXPECT_TRUE(m_result->has_value());
    EXPECT_LE(m_most, 4) << "the one before, the one that is written, and the next";
}

TEST_F(LoopSavingTest, WhatCanBePaintedNoLongerEndsIt) {
    m_paintable = 2;
    save(m_folder.filePath("loop.gif"), 3);
    ASSERT_TRUE(finish());
    ASSERT_FALSE(m_result->has_value());
    EXPECT_EQ(m_result->error().toStdString(), "Something else is shown by now");
    EXPECT_TRUE(files().isEmpty());
}

TEST_F(LoopSavingTest, WhatIsCancelledLeavesNothing) {
    save(m_folder.filePath("loop.gif"), 200);
    m_saving.reset();
    QThreadPool::globalInstance()->waitForDone();
    test::settle();
    EXPECT_FALSE(m_result.has_value());
    EXPECT_TRUE(files().isEmpty());
}

TEST_F(LoopSavingTest, ItSaysWhatFailed) {
    save(m_folder.filePath("missing/loop.gif"), 2);
    ASSERT_TRUE(finish());
    ASSERT_FALSE(m_result->has_value());
    EXPECT_EQ(m_result->error().toStdString(), "No such file or directory");
}

} // namespace
} // namespace raincast
