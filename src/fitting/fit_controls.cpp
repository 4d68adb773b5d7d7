// SPDX-License-Identifier: MIT
#include "fitting/fit_controls.h"

#include "fitting/fit_text.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFontMetrics>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStyle>

#include <algorithm>
#include <map>

namespace raincast {

namespace {

using Controls = std::vector<QWidget*>;

// Of a field, at most this part goes to its label.
constexpr double kMostTaken = 0.2;

/// What a control needs beside its text, across.
int frameOf(const QWidget& control) {
    if (qobject_cast<const QPushButton*>(&control) != nullptr) {
        return 2 * control.style()->pixelMetric(QStyle::PM_ButtonMargin, nullptr, &control);
    }
    if (const auto* const box = qobject_cast<const QCheckBox*>(&control)) {
        const QSize text = box->fontMetrics().size(Qt::TextShowMnemonic, box->text());
        return box->sizeHint().width() - text.width();
    }
    return 0;
}

QString textOf(const QWidget& control) {
    if (const auto* const button = qobject_cast<const QAbstractButton*>(&control)) {
        return button->text();
    }
    const auto* const label = qobject_cast<const QLabel*>(&control);
    return label != nullptr && !label->wordWrap() ? label->text() : QString();
}

void setText(QWidget& control, const QString& text) {
    if (auto* const button = qobject_cast<QAbstractButton*>(&control)) {
        button->setText(text);
    } else if (auto* const label = qobject_cast<QLabel*>(&control)) {
        label->setText(text);
    }
}

/// How much wider a control should be.
int lacking(const QWidget& control) {
    const QString text = textOf(control);
    const int width = control.fontMetrics().size(Qt::TextShowMnemonic, text).width();
    return text.isEmpty() ? 0 : width + frameOf(control) - control.width();
}

/// The field to the right of a label; null without one.
QWidget* fieldBeside(const QWidget& label, const Controls& controls) {
    const auto found = std::find_if(controls.begin(), controls.end(), [&label](QWidget* other) {
        const bool field = qobject_cast<QLineEdit*>(other) != nullptr ||
                           qobject_cast<QComboBox*>(other) != nullptr;
        return field && other->y() == label.y() && other->x() >= label.geometry().right();
    });
    return found == controls.end() ? nullptr : *found;
}

void takeFromField(QWidget& label, const Controls& controls) {
    QWidget* const field = fieldBeside(label, controls);
    if (field == nullptr || qobject_cast<QLabel*>(&label) == nullptr) {
        return;
    }
    const int taken = std::min(lacking(label), static_cast<int>(field->width() * kMostTaken));
    label.resize(label.width() + taken, label.height());
    field->setGeometry(field->geometry().adjusted(taken, 0, 0, 0));
}

void fitAcross(QWidget& control, const Controls& controls) {
    if (lacking(control) > 0) {
        takeFromField(control, controls);
    }
    if (lacking(control) > 0) {
        const int room = control.width() - frameOf(control);
        setText(control, broken(textOf(control), control.fontMetrics(), room));
        narrowUntil(control, [&control] { return lacking(control) <= 0; });
    }
}

int neededHeight(const QWidget& control) {
    const auto* const label = qobject_cast<const QLabel*>(&control);
    if (label != nullptr && label->wordWrap()) {
        return label->heightForWidth(label->width());
    }
    return textOf(control).isEmpty() ? 0 : control.sizeHint().height();
}

/// What rows lack in height, by their upper edges.
using Rows = std::map<int, int>;

int sum(Rows::const_iterator from, Rows::const_iterator to) {
    int total = 0;
    for (; from != to; ++from) {
        total += from->second;
    }
    return total;
}

} // namespace

int fitControls(const Controls& controls) {
    Rows rows;
    for (QWidget* control : controls) {
        fitAcross(*control, controls);
        const int more = neededHeight(*control) - control->height();
        if (more > 0) {
            rows[control->y()] = std::max(rows[control->y()], more);
        }
    }
    for (QWidget* control : controls) {
        const int top = control->y();
        const int bottom = top + control->height();
        // What stands beside several rows, such as a list, grows with them.
        const int inside = sum(rows.upper_bound(top), rows.lower_bound(bottom));
        const int own = std::max(neededHeight(*control) - control->height(), 0);
        control->setGeometry(
            control->x(), top + sum(rows.begin(), rows.lower_bound(top)), control->width(),
            control->height() + inside + own
        );
    }
    return sum(rows.begin(), rows.end());
}

} // namespace raincast
