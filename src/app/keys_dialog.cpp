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
     QStringLiteral("Keys"),
     {124, 120},
     {{kList, ControlKind::listBox, QStringLiteral("Keys"), {2, 2, 120, 116}}},
     {100, 50}}};

struct KeyRow {
    const char16_t* what;
    const char16_t* keys;
};

constexpr KeyRow kRows[] = {
    {u"Zoom in, out", u"+, -"},
    {u"Show the whole image", u"Home, 0"},
    {u"Move the map", u"Arrows"},
    {u"Follow the position", u"L"},
    {u"Show a product", u"1 to 7"},
    {u"Pause the loop, play on", u"Space"},
    {u"Step back, forward", u", and ."},
    {u"List warnings, dismiss one", u"W, D"},
    {u"Update", u"F5"},
    {u"End measuring, stop updating", u"Esc"},
    {u"Menu of the place in the middle", u"Menu"},
    {u"Previous, next page", u"PgUp, PgDn"},
    {u"Undo a deletion", u"Ctrl+Z"},
    {u"Open the menu", u"F10, Alt"},
    {u"Full screen", u"F11"},
    {u"This sheet", u"F1"},
    {u"Exit", u"Ctrl+Q"},
};

} // namespace

bool KeysDialog::onInitialise() {
    auto& list = *control<QListWidget>(kList);
    list.setItemDelegate(new RowDelegate(&list));
    for (const KeyRow& row : kRows) {
        const QString what = QString::fromUtf16(row.what);
        const QString keys = QString::fromUtf16(row.keys);
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
