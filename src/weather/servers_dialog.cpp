// SPDX-License-Identifier: MIT
#include "weather/servers_dialog.h"

#include "page/global_settings_type.h"
#include "replay/past_storm_dialog.h"
#include "weather/weather_dialogs.h"
#include "window/dialog_template.h"
#include "window/message_box.h"

#include <QComboBox>

#include <array>

namespace raincast {

namespace {

enum Control {
    kRadarServer = 1080,
    kBasemapServer = 1081,
    kSource = 1082,
    kRadarLabel = 1083,
    kBasemapLabel = 1084
};

const DialogTemplateRecord record{
    {kServersDialog,
     Text::marked("Servers"),
     {122, 100},
     {
         {0, ControlKind::label, Text::marked("&Weather comes from:"), {4, 4, 114, 12}},
         {kSource, ControlKind::comboBox, {}, {4, 18, 114, 14}},
         {kRadarLabel,
          ControlKind::label,
          Text::marked("&Radar images (HOST[:PORT]):"),
          {4, 38, 114, 12}},
         {kRadarServer, ControlKind::edit, {}, {4, 51, 114, 14}},
         {kBasemapLabel,
          ControlKind::label,
          Text::marked("&Counties and cities:"),
          {4, 68, 114, 12}},
         {kBasemapServer, ControlKind::edit, {}, {4, 81, 114, 14}},
         {Dialog::kCancel, ControlKind::pushButton, Text::marked("Cancel"), {}},
     },
     {}}};

struct SourceRow {
    WeatherSource source;
    const char* text;
};
constexpr std::array kSourceRows = {
    SourceRow{WeatherSource::live, Text::marked("Live radar (NOAA)")},
    SourceRow{WeatherSource::sample, Text::marked("Sample weather")},
    SourceRow{WeatherSource::past, Text::marked("A past storm...")},
    SourceRow{WeatherSource::another, Text::marked("Another server")},
};

/// Offers the dialog in the "Settings" menu.
class ServersSettingsType : public CAppPaged::GlobalSettingsType {
public:
    ServersSettingsType()
        : GlobalSettingsType(Text::marked("Servers"), Text::marked("Servers"), kRankServers) {}

    void open(QWidget* window) const override { ServersDialog().run(window); }
};

const ServersSettingsType settingsType;

} // namespace

ServersDialog::ServersDialog() : Dialog(kServersDialog) {}

bool ServersDialog::onInitialise() {
    m_sources.attach(*control<QComboBox>(kSource));
    for (const SourceRow& row : kSourceRows) {
        m_sources.add(Text::of(row.text));
        if (row.source == ServersSetting::source()) {
            m_sources.select(m_sources.count() - 1);
        }
    }
    const RadarServers hosts = ServersSetting::hosts();
    setText(kRadarServer, hosts.radar);
    setText(kBasemapServer, hosts.basemap);
    enableHosts();
    return true;
}

WeatherSource ServersDialog::chosen() const {
    return kSourceRows.at(static_cast<std::size_t>(m_sources.selected())).source;
}

void ServersDialog::onDialogCommand(int id, QWidget* sender, int notification) {
    if (id == kSource) {
        enableHosts();
    }
    Dialog::onDialogCommand(id, sender, notification);
}

void ServersDialog::enableHosts() {
    for (const int id : {kRadarLabel, kRadarServer, kBasemapLabel, kBasemapServer}) {
        control(id)->setEnabled(chosen() == WeatherSource::another);
    }
}

void ServersDialog::onOk() {
    const RadarServers typed{text(kRadarServer).trimmed(), text(kBasemapServer).trimmed()};
    const bool typedCounts = chosen() == WeatherSource::another;
    if (typedCounts && (!isServer(typed.radar) || !isServer(typed.basemap))) {
        messageBox(
            widget(),
            Text::tr("A server is a host name or address, and if need be a colon and a port"),
            QStringLiteral("Raincast")
        );
        return;
    }
    if (chosen() == WeatherSource::past) {
        PastStormChoice storm = ServersSetting::past();
        if (PastStormDialog(storm).run(widget()) == kOk) {
            ServersSetting::choosePast(storm);
            Dialog::onOk();
        }
        return;
    }
    ServersSetting::choose(chosen(), typedCounts ? typed : ServersSetting::hosts());
    Dialog::onOk();
}

} // namespace raincast
