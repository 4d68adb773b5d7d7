// SPDX-License-Identifier: MIT
#include "replay/past_storm_dialog.h"

#include "core/number_in_range.h"
#include "window/dialog_template.h"
#include "window/message_box.h"

#include <QCheckBox>
#include <QComboBox>

namespace raincast {

namespace {

enum Control { kStorm = 1090, kDate = 1091, kTime = 1092, kSpeed = 1093, kKeep = 1094 };

const DialogTemplateRecord record{
    {PastStormDialog::kTemplate,
     Text::marked("Past Storm"),
     {122, 108},
     {
         {0, ControlKind::label, Text::marked("&Storm:"), {4, 4, 114, 12}},
         {kStorm, ControlKind::comboBox, {}, {4, 18, 114, 14}},
         {0, ControlKind::label, Text::marked("Be&gins on:"), {4, 38, 44, 14}},
         {kDate, ControlKind::edit, {}, {50, 38, 52, 14}},
         {0, ControlKind::label, Text::marked("&At:"), {4, 55, 44, 14}},
         {kTime, ControlKind::edit, {}, {50, 55, 32, 14}},
         {0, ControlKind::label, QStringLiteral("UTC"), {85, 55, 30, 14}},
         {0, ControlKind::label, Text::marked("S&peed:"), {4, 72, 44, 14}},
         {kSpeed, ControlKind::edit, {}, {50, 72, 20, 14}},
         {0, ControlKind::label, Text::marked("times"), {73, 72, 30, 14}},
         {kKeep, ControlKind::checkBox, Text::marked("&Keep its pictures"), {4, 90, 114, 14}},
         {Dialog::kCancel, ControlKind::pushButton, Text::marked("Cancel"), {}},
     },
     {}}};

} // namespace

PastStormDialog::PastStormDialog(PastStormChoice& choice) : Dialog(kTemplate), m_choice(choice) {}

bool PastStormDialog::onInitialise() {
    m_storms.attach(*control<QComboBox>(kStorm));
    for (const PastStorm& storm : pastStorms()) {
        m_storms.add(storm.row());
        if (storm.replay().begin == m_choice.replay.begin) {
            m_storms.select(m_storms.count() - 1);
        }
    }
    m_storms.add(Text::tr("Another one"));
    if (m_storms.selected() < 0) {
        m_storms.select(m_storms.count() - 1);
    }
    showBegin(m_choice.replay);
    setNumber(kSpeed, "%d", m_choice.replay.speed);
    control<QCheckBox>(kKeep)->setChecked(m_choice.keeps);
    return true;
}

void PastStormDialog::showBegin(const Replay& replay) {
    const QString text = textOf(Replay{replay.begin});
    setText(kDate, text.left(10));
    setText(kTime, text.mid(11, 5));
}

void PastStormDialog::onDialogCommand(int id, QWidget* sender, int notification) {
    const int row = m_storms.selected();
    if (id == kStorm && row >= 0 && row + 1 < m_storms.count()) {
        showBegin(pastStorms()[static_cast<std::size_t>(row)].replay());
    }
    Dialog::onDialogCommand(id, sender, notification);
}

void PastStormDialog::onOk() {
    const auto begin = readReplay(text(kDate).trimmed() + u'T' + text(kTime).trimmed() + u'Z');
    const auto speed = numberInRange(text(kSpeed), 1, Replay::kMostSpeed);
    if (!begin || !speed || !canReplay(*begin)) {
        messageBox(
            widget(),
            Text::tr("A past storm begins between 2020-01-01 and now, at a time like 02:00; "
                     "its speed must be 1 to %1")
                .arg(Replay::kMostSpeed),
            QStringLiteral("Raincast")
        );
        return;
    }
    m_choice = {{begin->begin, *speed}, control<QCheckBox>(kKeep)->isChecked()};
    for (const PastStorm& storm : pastStorms()) {
        if (storm.replay().begin == begin->begin) {
            m_choice.siteId = QString::fromUtf16(storm.siteId);
        }
    }
    Dialog::onOk();
}

} // namespace raincast
