// SPDX-License-Identifier: MIT
#include "weather/servers_dialog.h"

#include "page/global_settings_type.h"
#include "weather/servers_setting.h"
#include "weather/weather_dialogs.h"
#include "window/dialog_template.h"
#include "window/message_box.h"

namespace raincast {

namespace {

enum Control { kRadarServer = 1080, kBasemapServer = 1081 };

const DialogTemplateRecord record{
    {kServersDialog,
     QStringLiteral("Servers"),
     {122, 68},
     {
         {0, ControlKind::label, QStringLiteral("&Radar images (HOST[:PORT]):"), {4, 4, 114, 12}},
         {kRadarServer, ControlKind::edit, {}, {4, 18, 114, 14}},
         {0, ControlKind::label, QStringLiteral("&Counties and cities:"), {4, 36, 114, 12}},
         {kBasemapServer, ControlKind::edit, {}, {4, 50, 114, 14}},
         {Dialog::kCancel, ControlKind::pushButton, QStringLiteral("Cancel"), {}},
     },
     {}}};

/// Offers the dialog in the "Settings" menu.
class ServersSettingsType : public CAppPaged::GlobalSettingsType {
public:
    ServersSettingsType()
        : GlobalSettingsType(QStringLiteral("Servers"), QStringLiteral("Servers"), kRankServers) {}

    void open(QWidget* window) const override { ServersDialog().run(window); }
};

const ServersSettingsType settingsType;

} // namespace

ServersDialog::ServersDialog() : Dialog(kServersDialog) {}

bool ServersDialog::onInitialise() {
    const RadarServers servers = ServersSetting::current();
    setText(kRadarServer, servers.radar);
    setText(kBasemapServer, servers.basemap);
    return true;
}

void ServersDialog::onOk() {
    const RadarServers servers{text(kRadarServer).trimmed(), text(kBasemapServer).trimmed()};
    if (!isServer(servers.radar) || !isServer(servers.basemap)) {
        messageBox(
            widget(),
            QStringLiteral("A server is a host name or address, and if need be a colon and a port"),
            QStringLiteral("Raincast")
        );
        return;
    }
    ServersSetting::set(servers);
    Dialog::onOk();
}

} // namespace raincast
