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

// Measured with products of widespread rain.
const DialogTemplateRecord record{
    {DetailDialog::kTemplate,
     Text::marked("Detail"),
     {122, 100},
     {
         {0, ControlKind::label, Text::marked("&Pictures:"), {4, 4, 114, 12}},
         {kChoice, ControlKind::comboBox, {}, {4, 18, 114, 14}},
         {0,
          ControlKind::label,
          Text::marked("Automatic: sharp pictures where a large screen has room. Each frame then "
                       "takes up to 0.1 MB more to fetch (0.4 MB at the closest zoom), the maps of "
                       "a site 0.6 MB, a loop of 25 about 50 MB of memory."),
          {4, 38, 114, 60}},
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
