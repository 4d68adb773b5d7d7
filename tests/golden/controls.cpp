// SPDX-License-Identifier: MIT
#include "controls.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QSlider>

namespace raincast::test {

namespace {

constexpr int kRowsTold = 4;

bool isControl(const QWidget& widget) {
    return qobject_cast<const QAbstractButton*>(&widget) != nullptr ||
           qobject_cast<const QLabel*>(&widget) != nullptr ||
           qobject_cast<const QLineEdit*>(&widget) != nullptr ||
           qobject_cast<const QComboBox*>(&widget) != nullptr ||
           qobject_cast<const QSlider*>(&widget) != nullptr ||
           qobject_cast<const QAbstractItemView*>(&widget) != nullptr;
}

QString rowsOf(const QAbstractItemModel& model) {
    QStringList texts{QStringLiteral("%1 rows").arg(model.rowCount())};
    for (int row = 0; row < qMin(model.rowCount(), kRowsTold); ++row) {
        texts.append(model.index(row, 0).data().toString());
    }
    return texts.join(QStringLiteral(" | "));
}

QString textOf(const QWidget& widget) {
    if (const auto* button = qobject_cast<const QAbstractButton*>(&widget)) {
        return button->text().remove(u'&');
    }
    if (const auto* label = qobject_cast<const QLabel*>(&widget)) {
        return label->buddy() != nullptr ? label->text().remove(u'&') : label->text();
    }
    if (const auto* edit = qobject_cast<const QLineEdit*>(&widget)) {
        return edit->text();
    }
    if (const auto* combo = qobject_cast<const QComboBox*>(&widget)) {
        return combo->currentText();
    }
    const auto* list = qobject_cast<const QAbstractItemView*>(&widget);
    return list != nullptr ? rowsOf(*list->model()) : QString();
}

QString nameOf(const QWidget& widget) {
    const QString name = widget.objectName();
    const QString kind = QString::fromLatin1(widget.metaObject()->className());
    return name.isEmpty() || name.startsWith(u"qt_") ? kind : kind + u' ' + name;
}

void collect(const QWidget& window, const QWidget& from, std::vector<SeenControl>& controls) {
    const auto children = from.findChildren<QWidget*>(Qt::FindDirectChildrenOnly);
    for (const QWidget* child : children) {
        if (child->isWindow() || !child->isVisibleTo(&window)) {
            continue;
        }
        if (isControl(*child)) {
            const QRect place(child->mapTo(&window, QPoint(0, 0)), child->size());
            controls.push_back({child, nameOf(*child), place, textOf(*child)});
        } else {
            collect(window, *child, controls);
        }
    }
}

template<typename Menu>
void collectEntries(const Menu& menu, std::vector<SeenControl>& controls) {
    for (const QAction* entry : menu.actions()) {
        if (entry->isVisible() && !entry->isSeparator()) {
            controls.push_back(
                {&menu, QStringLiteral("entry"), menu.actionGeometry(const_cast<QAction*>(entry)),
                 entry->text().remove(u'&')}
            );
        }
    }
}

QString line(const SeenControl& control) {
    return QStringLiteral("%1 %2,%3 %4x%5 \"%6\"")
        .arg(control.name)
        .arg(control.place.x())
        .arg(control.place.y())
        .arg(control.place.width())
        .arg(control.place.height())
        .arg(QString(control.text).replace(u'\n', QStringLiteral("\\n")));
}

} // namespace

std::vector<SeenControl> controlsOf(const QWidget& window) {
    std::vector<SeenControl> controls;
    if (const auto* menu = qobject_cast<const QMenu*>(&window)) {
        collectEntries(*menu, controls);
        return controls;
    }
    for (const QMenuBar* bar : window.findChildren<QMenuBar*>()) {
        collectEntries(*bar, controls);
    }
    collect(window, window, controls);
    return controls;
}

QStringList describe(const QWidget& window) {
    QStringList lines{QStringLiteral("window %1x%2 \"%3\"")
                          .arg(window.width())
                          .arg(window.height())
                          .arg(window.windowTitle())};
    for (const SeenControl& control : controlsOf(window)) {
        lines.append(line(control));
    }
    return lines;
}

} // namespace raincast::test
