// SPDX-License-Identifier: MIT
#include "layout_rules.h"

#include "controls.h"
#include "warnings/warning_row_delegate.h"
#include "window/row_delegate.h"
#include "window/screen_metrics.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QPushButton>
#include <QRegularExpression>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyleOptionButton>
#include <QStyleOptionComboBox>
#include <QStyleOptionFrame>
#include <QToolButton>

#include <algorithm>
#include <iterator>

namespace raincast::test {

namespace {

// Room that a text has in its control, and what it takes; the latter is empty for no text.
struct TextFit {
    QSize room;
    QSize text;
};

QSize textSize(const QWidget& widget, const QString& text) {
    return widget.fontMetrics().size(Qt::TextShowMnemonic, text);
}

TextFit fitOf(const QAbstractButton& button, QStyle::SubElement contents) {
    QStyleOptionButton option;
    option.initFrom(&button);
    option.text = button.text();
    const QRect room = button.style()->subElementRect(contents, &option, &button);
    // A button's frame may be drawn thinner than the style's margin says; its height is its own.
    return {{room.width(), button.height()}, textSize(button, button.text())};
}

TextFit fitOf(const QLabel& label) {
    const QPixmap picture = label.pixmap(Qt::ReturnByValue);
    if (!picture.isNull()) {
        return {label.size(), picture.deviceIndependentSize().toSize()};
    }
    if (label.wordWrap()) {
        return {label.size(), {0, label.heightForWidth(label.width())}};
    }
    return {label.size(), label.sizeHint()};
}

TextFit fitOf(const QLineEdit& edit) {
    QStyleOptionFrame option;
    option.initFrom(&edit);
    option.lineWidth = edit.style()->pixelMetric(QStyle::PM_DefaultFrameWidth, &option, &edit);
    const QRect room = edit.style()->subElementRect(QStyle::SE_LineEditContents, &option, &edit);
    return {room.size(), {textSize(edit, edit.text()).width(), edit.fontMetrics().height()}};
}

TextFit fitOf(const QComboBox& combo) {
    QStyleOptionComboBox option;
    option.initFrom(&combo);
    const QRect room = combo.style()->subControlRect(
        QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, &combo
    );
    int widest = 0;
    for (int i = 0; i < combo.count(); ++i) {
        widest = qMax(widest, combo.fontMetrics().horizontalAdvance(combo.itemText(i)));
    }
    return {{room.width(), combo.height()}, {widest, combo.fontMetrics().height()}};
}

TextFit fitOf(const QWidget& widget) {
    if (const auto* label = qobject_cast<const QLabel*>(&widget)) {
        return fitOf(*label);
    }
    if (const auto* edit = qobject_cast<const QLineEdit*>(&widget)) {
        return fitOf(*edit);
    }
    if (const auto* combo = qobject_cast<const QComboBox*>(&widget)) {
        return fitOf(*combo);
    }
    if (const auto* button = qobject_cast<const QPushButton*>(&widget)) {
        return fitOf(*button, QStyle::SE_PushButtonContents);
    }
    if (qobject_cast<const QToolButton*>(&widget) != nullptr) {
        return {widget.size(), widget.sizeHint()};
    }
    if (const auto* box = qobject_cast<const QAbstractButton*>(&widget)) {
        return fitOf(*box, QStyle::SE_CheckBoxContents);
    }
    return {};
}

QString told(const SeenControl& control) {
    return QStringLiteral("%1 \"%2\"").arg(control.name, control.text);
}

void checkText(const SeenControl& control, QStringList& complaints) {
    const auto [room, text] = fitOf(*control.widget);
    if (text.width() > room.width() || text.height() > room.height()) {
        complaints.append(QStringLiteral("%1 is cut: it takes %2x%3 and has %4x%5")
                              .arg(told(control))
                              .arg(text.width())
                              .arg(text.height())
                              .arg(room.width())
                              .arg(room.height()));
    }
}

// The rows of a list that are too long for it and do not end in an ellipsis.
void checkRows(const QListView& list, const SeenControl& control, QStringList& complaints) {
    const auto* const delegate = list.itemDelegate();
    const bool shortens = dynamic_cast<const RowDelegate*>(delegate) != nullptr ||
                          dynamic_cast<const WarningRowDelegate*>(delegate) != nullptr;
    for (int row = 0; row < list.model()->rowCount(); ++row) {
        const QModelIndex index = list.model()->index(row, 0);
        const int width = list.fontMetrics().horizontalAdvance(index.data().toString());
        if (!shortens && width > list.viewport()->width()) {
            complaints.append(QStringLiteral("%1: row %2 is cut").arg(told(control)).arg(row));
        }
    }
}

// Seven millimetres for what is pressed: the control, or each row of a list.
void checkTouch(const SeenControl& control, QStringList& complaints) {
    const ScreenMetrics screen = ScreenMetrics::current();
    if (!screen.touch || qobject_cast<const QLabel*>(control.widget) != nullptr) {
        return;
    }
    int height = control.place.height();
    if (const auto* list = qobject_cast<const QListView*>(control.widget)) {
        height = list->model()->rowCount() > 0 ? list->sizeHintForRow(0) : screen.touchHeight();
    }
    if (height < screen.touchHeight()) {
        complaints.append(QStringLiteral("%1 is %2 pixels high, a finger needs %3")
                              .arg(told(control))
                              .arg(height)
                              .arg(screen.touchHeight()));
    }
}

// What a control must lie within: the content of the area that scrolls it, else the window. A menu
// scrolls up and down by itself where the style says so.
QRect reachOf(const QWidget& window, const QWidget& widget) {
    const bool menu = qobject_cast<const QMenu*>(&window) != nullptr;
    if (menu && window.style()->styleHint(QStyle::SH_Menu_Scrollable, nullptr, &window) != 0) {
        return {0, 0, window.width(), std::max(window.height(), window.sizeHint().height())};
    }
    for (const QWidget* above = widget.parentWidget(); above != nullptr && above != &window;
         above = above->parentWidget()) {
        const QWidget* const viewport = above->parentWidget();
        const auto* area =
            qobject_cast<const QScrollArea*>(viewport ? viewport->parentWidget() : nullptr);
        if (area != nullptr && area->widget() == above) {
            return {above->mapTo(&window, QPoint(0, 0)), above->size()};
        }
    }
    return window.rect();
}

// Whether a scroll area's bars reach all of its content; up and down is bother enough.
void checkScrolling(const QWidget& window, QStringList& complaints) {
    for (const QScrollArea* area : window.findChildren<QScrollArea*>()) {
        const QSize hidden = area->widget()->size() - area->viewport()->size();
        if (hidden.width() > area->horizontalScrollBar()->maximum() ||
            hidden.height() > area->verticalScrollBar()->maximum()) {
            complaints.append(QStringLiteral("not all of it can be scrolled to"));
        }
        if (hidden.width() > 0) {
            complaints.append(QStringLiteral("it must be scrolled sideways"));
        }
    }
}

void checkPlaces(
    const QWidget& window, const std::vector<SeenControl>& controls, QStringList& complaints
) {
    for (auto one = controls.begin(); one != controls.end(); ++one) {
        if (!reachOf(window, *one->widget).contains(one->place)) {
            complaints.append(told(*one) + QStringLiteral(" lies outside"));
        }
        for (auto other = std::next(one); other != controls.end(); ++other) {
            if (one->place.intersects(other->place)) {
                complaints.append(told(*one) + QStringLiteral(" overlaps ") + told(*other));
            }
        }
    }
}

} // namespace

QStringList complaintsAbout(const QWidget& window) {
    QStringList complaints;
    const std::vector<SeenControl> controls = controlsOf(window);
    const QSize room = ScreenMetrics::current().available;
    if (window.width() > room.width() || window.height() > room.height()) {
        complaints.append(QStringLiteral("it is larger than the screen"));
    }
    checkPlaces(window, controls, complaints);
    checkScrolling(window, complaints);
    for (const SeenControl& control : controls) {
        checkText(control, complaints);
        checkTouch(control, complaints);
        if (const auto* list = qobject_cast<const QListView*>(control.widget)) {
            checkRows(*list, control, complaints);
        }
    }
    return complaints;
}

namespace {

// Names, units and what the user or somebody else has written.
const QRegularExpression& data() {
    static const QRegularExpression names(QStringLiteral(
        "Raincast|NOAA/NWS|MUX|SOX|UTC|PDT|dBZ|gpsd|Ctrl|Esc|PNG|GIF|[A-Z]{2}:.*|/.*|~/.*|"
        "\\d+ ?(mm|km|m|MB|kB|GB|bytes)|[A-Z][a-z]+ ([A-Z][a-z]+|beach|span).*|20\\d\\d-.*|"
        "Ocean Beach|Monterey|Chart table|Tides & moon"
    ));
    return names;
}

bool isEnglish(QString text) {
    static const QRegularExpression accents(QStringLiteral("[\u00C0-\u00FF]"));
    static const QRegularExpression word(QStringLiteral("[A-Za-z]{3,}"));
    if (text.contains(accents)) {
        return false;
    }
    return text.remove(data()).contains(word);
}

QStringList textsOf(const SeenControl& control) {
    QStringList texts;
    if (const auto* list = qobject_cast<const QAbstractItemView*>(control.widget)) {
        for (int row = 0; row < list->model()->rowCount(); ++row) {
            texts += list->model()->index(row, 0).data().toString();
        }
    } else if (const auto* combo = qobject_cast<const QComboBox*>(control.widget)) {
        for (int row = 0; row < combo->count(); ++row) {
            texts += combo->itemText(row);
        }
    } else if (qobject_cast<const QLineEdit*>(control.widget) == nullptr) {
        texts += control.text;
    }
    return texts + QStringList{control.widget->toolTip(), control.widget->accessibleName()};
}

} // namespace

QStringList englishIn(const QWidget& window) {
    QStringList english;
    const auto check = [&english](const QString& text) {
        if (isEnglish(text)) {
            english += QStringLiteral("\"%1\" is in English").arg(text);
        }
    };
    check(window.windowTitle());
    for (const SeenControl& control : controlsOf(window)) {
        for (const QString& text : textsOf(control)) {
            check(text);
        }
    }
    return english;
}

} // namespace raincast::test
