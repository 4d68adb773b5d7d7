// SPDX-License-Identifier: MIT
#pragma once

#include <QFrame>
#include <QString>

#include <functional>

class QLabel;
class QPushButton;

namespace raincast {

/// A sentence for the user and a button beside it, for a row at the bottom of a window. It is not
/// shown at first.
class ActionRow : public QFrame {
public:
    /// `pressed` is called when the button is.
    ActionRow(const QString& action, std::function<void()> pressed);

    void setText(const QString& text);
    /// What the button says.
    void setAction(const QString& action);
    [[nodiscard]] QString text() const;

private:
    QLabel* m_text;
    QPushButton* m_button;
};

} // namespace raincast
