// SPDX-License-Identifier: MIT
#include "window/dlg_rename.h"

#include "window/dialog_template.h"

#include <utility>

namespace raincast {

namespace {

constexpr int kName = 1044;

const DialogTemplateRecord renameDialog{
    {CDlgRename::kTemplate,
     Text::marked("Rename"),
     {120, 20},
     {
         {kName, ControlKind::edit, {}, {4, 4, 112, 14}},
         {Dialog::kCancel, ControlKind::pushButton, Text::marked("Cancel"), {}},
     },
     {}}};

} // namespace

CDlgRename::CDlgRename(QString name, QString caption)
    : Dialog(kTemplate), m_name(std::move(name)), m_caption(std::move(caption)) {}

bool CDlgRename::onInitialise() {
    if (!m_caption.isEmpty()) {
        setCaption(m_caption);
    }
    setText(kName, m_name);
    control(kName)->setAccessibleName(Text::tr("Name"));
    return true;
}

void CDlgRename::onOk() {
    m_name = text(kName);
    Dialog::onOk();
}

} // namespace raincast
