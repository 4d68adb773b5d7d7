// SPDX-License-Identifier: MIT
#include "dialog_controls.h"
#include "page/global_settings_type.h"
#include "support/dialog_script.h"
#include "support/qt_app.h"
#include "weather/servers_dialog.h"
#include "weather/servers_setting.h"

#include <QComboBox>

#include <algorithm>

namespace raincast {
namespace {

using test::DialogScript;

class DlgServersTest : public test::GuiTest {
protected:
    ~DlgServersTest() override {
        ServersSetting::set({ServersSetting::defaultHost(), ServersSetting::defaultHost()});
    }
};

TEST_F(DlgServersTest, TheSettingsMenuOffersIt) {
    const auto& types = CAppPaged::GlobalSettingsType::all();
    const auto found = std::find_if(types.begin(), types.end(), [](const auto* type) {
        return type->caption() == QStringLiteral("Servers");
    });
    ASSERT_NE(found, types.end());
    DialogScript script;
    script.expect("Servers");
    (*found)->open(nullptr);
}

void choose(QDialog& dialog, const QString& source) {
    auto* const sources = dialog.findChild<QComboBox*>();
    ASSERT_NE(sources, nullptr);
    const int row = sources->findText(source);
    ASSERT_GE(row, 0);
    sources->setFocus();
    QTest::keyClick(sources, Qt::Key_Home);
    for (int down = 0; down < row; ++down) {
        QTest::keyClick(sources, Qt::Key_Down);
    }
    EXPECT_EQ(sources->currentText(), source);
}

TEST_F(DlgServersTest, AnotherServerHasTwoHosts) {
    DialogScript script;
    script.expect("Servers", [](QDialog& dialog) {
        choose(dialog, "Another server");
        const auto fields = dialog.findChildren<QLineEdit*>();
        ASSERT_EQ(fields.size(), 2);
        EXPECT_EQ(fields[0]->text(), ServersSetting::defaultHost());
        test::type(dialog, 0, "radar.example");
        test::type(dialog, 1, " maps.example:81 ");
        test::press(dialog, "OK");
    });
    EXPECT_EQ(ServersDialog().run(nullptr), Dialog::kOk);
    EXPECT_EQ(ServersSetting::source(), WeatherSource::another);
    EXPECT_EQ(ServersSetting::current(), (RadarServers{"radar.example", "maps.example:81"}));
}

TEST_F(DlgServersTest, OnlyAnotherServersHostsCanBeTyped) {
    ServersSetting::set({"radar.example", "maps.example"});
    DialogScript script;
    script.expect("Servers", [](QDialog& dialog) {
        const auto areEnabled = [&dialog] {
            const auto fields = dialog.findChildren<QLineEdit*>();
            EXPECT_EQ(fields[0]->isEnabled(), fields[1]->isEnabled());
            return fields[0]->isEnabled();
        };
        EXPECT_EQ(dialog.findChild<QComboBox*>()->currentText(), "Another server");
        EXPECT_TRUE(areEnabled());
        choose(dialog, "Sample weather");
        EXPECT_FALSE(areEnabled());
        choose(dialog, "Another server");
        EXPECT_TRUE(areEnabled());
        choose(dialog, "Live radar (NOAA)");
        EXPECT_FALSE(areEnabled());
        test::press(dialog, "OK");
    });
    EXPECT_EQ(ServersDialog().run(nullptr), Dialog::kOk);
    EXPECT_EQ(ServersSetting::source(), WeatherSource::live);
    EXPECT_EQ(ServersSetting::hosts(), (RadarServers{"radar.example", "maps.example"}));
}

TEST_F(DlgServersTest, APastStormHasADialogOfItsOwn) {
    DialogScript script;
    script.expect("Servers", [](QDialog& dialog) {
        choose(dialog, "A past storm...");
        test::press(dialog, "OK");
        EXPECT_TRUE(dialog.isVisible()) << "the other one was cancelled";
        EXPECT_EQ(ServersSetting::source(), ServersSetting::defaultSource());
        test::press(dialog, "OK");
    });
    script.expect("Past Storm", [](QDialog& dialog) { test::press(dialog, "Cancel"); });
    script.expect("Past Storm", [](QDialog& dialog) {
        test::type(dialog, 0, "2021-12-11");
        test::type(dialog, 1, "02:00");
        test::type(dialog, 2, "10");
        test::press(dialog, "OK");
    });
    EXPECT_EQ(ServersDialog().run(nullptr), Dialog::kOk);
    EXPECT_EQ(ServersSetting::source(), WeatherSource::past);
    EXPECT_EQ(ServersSetting::current().radar, "Raincast's replay of 2021-12-11T02:00Zx10");
    EXPECT_EQ(ServersSetting::cacheBranch(), ".replay-2021-12-11T0200Z");
}

TEST_F(DlgServersTest, WhatIsNoHostKeepsItOpen) {
    DialogScript script;
    script.expect("Servers", [](QDialog& dialog) {
        choose(dialog, "Another server");
        test::type(dialog, 0, "http://radar.example/");
        test::press(dialog, "OK");
        EXPECT_TRUE(dialog.isVisible());
    });
    script.expect("Raincast");
    EXPECT_EQ(ServersDialog().run(nullptr), Dialog::kCancel);
    EXPECT_EQ(ServersSetting::source(), ServersSetting::defaultSource());
    EXPECT_EQ(ServersSetting::hosts().radar, ServersSetting::defaultHost());
}

} // namespace
} // namespace raincast
