// SPDX-License-Identifier: MIT
#pragma once

class QString;
class QWidget;

namespace raincast {

enum class MessageIcon { none, exclamation, stop };

/// Shows a message with an "OK" button and waits until it is closed. Where nobody may be asked
/// (Modal) it returns at once.
void messageBox(
    QWidget* parent, const QString& text, const QString& caption,
    MessageIcon icon = MessageIcon::none
);

} // namespace raincast
