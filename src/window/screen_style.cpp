// SPDX-License-Identifier: MIT
#include "window/screen_style.h"

#include "window/screen_metrics.h"

#include <QApplication>
#include <QStyleFactory>
#include <QStyleOptionMenuItem>

#include <algorithm>

namespace raincast {

namespace {

bool isHitByFingers(QStyle::ContentsType type, const QStyleOption* option) {
    switch (type) {
    case QStyle::CT_MenuItem: {
        const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
        return item == nullptr || item->menuItemType != QStyleOptionMenuItem::Separator;
    }
    case QStyle::CT_PushButton:
    case QStyle::CT_ToolButton:
    case QStyle::CT_CheckBox:
    case QStyle::CT_RadioButton:
    case QStyle::CT_ComboBox:
    case QStyle::CT_LineEdit:
    case QStyle::CT_ItemViewItem:
    case QStyle::CT_MenuBarItem:
        return true;
    default:
        return false;
    }
}

} // namespace

ScreenStyle::ScreenStyle(QStyle* base, int height) : QProxyStyle(base), m_height(height) {}

int ScreenStyle::styleHint(
    StyleHint hint, const QStyleOption* option, const QWidget* widget, QStyleHintReturn* returnData
) const {
    switch (hint) {
    case SH_Menu_Scrollable:
        return 1;
    case SH_Slider_AbsoluteSetButtons:
        return Qt::LeftButton;
    default:
        return QProxyStyle::styleHint(hint, option, widget, returnData);
    }
}

QSize ScreenStyle::sizeFromContents(
    ContentsType type, const QStyleOption* option, const QSize& contents, const QWidget* widget
) const {
    QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
    if (isHitByFingers(type, option)) {
        size.setHeight(std::max(size.height(), m_height));
    }
    return size;
}

QStyle* makeDesktopStyle() {
    // A style over another one has no name of its own.
    const auto* const over = qobject_cast<const QProxyStyle*>(QApplication::style());
    const QStyle* const desktop = over != nullptr ? over->baseStyle() : QApplication::style();
    return QStyleFactory::create(desktop->name());
}

void useScreenStyle() {
    const ScreenMetrics screen = ScreenMetrics::current();
    const int height = screen.touch ? screen.touchHeight() : 0;
    QApplication::setStyle(new ScreenStyle(makeDesktopStyle(), height));
}

} // namespace raincast
