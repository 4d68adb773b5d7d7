// SPDX-License-Identifier: MIT
#include "map/marks_dialog.h"

#include "letters/type_ahead.h"
#include "map/mark_manager.h"
#include "map/mark_names.h"
#include "window/dialog_template.h"
#include "window/dlg_rename.h"
#include "window/message_box.h"
#include "window/row_delegate.h"
#include "window/screen_metrics.h"
#include "window/undo.h"

#include <QIcon>
#include <QListWidget>
#include <QPainter>
#include <QSignalBlocker>

#include <algorithm>
#include <utility>

namespace raincast {

namespace {

enum Control : int {
    kGoTo = Dialog::kOk,
    kClose = Dialog::kCancel,
    kList = 1060,
    kSetTarget = 1061,
    kClearTarget = 1062,
    kRename = 1063,
    kDelete = 1064,
};

// The buttons below the list, row by row, which is the order of the Tab key as well.
constexpr int kButtons[] = {kGoTo, kSetTarget, kClearTarget, kRename, kDelete, kClose};
constexpr int kButtonCount = static_cast<int>(std::size(kButtons));

DialogControl button(int id, const QString& text, int column, int row) {
    const DialogPlace place{2 + 61 * column, 104 + 16 * row, 59, 14};
    return {id, ControlKind::pushButton, text, place};
}

const DialogTemplateRecord marksDialog{
    {MarksDialog::kTemplate,
     Text::marked("Marks"),
     {124, 152},
     {
         {kList, ControlKind::listBox, Text::marked("Marks"), {2, 2, 120, 100}},
         button(kGoTo, Text::marked("Go to"), 0, 0),
         button(kSetTarget, Text::marked("Set as Target"), 1, 0),
         button(kClearTarget, Text::marked("Clear Target"), 0, 1),
         button(kRename, Text::marked("Rename"), 1, 1),
         button(kDelete, Text::marked("Delete"), 0, 2),
         button(kClose, Text::marked("Close"), 1, 2),
     },
     {124, 92}}};

// Rings around a dot.
QIcon targetIcon(const QListWidget& list) {
    const int extent = list.iconSize().width();
    const double ratio = list.devicePixelRatioF();
    QPixmap picture(list.iconSize() * ratio);
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPointF middle(extent / 2.0, extent / 2.0);
    painter.setPen(QPen(QColor(200, 0, 0), extent / 8.0));
    painter.setBrush(Qt::white);
    painter.drawEllipse(middle, 0.4 * extent, 0.4 * extent);
    painter.setBrush(QColor(200, 0, 0));
    painter.drawEllipse(middle, 0.1 * extent, 0.1 * extent);
    painter.end();
    QIcon icon(picture);
    icon.addPixmap(picture, QIcon::Selected); // without the selection's tint
    return icon;
}

} // namespace

MarksDialog::MarksDialog(
    CMarkManager& marks, Undo* undo, const std::optional<GeoPosition>& from, GoTo goTo
)
    : Dialog(kTemplate), m_marks(marks), m_undo(undo), m_from(from), m_goTo(std::move(goTo)) {}

bool MarksDialog::onInitialise() {
    list().setItemDelegate(new RowDelegate(&list()));
    list().setUniformItemSizes(true); // there may be thousands
    const int extent = list().fontMetrics().ascent();
    list().setIconSize({extent, extent});
    new TypeAhead(list());
    host(m_undo, [this] {
        fill();
        updateButtons();
    });
    fill();
    updateButtons();
    return true;
}

QListWidget& MarksDialog::list() const {
    return *control<QListWidget>(kList);
}

int MarksDialog::currentRow() const {
    const auto selected = list().selectedItems();
    return selected.isEmpty() ? -1 : list().row(selected.first());
}

const COverlayMark* MarksDialog::selected() const {
    const int row = currentRow();
    return row < 0 ? nullptr : m_rows[static_cast<std::size_t>(row)].mark;
}

void MarksDialog::fill() {
    const QSignalBlocker quiet(list());
    list().clear();
    m_rows = listMarks(m_marks.marks(), m_from);
    for (std::size_t i = 0; i < m_rows.size(); ++i) {
        list().addItem(new QListWidgetItem);
    }
    showRows();
    list().setCurrentRow(m_rows.empty() ? -1 : 0);
}

void MarksDialog::showRows() {
    for (std::size_t i = 0; i < m_rows.size(); ++i) {
        show(*list().item(static_cast<int>(i)), m_rows[i]);
    }
}

void MarksDialog::show(QListWidgetItem& item, const MarkRow& row) const {
    item.setText(shownMarkName(row.mark->name));
    item.setToolTip(item.text());
    const bool isTarget = m_marks.isTarget(*row.mark);
    item.setIcon(isTarget ? targetIcon(list()) : QIcon());
    item.setData(
        Qt::AccessibleTextRole, isTarget ? item.text() + Text::tr(", target") : item.text()
    );
    if (m_from || !row.mark->isPlaced()) {
        item.setData(RowDelegate::kRemarkRole, row.wayText());
    }
}

void MarksDialog::updateButtons() {
    const COverlayMark* const mark = selected();
    const bool placed = mark != nullptr && mark->isPlaced();
    control(kGoTo)->setEnabled(placed && m_goTo);
    control(kSetTarget)->setEnabled(placed && !m_marks.isTarget(*mark));
    control(kClearTarget)->setEnabled(m_marks.hasTarget());
    control(kRename)->setEnabled(mark != nullptr);
    control(kDelete)->setEnabled(mark != nullptr);
}

void MarksDialog::onDialogCommand(int id, QWidget* control, int notification) {
    if (id == kList && notification == doubleClicked) {
        onOk();
        return;
    }
    edit(id);
    Dialog::onDialogCommand(id, control, notification);
}

void MarksDialog::edit(int id) {
    static constexpr std::pair<int, void (MarksDialog::*)()> kEdits[] = {
        {kList, &MarksDialog::updateButtons},
        {kSetTarget, &MarksDialog::setTarget},
        {kClearTarget, &MarksDialog::clearTarget},
        {kRename, &MarksDialog::rename},
        {kDelete, &MarksDialog::deleteMark}};
    for (const auto& [command, operation] : kEdits) {
        if (command == id) {
            (this->*operation)();
        }
    }
}

void MarksDialog::onOk() {
    const COverlayMark* const mark = selected();
    if (mark == nullptr || !mark->isPlaced() || !m_goTo) {
        return;
    }
    if (m_goTo(mark->position())) {
        end(kOk);
        return;
    }
    messageBox(widget(), Text::tr("This mark is not on the map."), Text::tr("Marks"));
}

void MarksDialog::setTarget() {
    if (const COverlayMark* const mark = selected()) {
        m_marks.setTarget(*mark);
        showRows();
        updateButtons();
    }
}

void MarksDialog::clearTarget() {
    m_marks.clearTarget();
    showRows();
    updateButtons();
}

void MarksDialog::rename() {
    const COverlayMark* const mark = selected();
    if (mark == nullptr) {
        return;
    }
    CDlgRename dialog(mark->name);
    if (dialog.run(widget()) == kOk && !dialog.name().trimmed().isEmpty()) {
        m_marks.rename(*mark, dialog.name().trimmed());
        showRows();
    }
}

void MarksDialog::deleteMark() {
    const int row = currentRow();
    if (row < 0) {
        return;
    }
    const CMarkManager::Kept kept = m_marks.keep(*selected());
    m_marks.remove(*selected());
    if (m_undo != nullptr) {
        m_undo->offer(Undo::deleted(shownMarkName(kept.data.name)), [&marks = m_marks, kept] {
            marks.putBack(kept);
        });
    }
    {
        const QSignalBlocker quiet(list());
        m_rows.erase(m_rows.begin() + row);
        delete list().takeItem(row);
        list().setCurrentRow(std::min(row, list().count() - 1));
    }
    updateButtons();
}

// As many buttons in a row as have room, all of one size, and the list above them.
void MarksDialog::onSize(int width, int height) {
    const int margin = dialogMargin(ScreenMetrics::current().logPixelsY);
    const QSize least = control(kSetTarget)->sizeHint();
    const int columns = 3 * (least.width() + margin) + margin <= width ? 3 : 2;
    const int rows = kButtonCount / columns;
    int buttonHeight = 0; // one of them may have two lines
    for (const int id : kButtons) {
        buttonHeight = std::max(buttonHeight, control(id)->height());
    }
    const int buttonWidth = (width - margin) / columns - margin;
    const int top = height - rows * (buttonHeight + margin);
    for (int i = 0; i < kButtonCount; ++i) {
        const QPoint place(
            margin + i % columns * (buttonWidth + margin),
            top + i / columns * (buttonHeight + margin)
        );
        control(kButtons[i])->setGeometry({place, QSize(buttonWidth, buttonHeight)});
    }
    list().setGeometry(margin, margin, width - 2 * margin, top - 2 * margin);
}

} // namespace raincast
