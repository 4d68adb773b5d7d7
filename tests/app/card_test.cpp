// SPDX-License-Identifier: MIT
// The card with the image cache is pulled out while the viewer runs, and put back.
#include "app/updating_viewer.h"
#include "image/image_file.h"

#include <QDirIterator>

namespace raincast {
namespace {

class CardTest : public test::UpdatingViewer {
protected:
    CardTest() {
        QDir().mkpath(card() + "/Quorvane"); // the cache is kept where this is
        folder = card() + "/Quorvane/Temp/Weather/MUX/";
        environment.insert("BROKEN_DISK_FOLDER", card());
        environment.insert("BROKEN_DISK_WHILE", broken());
        start({}, QStringLiteral(":" BROKEN_DISK_LIBRARY));
    }
    ~CardTest() override {
        // Nothing was cut, wherever it lies.
        QDirIterator images(home.root(), {"*.gif"}, QDir::Files, QDirIterator::Subdirectories);
        while (images.hasNext()) {
            const QString name = images.next();
            EXPECT_TRUE(LoadImageFile(name, 1'000'000)) << name.toStdString();
        }
    }

    [[nodiscard]] QString card() const { return home.path("cards/card"); }
    [[nodiscard]] QString broken() const { return home.path("broken"); }

    /// An update that finds a frame, which cannot be kept.
    void updateInVain() {
        publish();
        const int before = updates();
        clock.advance(10 * kMinute);
        awaitUpdates(before + 1);
        EXPECT_FALSE(QTest::qWaitFor([this] { return QFile::exists(folder + newest()); }, kWhile));
        EXPECT_EQ(process.state(), QProcess::Running);
    }
    void expectUpdate() {
        publish();
        clock.advance(10 * kMinute);
        EXPECT_TRUE(awaitNewest());
    }
};

TEST_F(CardTest, OneThatReadsAndWritesNothingIsUsedAgainWhenItDoes) {
    writeFile(broken());
    updateInVain();
    updateInVain();
    ASSERT_TRUE(QFile::remove(broken()));
    expectUpdate();
}

TEST_F(CardTest, OneThatIsGoneIsUsedAgainWhenItIsBack) {
    const QString away = home.path("away");
    ASSERT_TRUE(QDir().rename(card(), away));
    writeFile(card()); // nobody can make its folders anew
    updateInVain();
    updateInVain();
    ASSERT_TRUE(QFile::remove(card()));
    ASSERT_TRUE(QDir().rename(away, card()));
    expectUpdate();
}

} // namespace
} // namespace raincast
