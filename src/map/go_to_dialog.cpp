// SPDX-License-Identifier: MIT
#include "map/go_to_dialog.h"

#include "units/typed_position.h"
#include "units/units.h"
#include "window/dialog_template.h"
#include "window/message_box.h"

#include <QLineEdit>

#include <utility>

namespace raincast {

namespace {

constexpr int kPosition = 1070;
constexpr const char* kCaption = Text::marked("Go to Position");

const DialogTemplateRecord record{
    {GoToDialog::kTemplate,
     QString::fromLatin1(kCaption),
     {122, 36},
     {
         {0, ControlKind::label, Text::marked("&Latitude, longitude:"), {4, 4, 114, 12}},
         {kPosition, ControlKind::edit, {}, {4, 18, 114, 14}},
         {Dialog::kCancel, ControlKind::pushButton, Text::marked("Cancel"), {}},
     },
     {}}};

} // namespace

GoToDialog::GoToDialog(GeoPosition from, GoTo goTo)
    : Dialog(kTemplate), m_from(from), m_goTo(std::move(goTo)) {}

bool GoToDialog::onInitialise() {
    setText(kPosition, CUnits::global().formatPosition(m_from).trimmed());
    control<QLineEdit>(kPosition)->selectAll();
    return true;
}

void GoToDialog::onOk() {
    const auto position = typedPosition(text(kPosition));
    if (!position) {
        complain(Text::tr("Not a valid position. Type the latitude first, for example "
                          "41°30.5'N, 105°15'W or 41.5, -105.25"));
    } else if (!m_goTo(*position)) {
        complain(Text::tr("This position is not on the map."));
    } else {
        Dialog::onOk();
    }
}

void GoToDialog::complain(const QString& message) {
    messageBox(widget(), message, Text::of(kCaption));
}

} // namespace raincast
