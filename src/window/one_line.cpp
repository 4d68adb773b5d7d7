// SPDX-License-Identifier: MIT
#include "window/one_line.h"

#include <algorithm>

namespace raincast {

namespace {

// Longer names come from a damaged file only, and would stall the layout of menus and lists.
constexpr qsizetype kMostCharacters = 100;

bool breaksLine(QChar unit) {
    const QChar::Category category = unit.category();
    return category == QChar::Other_Control || category == QChar::Separator_Line ||
           category == QChar::Separator_Paragraph;
}

} // namespace

QString oneLine(QString name) {
    if (name.size() > kMostCharacters) {
        name = name.left(kMostCharacters - 1) + QChar(0x2026);
    }
    std::replace_if(name.begin(), name.end(), breaksLine, u' ');
    return name;
}

} // namespace raincast
