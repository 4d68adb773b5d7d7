// SPDX-License-Identifier: MIT
#include "weather/dlg_animation.h"

#include "core/number_in_range.h"
#include "weather/weather_dialogs.h"
#include "window/dialog_template.h"
#include "window/message_box.h"

#include <QCheckBox>
#include <QLineEdit>

namespace raincast {

namespace {

enum Control { kAnimate = 1050, kFrames = 1051, kInterval = 1052, kAutoUpdate = 1053 };

const DialogTemplateRecord record{
    {kAnimationDialog,
     Text::marked("Animation"),
     {122, 86},
     {
         {kAnimate, ControlKind::checkBox, Text::marked("&Enable Animation"), {4, 4, 114, 14}},
         {0, ControlKind::label, Text::marked("&Number of frames:"), {4, 20, 62, 14}},
         {kFrames, ControlKind::edit, {}, {68, 20, 20, 14}},
         {0, ControlKind::label, Text::marked("&Minimum frame interval:"), {4, 36, 114, 14}},
         {kInterval, ControlKind::edit, {}, {68, 52, 20, 14}},
         {0, ControlKind::label, Text::marked("minutes"), {91, 52, 28, 14}},
         {kAutoUpdate, ControlKind::checkBox, Text::marked("&Auto-Update "), {4, 68, 114, 14}},
         {Dialog::kCancel, ControlKind::pushButton, Text::marked("Cancel"), {}},
     },
     {}}};

} // namespace

CDlgAnimation::CDlgAnimation(RadarState& state) : Dialog(kAnimationDialog), m_state(state) {}

bool CDlgAnimation::onInitialise() {
    control<QCheckBox>(kAnimate)->setChecked(m_state.animate);
    setNumber(kFrames, "%d", m_state.frameCount);
    setNumber(kInterval, "%d", m_state.frameInterval);
    control<QCheckBox>(kAutoUpdate)->setChecked(m_state.autoUpdate);
    enableNumbers();
    return true;
}

void CDlgAnimation::onDialogCommand(int id, QWidget* sender, int notification) {
    if (id == kAnimate) {
        enableNumbers();
    }
    Dialog::onDialogCommand(id, sender, notification);
}

void CDlgAnimation::enableNumbers() {
    const bool enabled = control<QCheckBox>(kAnimate)->isChecked();
    control(kFrames)->setEnabled(enabled);
    control(kInterval)->setEnabled(enabled);
}

void CDlgAnimation::onOk() {
    m_state.animate = control<QCheckBox>(kAnimate)->isChecked();
    if (m_state.animate && !takeNumbers()) {
        messageBox(
            widget(),
            Text::tr("The number of frames must be 2 to 25, and the interval must be 1 to "
                     "60 minutes"),
            QStringLiteral("Raincast")
        );
        return;
    }
    m_state.autoUpdate = control<QCheckBox>(kAutoUpdate)->isChecked();
    Dialog::onOk();
}

bool CDlgAnimation::takeNumbers() {
    const auto frames = numberInRange(text(kFrames), kLeastFrames, kMostFrames);
    const auto interval = numberInRange(text(kInterval), 1, kMostFrameInterval);
    if (!frames || !interval) {
        return false;
    }
    m_state.frameCount = *frames;
    m_state.frameInterval = *interval;
    return true;
}

} // namespace raincast
