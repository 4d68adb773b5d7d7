// SPDX-License-Identifier: MIT
#include "window/combo_list.h"

#include "fitting/fit_text.h"

#include <QComboBox>
#include <QSignalBlocker>
#include <QStyle>
#include <QStyleOptionComboBox>

namespace raincast {

namespace {

/// Whether the longest of its texts fits beside the arrow.
bool hasRoom(const QComboBox& box) {
    QStyleOptionComboBox option;
    option.initFrom(&box);
    const int room =
        box.style()
            ->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, &box)
            .width();
    for (int row = 0; row < box.count(); ++row) {
        if (box.fontMetrics().horizontalAdvance(box.itemText(row)) > room) {
            return false;
        }
    }
    return true;
}

} // namespace

void ComboList::attach(QComboBox& comboBox) {
    Window::attach(comboBox);
}

QComboBox* ComboList::comboBox() const {
    return static_cast<QComboBox*>(widget());
}

void ComboList::clear() {
    if (QComboBox* const box = comboBox()) {
        const QSignalBlocker quiet(box);
        box->clear();
    }
}

void ComboList::add(const QString& text, const QVariant& datum) {
    if (QComboBox* const box = comboBox()) {
        const QSignalBlocker quiet(box);
        const int row = box->currentIndex();
        box->addItem(text, datum);
        box->setCurrentIndex(row);
        narrowUntil(*box, [box] { return hasRoom(*box); });
    }
}

int ComboList::count() const {
    const QComboBox* const box = comboBox();
    return box != nullptr ? box->count() : 0;
}

void ComboList::select(int row) {
    if (QComboBox* const box = comboBox()) {
        const QSignalBlocker quiet(box);
        box->setCurrentIndex(row);
        if (row < 0 || row >= box->count()) {
            box->setCurrentIndex(-1);
        }
    }
}

int ComboList::selected() const {
    const QComboBox* const box = comboBox();
    return box != nullptr ? box->currentIndex() : -1;
}

QString ComboList::selectedText() const {
    const QComboBox* const box = comboBox();
    return box != nullptr ? box->currentText() : QString();
}

QVariant ComboList::selectedDatum() const {
    const QComboBox* const box = comboBox();
    return box != nullptr ? box->currentData() : QVariant();
}

} // namespace raincast
