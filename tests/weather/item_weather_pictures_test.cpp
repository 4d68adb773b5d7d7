// SPDX-License-Identifier: MIT
// Pictures of a radar item in files and on the clipboard, as its menu makes them.
#include "pictures/picture_folder_setting.h"
#include "weather_page.h"

#include <QClipboard>
#include <QDir>
#include <QGuiApplication>
#include <QImageReader>
#include <QLineEdit>

namespace raincast {
namespace {

using test::DialogScript;

class ItemWeatherPicturesTest : public test::WeatherPage {
protected:
    ItemWeatherPicturesTest() {
        QDir().mkpath(m_pictures.filePath("out"));
        PictureFolderSetting::setFolder(m_pictures.filePath("out"));
        showSite();
    }
    ~ItemWeatherPicturesTest() override { PictureFolderSetting::setFolder({}); }

    void save(int command, const QString& title, const QString& name) {
        DialogScript script;
        script.expect(title, [&name](QDialog& dialog) {
            test::type(dialog, 0, name);
            test::press(dialog, "Save");
        });
        EXPECT_TRUE(m_page->command(command, clicked));
    }
    [[nodiscard]] QString out(const QString& name) const {
        return m_pictures.filePath("out/" + name);
    }
    [[nodiscard]] QImage shownPicture() {
        return m_page->widget()->grab().toImage().convertToFormat(QImage::Format_RGB32);
    }

    QTemporaryDir m_pictures;
};

TEST_F(ItemWeatherPicturesTest, APictureIsSavedAsItIsShown) {
    save(40950, "Save Picture", "mine");
    EXPECT_EQ(QImage(out("mine.png")).convertToFormat(QImage::Format_RGB32), shownPicture());
}

TEST_F(ItemWeatherPicturesTest, TheNameThatIsOfferedIsThatOfTheFrame) {
    DialogScript script;
    script.expect("Save Picture", [this](QDialog& dialog) {
        EXPECT_EQ(dialog.findChild<QLineEdit*>()->text(), out("MUX_20190519_0554_N0R.png"));
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
    EXPECT_TRUE(m_page->command(40950, clicked));
    EXPECT_TRUE(QFile::exists(out("MUX_20190519_0554_N0R.png")));
}

TEST_F(ItemWeatherPicturesTest, AFileIsReplacedOnlyIfTheUserSaysSo) {
    save(40950, "Save Picture", "mine.png");
    QFile(out("mine.png")).resize(3);
    for (const char* answer : {"No", "Yes"}) {
        DialogScript script;
        script.expect("Save Picture", [](QDialog& dialog) {
            test::type(dialog, 0, "mine.png");
            test::press(dialog, "Save");
        });
        script.expect("Save Picture", [answer](QDialog& box) { test::press(box, answer); });
        EXPECT_TRUE(m_page->command(40950, clicked));
        EXPECT_EQ(QFileInfo(out("mine.png")).size() == 3, QString(answer) == "No");
    }
}

TEST_F(ItemWeatherPicturesTest, AMissingFolderIsSaid) {
    DialogScript script;
    script.expect("Save Picture", [](QDialog& dialog) {
        test::type(dialog, 0, "not/there.png");
        test::press(dialog, "Save");
    });
    script.expect("Save Picture");
    EXPECT_TRUE(m_page->command(40950, clicked));
    EXPECT_TRUE(QDir(out("")).entryList(QDir::Files).isEmpty());
}

TEST_F(ItemWeatherPicturesTest, APictureIsCopied) {
    EXPECT_TRUE(m_page->command(40951, clicked));
    EXPECT_EQ(
        QGuiApplication::clipboard()->image().convertToFormat(QImage::Format_RGB32), shownPicture()
    );
}

TEST_F(ItemWeatherPicturesTest, ALoopIsSavedInTheBackground) {
    editAnimation(3);
    const std::string before = shown();
    save(40952, "Save Loop", "loop");
    EXPECT_EQ(shown(), before) << "the screen stays as it is";
    EXPECT_TRUE(QTest::qWaitFor([this] { return QFile::exists(out("loop.gif")); }, 30'000));
    QFile file(out("loop.gif"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    EXPECT_TRUE(bytes.startsWith("GIF89a"));
    EXPECT_EQ(bytes.count(QByteArray("\x21\xF9\x04", 3)), 3) << "frames";
}

TEST_F(ItemWeatherPicturesTest, AnItemWithoutAPageHasNoPicture) {
    m_page->deactivate();
    EXPECT_TRUE(m_item->pictures().paint().isNull());
    EXPECT_TRUE(m_page->command(40951, clicked));
    EXPECT_TRUE(m_page->command(40950, clicked)) << "no dialog";
}

} // namespace
} // namespace raincast
