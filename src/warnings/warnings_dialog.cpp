// SPDX-License-Identifier: MIT
#include "warnings/warnings_dialog.h"

#include "core/clock.h"
#include "warnings/warning_row_delegate.h"
#include "warnings/warning_text_dialog.h"
#include "warnings/warning_words.h"
#include "window/dialog_template.h"
#include "window/screen_metrics.h"

#include <QListWidget>

#include <utility>

namespace raincast {

namespace {

constexpr int kList = 1090;

const DialogTemplateRecord warningsDialog{
    {WarningsDialog::kTemplate,
     Text::marked("Warnings"),
     {124, 128},
     {
         {kList, ControlKind::listBox, {}, {2, 2, 120, 108}},
         {Dialog::kOk, ControlKind::pushButton, Text::marked("&Read"), {2, 112, 59, 14}},
         {Dialog::kCancel, ControlKind::pushButton, Text::marked("&Close"), {63, 112, 59, 14}},
     },
     {124, 70}}};

} // namespace

WarningsDialog::WarningsDialog(std::vector<WarningText> warnings)
    : Dialog(kTemplate), m_warnings(std::move(warnings)) {}

QListWidget& WarningsDialog::list() const {
    return *control<QListWidget>(kList);
}

bool WarningsDialog::onInitialise() {
    list().setAccessibleName(Text::tr("Warnings"));
    list().setItemDelegate(new WarningRowDelegate(&list()));
    list().setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list().setVerticalScrollMode(QAbstractItemView::ScrollPerPixel); // a row may be high
    const FileTime now = Clock::current().now();
    for (const WarningText& warning : m_warnings) {
        const QString event = Text::of(warning.event.simplified());
        const QString headline = warning.headline.simplified();
        const QString end = endText(warning.end, now);
        auto* const row = new QListWidgetItem(event, &list());
        row->setData(WarningRowDelegate::kEndRole, end);
        row->setData(WarningRowDelegate::kHeadlineRole, headline);
        row->setData(WarningRowDelegate::kColourRole, coloursOf(warning).ground);
        const QString said = QStringList{event, end, headline}.join(QStringLiteral(", "));
        row->setData(Qt::AccessibleTextRole, said);
    }
    list().setCurrentRow(0);
    return true;
}

void WarningsDialog::onDialogCommand(int id, QWidget* control, int notification) {
    if (id == kList && notification == doubleClicked) {
        onOk();
        return;
    }
    Dialog::onDialogCommand(id, control, notification);
}

void WarningsDialog::onOk() {
    const int row = list().currentRow();
    if (row >= 0) {
        WarningTextDialog(m_warnings[static_cast<std::size_t>(row)]).run(widget());
    }
}

void WarningsDialog::onSize(int width, int height) {
    const int margin = dialogMargin(ScreenMetrics::current().logPixelsY);
    QWidget& read = *control(kOk);
    QWidget& close = *control(kCancel);
    const int half = (width - 3 * margin) / 2;
    const int top = height - margin - read.height();
    read.setGeometry(margin, top, half, read.height());
    close.setGeometry(width - margin - half, top, half, close.height());
    list().setGeometry(margin, margin, width - 2 * margin, top - 2 * margin);
    list().doItemsLayout(); // rows are as high as their texts at this width
}

} // namespace raincast
