// SPDX-License-Identifier: MIT
#pragma once

#include "warnings/warning_words.h"

#include <QWidget>

#include <functional>

class QAbstractButton;
class QToolButton;

namespace raincast {

/// The bar across a window's top that warns, in the event's colour: a button with the words, which
/// opens the whole text, and one that dismisses it. A click leaves the keyboard where it is; the
/// Tab key comes to both. It keeps to the top as the window changes its size.
class WarningBar : public QWidget {
public:
    struct Actions {
        std::function<void()> read;
        std::function<void()> dismiss;
        /// It covers so many device pixels of the window's upper part now.
        std::function<void(int height)> covers;
    };

    /// Becomes a child of the window, not shown at first.
    WarningBar(QWidget& window, Actions actions);

    /// Shows the words. What is the same already is not painted again.
    void say(const QString& words, const WarningColours& colours);

    [[nodiscard]] int heightForWidth(int width) const override;

protected:
    bool eventFilter(QObject* window, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    class Words;

    void place();
    [[nodiscard]] int dismissWidth() const;

    Actions m_actions;
    Words* m_words;
    QToolButton* m_dismiss;
};

} // namespace raincast
