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

/// What letter is looked for: the beginnings of words come first, letters with an accent, which
/// have no key of their own everywhere, last.
struct Wanted {
    bool atWord;
    bool plain;
};
constexpr Wanted kWanted[] = {{true, true}, {false, true}, {false, false}};

/// Where a letter stands that is not taken.
std::optional<qsizetype> freePlace(QStringView text, const QSet<QChar>& taken, Wanted wanted) {
    for (qsizetype i = 0; i < text.size(); ++i) {
        const bool fits = (!wanted.atWord || beginsWord(text, i)) &&
                          (!wanted.plain || text[i].decomposition().isEmpty());
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
        std::optional<qsizetype> place;
        for (const Wanted& wanted : kWanted) {
            place = place ? place : freePlace(text, taken, wanted);
        }
        if (place) {
            taken.insert(text[*place].toLower());
            text.insert(*place, u'&');
        }
    }
    return texts;
}

} // namespace raincast
