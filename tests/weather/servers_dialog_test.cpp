// SPDX-License-Identifier: MIT
#include "dialog_controls.h"
#include "page/global_settings_type.h"
#include "support/dialog_script.h"
#include "support/qt_app.h"
#include "weather/servers_dialog.h"
#include "weather/servers_setting.h"

#include <algorithm>

namespace raincast {
namespace {

using test::DialogScript;

class DlgServersTest : public test::GuiTest {
protected:
    ~DlgServersTest() override {
        ServersSetting::set({ServersSetting::localServer(), ServersSetting::localServer()});
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

TEST_F(DlgServersTest, OkChangesBoth) {
    DialogScript script;
    script.expect("Servers", [](QDialog& dialog) {
        const auto fields = dialog.findChildren<QLineEdit*>();
        ASSERT_EQ(fields.size(), 2);
        EXPECT_EQ(fields[0]->text(), ServersSetting::localServer());
        test::type(dialog, 0, "radar.example");
        test::type(dialog, 1, " maps.example:81 ");
        test::press(dialog, "OK");
    });
    EXPECT_EQ(ServersDialog().run(nullptr), Dialog::kOk);
    EXPECT_EQ(ServersSetting::current().radar, QStringLiteral("radar.example"));
    EXPECT_EQ(ServersSetting::current().basemap, QStringLiteral("maps.example:81"));
}

TEST_F(DlgServersTest, WhatIsNoHostKeepsItOpen) {
    DialogScript script;
    script.expect("Servers", [](QDialog& dialog) {
        test::type(dialog, 0, "http://radar.example/");
        test::press(dialog, "OK");
        EXPECT_TRUE(dialog.isVisible());
    });
    script.expect("Raincast");
    EXPECT_EQ(ServersDialog().run(nullptr), Dialog::kCancel);
    EXPECT_EQ(ServersSetting::current().radar, ServersSetting::localServer());
}

} // namespace
} // namespace raincast
