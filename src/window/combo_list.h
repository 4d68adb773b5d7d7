// SPDX-License-Identifier: MIT
#pragma once

#include "window/window.h"

#include <QVariant>

class QComboBox;

namespace raincast {

/// A drop-down list: rows of text, each with a datum, one of them selected. It is bound to a combo
/// box with attach(); unbound, it is empty and takes nothing. The owner's own filling and
/// selecting sends no commands.
class ComboList : public Window {
public:
    void attach(QComboBox& comboBox);

    void clear();
    /// Adds a row at the end. The first one is not selected by that.
    void add(const QString& text, const QVariant& datum = {});
    [[nodiscard]] int count() const;

    /// Selects a row; a number that is not a row's selects none.
    void select(int row);
    /// The selected row, -1 for none.
    [[nodiscard]] int selected() const;
    [[nodiscard]] QString selectedText() const;
    [[nodiscard]] QVariant selectedDatum() const;

private:
    [[nodiscard]] QComboBox* comboBox() const;
};

} // namespace raincast
