// SPDX-License-Identifier: MIT
#include "sharp/detail_dialog.h"

#include "page/global_settings_type.h"
#include "sharp/detail_setting.h"
#include "window/dialog_template.h"

#include <QComboBox>

namespace raincast {

namespace {

enum Control { kChoice = 1190 };
enum Choice { kAutomatic, kSmall };

// What it costs is what loops of 25 frames and layers of the server's take.
const DialogTemplateRecord record{
    {DetailDialog::kTemplate,
     Text::marked("Detail"),
     {122, 128},
     {
         {0, ControlKind::label, Text::marked("&Pictures:"), {4, 4, 114, 12}},
         {kChoice, ControlKind::comboBox, {}, {4, 18, 114, 14}},
         {0,
          ControlKind::label,
          Text::marked("Automatic: zoomed in on a large screen, pictures with twice or four times "
                       "as many pixels each way are fetched behind the others."),
          {4, 38, 114, 38}},
         {0,
          ControlKind::label,
          Text::marked("A frame then takes about 60 or 160 kB more to fetch, the maps of a site "
                       "0.7 or 2 MB once. A loop of 25 takes about 50 MB more memory."),
          {4, 80, 114, 44}},
         {Dialog::kCancel, ControlKind::pushButton, Text::marked("Cancel"), {}},
     },
     {}}};

/// Offers the dialog in the "Settings" menu.
class DetailSettingsType : public CAppPaged::GlobalSettingsType {
public:
    DetailSettingsType()
        : GlobalSettingsType(QStringLiteral("CDetail"), Text::marked("Detail"), kRankDetail) {}

    void open(QWidget* window) const override { DetailDialog().run(window); }
};

const DetailSettingsType settingsType;

} // namespace

DetailDialog::DetailDialog() : Dialog(kTemplate) {}

bool DetailDialog::onInitialise() {
    m_choices.attach(*control<QComboBox>(kChoice));
    m_choices.add(Text::tr("Automatic"));
    m_choices.add(Text::tr("600 × 550 pixels only"));
    m_choices.select(DetailSetting::automatic() ? kAutomatic : kSmall);
    return true;
}

void DetailDialog::onOk() {
    DetailSetting::setAutomatic(m_choices.selected() != kSmall);
    Dialog::onOk();
}

} // namespace raincast
