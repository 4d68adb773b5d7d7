// SPDX-License-Identifier: MIT
#pragma once

#include <QCheckBox>
#include <QDialog>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QScrollArea>

#include <gtest/gtest.h>

namespace raincast::test {

/// Every control of a dialog in its client area, none on another, none smaller than its text needs.
inline void expectCleanLayout(const QDialog& open) {
    const QWidget* const client = open.findChild<QScrollArea*>()->widget();
    const auto controls = client->findChildren<QWidget*>(Qt::FindDirectChildrenOnly);
    for (const QWidget* one : controls) {
        EXPECT_TRUE(client->rect().contains(one->geometry())) << qPrintable(one->objectName());
        for (const QWidget* other : controls) {
            EXPECT_TRUE(one == other || !one->geometry().intersects(other->geometry()));
        }
        if (const auto* label = qobject_cast<const QLabel*>(one)) {
            const int height = label->wordWrap() ? label->heightForWidth(label->width())
                                                 : label->sizeHint().height();
            EXPECT_GE(label->height(), height) << qPrintable(label->text());
            EXPECT_TRUE(label->wordWrap() || label->width() >= label->sizeHint().width());
        } else if (qobject_cast<const QListWidget*>(one) == nullptr) {
            EXPECT_GE(one->height(), one->sizeHint().height()) << qPrintable(one->objectName());
        }
        if (const auto* box = qobject_cast<const QCheckBox*>(one)) {
            EXPECT_GE(box->width(), box->sizeHint().width());
        }
        if (const auto* button = qobject_cast<const QPushButton*>(one)) {
            EXPECT_GT(button->width(), button->fontMetrics().horizontalAdvance(button->text()));
        }
    }
}

} // namespace raincast::test
