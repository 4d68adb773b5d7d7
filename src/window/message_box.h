// SPDX-License-Identifier: MIT
#pragma once

class QString;
class QWidget;

namespace raincast {

enum class MessageIcon { none, exclamation, stop };

/// Shows a message with an "OK" button and waits until it is closed. In a run without a person
/// (Modal) it returns at once.
void messageBox(
    QWidget* parent, const QString& text, const QString& caption,
    MessageIcon icon = MessageIcon::none
);

/// What a question was answered with.
enum class Answer {
    first,  ///< the first of its buttons
    second, ///< the second one
    none    ///< it was not asked, or was closed by the end of the program
};

/// The buttons of a question, the first one by default. Esc is the second one of the former pair;
/// for the latter, whose second button cannot be undone, it is the first.
enum class Question { yesNo, retryDiscard };

/// Asks a question and waits for the answer. In a run without a person there is no answer.
[[nodiscard]] Answer askQuestion(
    QWidget* parent, const QString& text, const QString& caption, Question question,
    MessageIcon icon = MessageIcon::exclamation
);

} // namespace raincast
