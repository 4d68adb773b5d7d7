// SPDX-License-Identifier: MIT
#include "units/dlg_units.h"

#include "core/user_change.h"
#include "page/global_settings_type.h"
#include "units/position_format_type.h"
#include "window/dialog_template.h"

#include <QComboBox>

namespace raincast {

namespace {

const DialogTemplateRecord record{
    {CUnits::CDlgUnits::kTemplate,
     Text::marked("Units"),
     {122, 40},
     {
         {0, ControlKind::label, Text::marked("&Distance:"), {4, 4, 42, 14}},
         {CUnits::CDlgUnits::kUnits, ControlKind::comboBox, {}, {48, 4, 70, 14}},
         {0, ControlKind::label, Text::marked("&Position:"), {4, 22, 42, 14}},
         {CUnits::CDlgUnits::kPositionFormats, ControlKind::comboBox, {}, {48, 22, 70, 14}},
         {Dialog::kCancel, ControlKind::pushButton, Text::marked("Cancel"), {}},
     },
     {}}};

} // namespace

class CUnits::SettingsType : public CAppPaged::GlobalSettingsType {
public:
    SettingsType() : GlobalSettingsType(Text::marked("Units"), Text::marked("Units"), kRankUnits) {}

    void open(QWidget* window) const override { CDlgUnits().run(window); }

private:
    static const SettingsType s_type;
};

const CUnits::SettingsType CUnits::SettingsType::s_type;

bool CUnits::CDlgUnits::onInitialise() {
    const CUnits& chosen = global();
    m_units.attach(*control<QComboBox>(kUnits));
    for (std::uint32_t unit = 0; unit < kDistanceUnitCount; ++unit) {
        m_units.add(distanceUnitName(unit));
    }
    m_units.select(static_cast<int>(chosen.units));
    m_formats.attach(*control<QComboBox>(kPositionFormats));
    for (const PositionFormatType* format : PositionFormatType::all()) {
        m_formats.add(Text::of(format->name()));
        if (format == chosen.positionFormat) {
            m_formats.select(m_formats.count() - 1);
        }
    }
    return true;
}

void CUnits::CDlgUnits::onOk() {
    CUnits chosen;
    if (m_units.selected() >= 0) {
        chosen.units = static_cast<std::uint32_t>(m_units.selected());
    }
    chosen.speed = speedUnitFor(chosen.units);
    if (const int format = m_formats.selected(); format >= 0) {
        chosen.positionFormat = PositionFormatType::all()[static_cast<std::size_t>(format)];
    }
    setGlobal(chosen);
    UserChange::announce();
    Dialog::onOk();
}

} // namespace raincast
