// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractButton>
#include <QDialog>
#include <QLineEdit>
#include <QTest>

#include <gtest/gtest.h>

namespace raincast::test {

/// The button or check box of a dialog with that text, mnemonics left out.
inline QAbstractButton* button(QDialog& dialog, const QString& text) {
    for (auto* candidate : dialog.findChildren<QAbstractButton*>()) {
        if (candidate->text().remove(u'&') == text) {
            return candidate;
        }
    }
    ADD_FAILURE() << "no button " << qPrintable(text);
    return nullptr;
}

inline void press(QDialog& dialog, const QString& text) {
    if (QAbstractButton* found = button(dialog, text)) {
        QTest::mouseClick(found, Qt::LeftButton);
    }
}

/// Sets a check box by clicking it if need be.
inline void check(QDialog& dialog, const QString& text, bool wanted) {
    QAbstractButton* box = button(dialog, text);
    if (box != nullptr && box->isChecked() != wanted) {
        QTest::keyClick(box, Qt::Key_Space);
    }
}

/// Types into the n-th edit field, in the order of the Tab key.
inline void type(QDialog& dialog, int field, const QString& text) {
    auto* edit = dialog.findChildren<QLineEdit*>().value(field);
    ASSERT_NE(edit, nullptr);
    edit->selectAll();
    QTest::keyClicks(edit, text);
}

} // namespace raincast::test
