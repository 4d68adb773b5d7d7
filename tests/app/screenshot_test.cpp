// SPDX-License-Identifier: MIT
#include "app/screenshot.h"
#include "core/busy_guard.h"
#include "core/file_descriptor.h"
#include "support/files.h"
#include "support/full_disk.h"
#include "support/qt_app.h"

#include <QImage>
#include <QTemporaryDir>
#include <QTest>
#include <QWidget>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <optional>

namespace raincast {
namespace {

class ScreenshotTest : public test::GuiTest {
protected:
    QTemporaryDir folder;
    QWidget window;
    std::optional<bool> saved;

    ScreenshotTest() {
        QPalette palette;
        palette.setColor(QPalette::Window, QColor(10, 200, 30));
        window.setPalette(palette);
        window.resize(120, 80);
    }
    [[nodiscard]] bool wait() {
        return QTest::qWaitFor([this] { return saved.has_value(); });
    }
};

TEST_F(ScreenshotTest, TheWindowIsSavedAfterItsPaint) {
    test::show(window);
    const QString file = folder.filePath("picture.png");
    const Screenshot screenshot(
        window, file, [] { return false; }, [this](bool good) { saved = good; }
    );
    EXPECT_FALSE(saved);
    ASSERT_TRUE(wait());
    EXPECT_EQ(saved, true);
    const QImage picture(file, "PNG");
    EXPECT_EQ(picture.size(), QSize(120, 80));
    EXPECT_EQ(picture.pixelColor(60, 40), QColor(10, 200, 30));
    EXPECT_EQ(namesIn(folder.path()), "picture.png");
}

TEST_F(ScreenshotTest, AWindowThatIsNeverPaintedIsSavedAllTheSame) {
    const QString file = folder.filePath("picture.png");
    const Screenshot screenshot(
        window, file, [] { return false; }, [this](bool good) { saved = good; }
    );
    ASSERT_TRUE(wait());
    EXPECT_EQ(saved, true);
    EXPECT_EQ(QImage(file).size(), QSize(120, 80));
}

TEST_F(ScreenshotTest, WhatIsUnderWayReturnsFirst) {
    test::show(window);
    const Screenshot screenshot(
        window, folder.filePath("picture.png"), [] { return false; },
        [this](bool good) { saved = good; }
    );
    {
        const BusyGuard busy;
        for (int i = 0; i < 10; ++i) {
            QCoreApplication::processEvents();
        }
        EXPECT_FALSE(saved);
    }
    EXPECT_TRUE(wait());
}

TEST_F(ScreenshotTest, WhatIsLoadedIsWaitedForAndPaintedOnceMore) {
    test::show(window);
    int asked = 0;
    const QString file = folder.filePath("picture.png");
    const Screenshot screenshot(
        window, file,
        [&] {
            if (++asked == 3) {
                QPalette palette;
                palette.setColor(QPalette::Window, QColor(200, 10, 30));
                window.setPalette(palette);
            }
            return asked < 4;
        },
        [this](bool good) { saved = good; }
    );
    ASSERT_TRUE(wait());
    EXPECT_GE(asked, 5) << "and once more after the paint";
    EXPECT_EQ(QImage(file).pixelColor(60, 40), QColor(200, 10, 30));
}

TEST_F(ScreenshotTest, AFileThatCannotBeWrittenIsTold) {
    test::show(window);
    const Screenshot screenshot(
        window, folder.filePath("missing/picture.png"), [] { return false; },
        [this](bool good) { saved = good; }
    );
    ASSERT_TRUE(wait());
    EXPECT_EQ(saved, false);
    EXPECT_EQ(namesIn(folder.path()), "");
}

TEST_F(ScreenshotTest, AFullDiskLeavesTheOldPictureAndNoHalfOne) {
    test::show(window);
    writeFile(folder.filePath("picture.png"), "old");
    const FullDisk disk(50);
    const Screenshot screenshot(
        window, folder.filePath("picture.png"), [] { return false; },
        [this](bool good) { saved = good; }
    );
    ASSERT_TRUE(wait());
    EXPECT_EQ(saved, false);
    EXPECT_EQ(namesIn(folder.path()), "picture.png");
    EXPECT_EQ(readFile(folder.filePath("picture.png")), "old");
}

TEST_F(ScreenshotTest, APipeIsWrittenInto) {
    test::show(window);
    const QString pipe = folder.filePath("pipe");
    ASSERT_EQ(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    const FileDescriptor reader(open(QFile::encodeName(pipe).constData(), O_RDWR | O_NONBLOCK));
    const Screenshot screenshot(
        window, pipe, [] { return false; }, [this](bool good) { saved = good; }
    );
    ASSERT_TRUE(wait());
    EXPECT_EQ(saved, true);
    QByteArray bytes(65536, '\0');
    bytes.truncate(read(reader.get(), bytes.data(), static_cast<std::size_t>(bytes.size())));
    EXPECT_EQ(QImage::fromData(bytes, "PNG").size(), QSize(120, 80));
    EXPECT_EQ(namesIn(folder.path()), "pipe");
}

} // namespace
} // namespace raincast
