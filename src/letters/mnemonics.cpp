// SPDX-License-Identifier: MIT
#include "letters/mnemonics.h"

#include <QSet>

#include <optional>

namespace raincast {

namespace {

bool isMark(QStringView text, qsizetype place) {
    return text[place] == u'&';
}

bool beginsWord(QStringView text, qsizetype place) {
    return place == 0 || !text[place - 1].isLetterOrNumber();
}

/// Where a letter stands that is not taken; at a word's beginning, if that is asked for.
std::optional<qsizetype> freePlace(QStringView text, const QSet<QChar>& taken, bool atWord) {
    for (qsizetype i = 0; i < text.size(); ++i) {
        const bool fits = !atWord || beginsWord(text, i);
        if (fits && text[i].isLetterOrNumber() && !taken.contains(text[i].toLower())) {
            return i;
        }
    }
    return std::nullopt;
}

} // namespace

QChar mnemonicOf(QStringView text) {
    for (qsizetype i = 0; i + 1 < text.size(); ++i) {
        if (isMark(text, i)) {
            if (!isMark(text, i + 1)) {
                return text[i + 1].toLower();
            }
            ++i; // it is seen
        }
    }
    return {};
}

QStringList withMnemonics(QStringList texts) {
    QSet<QChar> taken;
    for (const QString& text : texts) {
        taken.insert(mnemonicOf(text));
    }
    for (QString& text : texts) {
        if (!mnemonicOf(text).isNull()) {
            continue;
        }
        auto place = freePlace(text, taken, true);
        place = place ? place : freePlace(text, taken, false);
        if (place) {
            taken.insert(text[*place].toLower());
            text.insert(*place, u'&');
        }
    }
    return texts;
}

} // namespace raincast
