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

#include <optional>

namespace raincast {
namespace {

class LoopSavingTest : public test::GuiTest {
protected:
    static std::vector<AnimatedGif::Frame> frames(int count) {
        QImage picture(64, 64, QImage::Format_RGB32);
        std::vector<AnimatedGif::Frame> frames;
        for (int i = 0; i < count; ++i) {
            picture.fill(qRgb(i, 0, 0));
            frames.push_back({picture.copy(), 500});
        }
        return frames;
    }
    void save(const QString& path, int count) {
        m_saving.emplace(
            path, frames(count), [this](int done) { m_progress.push_back(done); },
            [this](const WholeFile::Result& result) { m_result = result; }
        );
    }
    [[nodiscard]] bool finish() {
        return QTest::qWaitFor([this] { return m_result.has_value(); }, 30'000);
    }
    [[nodiscard]] QStringList files() const { return QDir(m_folder.path()).entryList(QDir::Files); }

    QTemporaryDir m_folder;
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
