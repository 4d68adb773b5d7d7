// SPDX-License-Identifier: MIT
#include "map/dlg_gps_vector.h"

#include "page/global_settings_type.h"
#include "window/dialog_template.h"

#include <QApplication>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <limits>

namespace raincast {

namespace {

const DialogTemplateRecord record{
    {COverlayGPSPosition::CDlgSetup::kTemplate,
     Text::marked("GPS Vector"),
     {122, 22},
     {
         {0, ControlKind::label, Text::marked("&Length of the arrow:"), {4, 4, 66, 14}},
         {COverlayGPSPosition::CDlgSetup::kMinutes, ControlKind::edit, {}, {72, 4, 20, 14}},
         {0, ControlKind::label, Text::marked("minutes"), {94, 4, 26, 14}},
         {Dialog::kCancel, ControlKind::pushButton, Text::marked("Cancel"), {}},
     },
     {}}};

using Number = std::numeric_limits<std::int32_t>;

std::int32_t wholeMinutes(float minutes) {
    // The largest number that a float and 32 bits share ends where they part.
    return minutes < static_cast<float>(Number::max()) ? static_cast<std::int32_t>(minutes)
                                                       : Number::max();
}

std::int32_t numberIn(const QString& text) {
    const long number = std::strtol(text.toLatin1().constData(), nullptr, 10);
    return static_cast<std::int32_t>(std::clamp<long>(number, Number::min(), Number::max()));
}

} // namespace

class COverlayGPSPosition::SettingsType : public CAppPaged::GlobalSettingsType {
public:
    SettingsType()
        : GlobalSettingsType(
              QStringLiteral("COverlayGPSPosition"), Text::marked("GPS Vector"), kRankGpsOverlay
          ) {}

    void open(QWidget* window) const override { CDlgSetup().run(window); }

private:
    static const SettingsType s_type;
};

const COverlayGPSPosition::SettingsType COverlayGPSPosition::SettingsType::s_type;

bool COverlayGPSPosition::CDlgSetup::onInitialise() {
    setNumber(kMinutes, "%.d", wholeMinutes(vectorScale())); // nothing for 0
    return true;
}

void COverlayGPSPosition::CDlgSetup::onOk() {
    const std::int32_t minutes = numberIn(text(kMinutes));
    if (minutes < 0) {
        QApplication::beep();
        return;
    }
    setVectorScale(static_cast<float>(minutes));
    Dialog::onOk();
}

} // namespace raincast
