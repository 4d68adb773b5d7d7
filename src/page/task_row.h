// SPDX-License-Identifier: MIT
#pragma once

#include "page/page_display.h"
#include "window/action_row.h"

#include <QPointer>
#include <QString>

#include <functional>

namespace raincast {

/// A line at the bottom of the window about what an item does in the background, with a button. It
/// stays when another page is shown.
class TaskRow {
public:
    /// `pressed` is called when the button is; the line is gone then. The item is borrowed.
    TaskRow(CPageDisplay::CItem& item, std::function<void()> pressed);
    ~TaskRow();
    TaskRow(const TaskRow&) = delete;
    TaskRow& operator=(const TaskRow&) = delete;

    /// Shows a sentence and what the button says. Without a window nothing is shown.
    void say(const QString& text, const QString& action);
    /// Another sentence, if one is shown.
    void goOn(const QString& text);

private:
    CPageDisplay::CItem& m_item;
    std::function<void()> m_pressed;
    QPointer<ActionRow> m_row; ///< of the window
};

} // namespace raincast
