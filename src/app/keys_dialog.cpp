// SPDX-License-Identifier: MIT
#include "app/keys_dialog.h"

#include "window/dialog_template.h"
#include "window/row_delegate.h"

#include <QListWidget>

namespace raincast {

namespace {

constexpr int kList = 1094;

const DialogTemplateRecord keysDialog{
    {KeysDialog::kTemplate,
     Text::marked("Keys"),
     {124, 120},
     {{kList, ControlKind::listBox, Text::marked("Keys"), {2, 2, 120, 116}}},
     {100, 50}}};

struct KeyRow {
    const char* what;
    const char* keys;
};

constexpr KeyRow kRows[] = {
    {Text::marked("Zoom in, out"), "+, -"},
    {Text::marked("Show the whole image"), Text::marked("Home, 0")},
    {Text::marked("Move the map"), Text::marked("Arrows")},
    {Text::marked("Follow the position"), Text::marked("L")},
    {Text::marked("Show a product"), Text::marked("1 to 7")},
    {Text::marked("Pause the loop, play on"), Text::marked("Space")},
    {Text::marked("Step back, forward"), Text::marked(", and .")},
    {Text::marked("List warnings, dismiss one"), "W, D"},
    {Text::marked("Update"), "F5"},
    {Text::marked("End measuring, stop updating"), "Esc"},
    {Text::marked("Menu of the place in the middle"), Text::marked("Menu")},
    {Text::marked("Previous, next page"), Text::marked("PgUp, PgDn")},
    {Text::marked("Undo a deletion"), "Ctrl+Z"},
    {Text::marked("Open the menu"), "F10, Alt"},
    {Text::marked("Full screen"), "F11"},
    {Text::marked("This sheet"), "F1"},
    {Text::marked("Exit"), "Ctrl+Q"},
};

} // namespace

bool KeysDialog::onInitialise() {
    auto& list = *control<QListWidget>(kList);
    list.setItemDelegate(new RowDelegate(&list));
    for (const KeyRow& row : kRows) {
        const QString what = Text::of(row.what);
        const QString keys = Text::of(row.keys);
        auto* const item = new QListWidgetItem(what, &list);
        item->setData(RowDelegate::kRemarkRole, keys);
        item->setData(Qt::AccessibleTextRole, what + QStringLiteral(": ") + keys);
        item->setToolTip(what + QStringLiteral(": ") + keys);
    }
    list.setCurrentRow(0);
    return true;
}

void KeysDialog::onSize(int /*width*/, int /*height*/) {
    anchor(kList, anchorLeftAndRight | anchorTopAndBottom);
}

} // namespace raincast
