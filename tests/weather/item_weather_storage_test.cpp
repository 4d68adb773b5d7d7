// SPDX-License-Identifier: MIT
// The storage dialog of a radar item that is shown: a large cache on its way to a card.
#include "support/files.h"
#include "support/full_disk.h"
#include "weather_page.h"

#include <QComboBox>
#include <QDirIterator>
#include <QGuiApplication>
#include <QLabel>
#include <QPointer>
#include <QTimer>

#include <set>

namespace raincast {
namespace {

using test::DialogScript;

constexpr int kFiles = 3000;

class ItemWeatherStorageTest : public test::WeatherPage {
protected:
    ItemWeatherStorageTest() {
        QDir(m_folder.path()).mkpath("cards/one");
        showSite();
        m_before = m_item->state().cacheFolder;
        for (int i = 0; i < kFiles; ++i) {
            writeFile(m_before + QStringLiteral("/TLX/TLX_Topo_%1").arg(i, 4, 10, QChar(u'0')));
        }
    }
    /// Moves the cache to the card; `messages` boxes report trouble.
    void moveToCard(int messages = 0) {
        DialogScript script;
        script.expect("Radar Image Storage", [&](QDialog& dialog) {
            auto* places = dialog.findChild<QComboBox*>();
            EXPECT_EQ(places->count(), 2);
            test::check(dialog, "Cleanup cached files", false);
            places->setCurrentIndex(1);
            m_dialog = &dialog;
            test::press(dialog, "OK");
            EXPECT_TRUE(QTest::qWaitFor([&] { return dialog.isEnabled(); }, 60'000));
            EXPECT_EQ(dialog.isVisible(), messages > 0);
        });
        for (int i = 0; i < messages; ++i) {
            script.expect("Error");
        }
        EXPECT_TRUE(m_item->command(kStorage, 0));
        finish();
        m_dialog = nullptr;
    }
    [[nodiscard]] QString card() const {
        return m_folder.filePath("cards/one/Quorvane/Temp/Weather");
    }
    [[nodiscard]] static std::set<QString> filesIn(const QString& folder) {
        std::set<QString> names;
        QDirIterator files(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            names.insert(files.next().mid(folder.size()));
        }
        return names;
    }

    QString m_before;
    QPointer<QDialog> m_dialog;
};

TEST_F(ItemWeatherStorageTest, AMoveShowsHowFarItIsAndAllElseGoesOn) {
    std::set<QString> texts;
    std::set<int> bars;
    const int requests = m_server.count();
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, [&] {
        if (!m_dialog || m_dialog->isEnabled()) {
            return;
        }
        EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
        CHeartbeat::program().Beat();
        m_item->Tick();
        EXPECT_TRUE(m_item->command(kUpdate, 0));
        EXPECT_FALSE(m_item->loading()) << "not while the cache is under way";
        for (const auto* label : m_dialog->findChildren<QLabel*>()) {
            if (label->text().contains("files moved")) {
                texts.insert(label->text());
            }
        }
        const QImage picture = drawn();
        int filled = 0;
        while (filled < 300 && picture.pixel(filled, 279) == qRgb(0, 90, 200)) {
            ++filled;
        }
        bars.insert(filled);
    });
    look.start(0);
    const auto before = filesIn(m_before);
    moveToCard();
    look.stop();
    EXPECT_EQ(filesIn(card()), before);
    EXPECT_FALSE(QDir(m_before).exists());
    EXPECT_EQ(m_item->state().cacheFolder, card());
    EXPECT_GT(texts.size(), 1U) << "the dialog says how far it is";
    EXPECT_GT(bars.size(), 1U) << "and so does the item";
    EXPECT_EQ(m_server.count(), requests);
    EXPECT_NE(drawn().pixel(0, 279), qRgb(0, 90, 200)) << "the bar is gone";
    update();
    EXPECT_GT(m_server.count(), requests);
}

TEST_F(ItemWeatherStorageTest, AMoveThatFailsHalfWayLosesNothing) {
    writeFile(m_before + "/TLX/TLX_Topo_2000", QByteArray(100'000, 'x'));
    const auto before = filesIn(m_before);
    const FullDisk disk(50000);
    moveToCard(1);
    EXPECT_EQ(filesIn(m_before), before);
    EXPECT_EQ(readFile(m_before + "/TLX/TLX_Topo_2000").size(), 100'000);
    EXPECT_EQ(m_item->state().cacheFolder, m_before);
    EXPECT_TRUE(filesIn(card()).empty());
    // The radar goes on.
    update();
    EXPECT_EQ(m_item->statusText(), QString());
    EXPECT_EQ(shown(), "5:54");
}

TEST_F(ItemWeatherStorageTest, FramesAreFoundWhereTheCacheWentTo) {
    moveToCard();
    restart();
    const int requests = m_server.count();
    showPage();
    EXPECT_EQ(m_server.count(), requests);
    EXPECT_EQ(shown(), "5:54");
    EXPECT_TRUE(m_item->state().frames.at(0).path.startsWith(card()));
}

TEST_F(ItemWeatherStorageTest, WithoutACardThereIsOnlyInternalMemory) {
    QDir(m_folder.filePath("cards")).removeRecursively();
    DialogScript script;
    script.expect("Radar Image Storage", [](QDialog& dialog) {
        EXPECT_EQ(dialog.findChild<QComboBox*>()->count(), 1);
    });
    EXPECT_TRUE(m_item->command(kStorage, 0));
    finish();
    EXPECT_EQ(m_item->state().cacheFolder, m_before);
}

TEST_F(ItemWeatherStorageTest, CleaningLeavesWhatIsShownAndTheNextUpdateFetchesIt) {
    DialogScript script;
    script.expect("Radar Image Storage", [](QDialog& dialog) { test::press(dialog, "OK"); });
    EXPECT_TRUE(m_item->command(kStorage, 0));
    finish();
    EXPECT_EQ(drawn().pixel(202 - 150, 150), 0xFFFF0000);
    EXPECT_EQ(QDir(m_before + "/MUX").entryList({"MUX_2*"}), QStringList());
    update();
    EXPECT_EQ(QDir(m_before + "/MUX").entryList({"MUX_2*"}).size(), 1);
}

} // namespace
} // namespace raincast
