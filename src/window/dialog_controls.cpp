// SPDX-License-Identifier: MIT
#include "window/dialog_controls.h"

#include "window/dialog_template.h"
#include "window/events.h"
#include "window/row_list.h"
#include "window/screen_metrics.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QFontMetrics>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScroller>
#include <QStyle>

#include <algorithm>
#include <cmath>

namespace raincast {

namespace {

// From this height on a label has more than one line.
constexpr int kTwoLines = 16;

bool wraps(const DialogControl& control) {
    return control.kind == ControlKind::label && control.place.height >= kTwoLines;
}

// A control's signal becomes a command of the dialog.
template<typename Control, typename Signal>
void sendOn(QDialog& dialog, Control* control, int id, Signal signal, int notification) {
    QObject::connect(control, signal, &dialog, [&dialog, control, id, notification] {
        sendCommand(dialog, id, control, notification);
    });
}

QWidget* makeListBox(QDialog& dialog, QWidget& client, int id) {
    auto* list = new RowList(&client);
    list->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    if (ScreenMetrics::current().touch) {
        list->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
        QScroller::grabGesture(list->viewport(), QScroller::TouchGesture);
    }
    sendOn(dialog, list, id, &QListWidget::itemSelectionChanged, selectionChanged);
    sendOn(dialog, list, id, &QListWidget::itemDoubleClicked, doubleClicked);
    return list;
}

QWidget* makeComboBox(QDialog& dialog, QWidget& client, int id) {
    auto* combo = new QComboBox(&client);
    sendOn(dialog, combo, id, &QComboBox::currentIndexChanged, selectionChanged);
    return combo;
}

QWidget* makeEdit(QDialog& dialog, QWidget& client, const DialogControl& control) {
    auto* edit = new QLineEdit(control.text, &client);
    sendOn(dialog, edit, control.id, &QLineEdit::textChanged, textChanged);
    return edit;
}

QWidget* makeLabel(QWidget& client, const DialogControl& control) {
    auto* label = new QLabel(Text::of(control.text), &client);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(wraps(control));
    return label;
}

template<typename Button>
QWidget* makeButton(QDialog& dialog, QWidget& client, const DialogControl& control) {
    auto* button = new Button(Text::of(control.text), &client);
    sendOn(dialog, button, control.id, &QAbstractButton::clicked, clicked);
    return button;
}

QWidget* make(QDialog& dialog, QWidget& client, const DialogControl& control) {
    switch (control.kind) {
    case ControlKind::label:
        return makeLabel(client, control);
    case ControlKind::pushButton:
        return makeButton<QPushButton>(dialog, client, control);
    case ControlKind::checkBox:
        return makeButton<QCheckBox>(dialog, client, control);
    case ControlKind::edit:
        return makeEdit(dialog, client, control);
    case ControlKind::listBox:
        return makeListBox(dialog, client, control.id);
    case ControlKind::comboBox:
        return makeComboBox(dialog, client, control.id);
    case ControlKind::picture:
        break;
    }
    return new QLabel(&client); // a picture; the dialog sets it
}

// The size that a control needs to show its text and to be hit; 0 where any extent will do.
QSize needed(const QWidget& widget, const DialogControl& control) {
    switch (control.kind) {
    case ControlKind::pushButton: {
        // The hint is wider than need be: styles ask for a handsome least width.
        const int margin = widget.style()->pixelMetric(QStyle::PM_ButtonMargin, nullptr, &widget);
        const int text =
            widget.fontMetrics().size(Qt::TextShowMnemonic, Text::of(control.text)).width();
        return {text + 2 * margin, widget.sizeHint().height()};
    }
    case ControlKind::label:
        return wraps(control) ? QSize() : widget.sizeHint();
    case ControlKind::checkBox:
        return widget.sizeHint();
    case ControlKind::edit:
    case ControlKind::comboBox:
        return {0, widget.sizeHint().height()};
    case ControlKind::listBox:
    case ControlKind::picture:
        break;
    }
    return {};
}

double grown(double unit, int pixels, int units) {
    return units > 0 ? std::max(unit, static_cast<double>(pixels) / units) : unit;
}

// The average width of a character as dialog units have it: that of the 52 letters.
double averageCharacterWidth(const QFontMetrics& metrics) {
    const auto letters = QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz");
    return static_cast<double>(metrics.horizontalAdvance(letters)) / letters.size();
}

} // namespace

DialogControls makeControls(QDialog& dialog, QWidget& client, const DialogTemplate& content) {
    DialogControls controls;
    QLabel* label = nullptr;
    for (const DialogControl& control : content.controls) {
        QWidget* const widget = make(dialog, client, control);
        widget->setObjectName(QString::number(control.id));
        if (control.kind == ControlKind::listBox || control.kind == ControlKind::comboBox) {
            widget->setAccessibleName(Text::of(control.text));
        }
        if (label != nullptr && control.kind != ControlKind::label) {
            label->setBuddy(widget);
        }
        label = control.kind == ControlKind::label ? static_cast<QLabel*>(widget) : nullptr;
        controls.push_back(widget);
    }
    return controls;
}

QSize DialogUnits::toPixels(const QSize& units) const {
    return {
        static_cast<int>(std::ceil(units.width() * x)),
        static_cast<int>(std::ceil(units.height() * y))};
}

DialogUnits
fittingUnits(const QWidget& client, const DialogTemplate& content, const DialogControls& controls) {
    const QFontMetrics metrics = client.fontMetrics();
    DialogUnits units{averageCharacterWidth(metrics) / 4, metrics.height() / 8.0};
    for (std::size_t i = 0; i < controls.size(); ++i) {
        const DialogControl& control = content.controls[i];
        const QSize pixels = needed(*controls[i], control);
        units.x = grown(units.x, pixels.width(), control.place.width);
        units.y = grown(units.y, pixels.height(), control.place.height);
    }
    // Wrapped texts last: their height depends on the width that they got.
    for (std::size_t i = 0; i < controls.size(); ++i) {
        const DialogControl& control = content.controls[i];
        if (wraps(control)) {
            const int width = static_cast<int>(control.place.width * units.x);
            units.y = grown(units.y, controls[i]->heightForWidth(width), control.place.height);
        }
    }
    return units;
}

void placeControls(
    const DialogUnits& units, const DialogTemplate& content, const DialogControls& controls
) {
    for (std::size_t i = 0; i < controls.size(); ++i) {
        const DialogPlace& place = content.controls[i].place;
        QSize size = units.toPixels({place.width, place.height});
        const QSize natural = controls[i]->sizeHint();
        size.setWidth(place.width > 0 ? size.width() : natural.width());
        size.setHeight(place.height > 0 ? size.height() : natural.height());
        const QPoint corner(qRound(place.x * units.x), qRound(place.y * units.y));
        controls[i]->setGeometry({corner, size});
    }
}

} // namespace raincast
