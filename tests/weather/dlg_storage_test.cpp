// SPDX-License-Identifier: MIT
#include "dialog_controls.h"
#include "support/dialog_script.h"
#include "support/files.h"
#include "support/qt_app.h"
#include "weather/dlg_storage.h"

#include <QComboBox>
#include <QLabel>
#include <QTemporaryDir>
#include <QTest>

namespace raincast {
namespace {

using test::DialogScript;

/// With internal memory and cards in a temporary folder.
class DlgStorageTest : public test::GuiTest {
protected:
    DlgStorageTest() {
        qputenv("XDG_DATA_HOME", m_folder.filePath("data").toLocal8Bit());
        qputenv("RAINCAST_CARD_ROOT", m_folder.filePath("cards").toLocal8Bit());
        QDir(m_folder.path()).mkpath("cards/one");
        m_request.cacheFolder = m_folder.filePath("data/Quorvane/Temp/Weather");
        m_request.siteId = "MUX";
        m_request.viewCentre = {37, -121};
        writeFile(m_request.cacheFolder + "/MUX/MUX_20190519_0554_N0R.gif");
        writeFile(m_request.cacheFolder + "/MUX/MUX_City_Short.gif");
    }
    ~DlgStorageTest() override {
        qunsetenv("XDG_DATA_HOME");
        qunsetenv("RAINCAST_CARD_ROOT");
    }
    int run(const DialogScript::Step& step, const QString& message = {}) {
        DialogScript script;
        script.expect(QStringLiteral("Radar Image Storage"), step);
        if (!message.isEmpty()) {
            script.expect(message);
        }
        CDlgStorage dialog(m_request, [this](bool waiting) { m_waits += waiting ? "w" : "g"; });
        const int result = dialog.run(nullptr);
        m_after = dialog.cacheFolder();
        return result;
    }

    QTemporaryDir m_folder;
    StorageRequest m_request;
    QString m_after;
    std::string m_waits;
};

TEST_F(DlgStorageTest, OpensWithTheUsualChoices) {
    run([](QDialog& dialog) {
        const auto* places = dialog.findChild<QComboBox*>();
        EXPECT_EQ(places->currentText(), QStringLiteral("Internal memory"));
        EXPECT_EQ(places->count(), 2);
        EXPECT_TRUE(test::button(dialog, "Cleanup cached files")->isChecked());
        EXPECT_FALSE(test::button(dialog, "Keep nearby radar images")->isChecked());
        EXPECT_FALSE(test::button(dialog, "Cleanup basemaps")->isChecked());
        EXPECT_TRUE(test::button(dialog, "Keep nearby basemaps")->isChecked());
        EXPECT_FALSE(test::button(dialog, "Keep nearby basemaps")->isEnabled());
        test::check(dialog, "Cleanup basemaps", true);
        EXPECT_TRUE(test::button(dialog, "Keep nearby basemaps")->isEnabled());
        test::check(dialog, "Cleanup cached files", false);
        for (const char* box :
             {"Keep nearby radar images", "Cleanup basemaps", "Keep nearby basemaps"}) {
            EXPECT_FALSE(test::button(dialog, box)->isEnabled()) << box;
        }
    });
    EXPECT_EQ(m_waits, "");
}

TEST_F(DlgStorageTest, SaysHowMuchWouldBeDeletedAndWhatIsFree) {
    writeFile(m_request.cacheFolder + "/MUX/MUX_20190519_0544_N0R.gif", QByteArray(30'000, 'x'));
    writeFile(m_request.cacheFolder + "/BMX/BMX_Topo_Short.jpg", QByteArray(2'000'000, 'x'));
    run([](QDialog& dialog) {
        const auto* const amount = dialog.findChild<QLabel*>("1076");
        ASSERT_NE(amount, nullptr);
        const auto expectAmount = [amount](const QString& files) {
            EXPECT_TRUE(QTest::qWaitFor([&] { return amount->text().startsWith(files); }))
                << qPrintable(amount->text());
        };
        expectAmount("2 files, 30 kB (");
        EXPECT_TRUE(amount->text().endsWith(" free)"));
        test::check(dialog, "Cleanup basemaps", true);
        expectAmount("3 files, 2 MB (");
        test::check(dialog, "Keep nearby basemaps", false);
        expectAmount("4 files, 2 MB (");
        test::check(dialog, "Keep nearby radar images", true);
        test::check(dialog, "Cleanup basemaps", false);
        expectAmount("0 files, 0 bytes (");
        test::check(dialog, "Cleanup basemaps", true);
        test::check(dialog, "Keep nearby basemaps", true);
        expectAmount("1 file, 2 MB (");
        test::check(dialog, "Cleanup cached files", false);
        expectAmount("0 files, 0 bytes (");
    });
}

TEST_F(DlgStorageTest, OkCleansAsChosen) {
    EXPECT_EQ(run([](QDialog& dialog) { test::press(dialog, "OK"); }), Dialog::kOk);
    EXPECT_EQ(namesIn(m_request.cacheFolder + "/MUX"), "MUX_City_Short.gif");
    EXPECT_EQ(m_after, m_request.cacheFolder);
    EXPECT_EQ(m_waits, "wg");
}

TEST_F(DlgStorageTest, AnotherPlaceTakesTheCacheAlong) {
    EXPECT_EQ(
        run([](QDialog& dialog) {
            test::check(dialog, "Cleanup cached files", false);
            dialog.findChild<QComboBox*>()->setCurrentIndex(1);
            test::press(dialog, "OK");
        }),
        Dialog::kOk
    );
    EXPECT_EQ(m_after, m_folder.filePath("cards/one/Quorvane/Temp/Weather"));
    EXPECT_EQ(namesIn(m_after + "/MUX"), "MUX_20190519_0554_N0R.gif MUX_City_Short.gif");
    EXPECT_FALSE(QDir(m_request.cacheFolder).exists());
}

TEST_F(DlgStorageTest, AFolderThatCannotBeMadeIsToldAndKeepsTheDialog) {
    writeFile(m_folder.filePath("cards/one/Quorvane"), "in the way");
    EXPECT_EQ(
        run(
            [](QDialog& dialog) {
                dialog.findChild<QComboBox*>()->setCurrentIndex(1);
                test::press(dialog, "OK");
                EXPECT_TRUE(QTest::qWaitFor([&] { return dialog.isEnabled(); }, 60'000));
                EXPECT_TRUE(dialog.isVisible());
            },
            QStringLiteral("Error")
        ),
        Dialog::kCancel
    );
    EXPECT_EQ(m_after, m_request.cacheFolder);
    EXPECT_EQ(
        namesIn(m_request.cacheFolder + "/MUX"), "MUX_20190519_0554_N0R.gif MUX_City_Short.gif"
    );
}

TEST_F(DlgStorageTest, CancelDoesNothing) {
    EXPECT_EQ(run([](QDialog& dialog) { test::press(dialog, "Cancel"); }), Dialog::kCancel);
    EXPECT_EQ(
        namesIn(m_request.cacheFolder + "/MUX"), "MUX_20190519_0554_N0R.gif MUX_City_Short.gif"
    );
}

} // namespace
} // namespace raincast
