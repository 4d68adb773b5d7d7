// SPDX-License-Identifier: MIT
#pragma once

#include <QFont>
#include <QHash>
#include <QString>

namespace raincast {

/// What the picture of a text depends on, as a key to those that are kept.
struct TextKey {
    int dotsPerInch;
    int mostWidth; ///< in pixels; 0 without a limit
    QFont font;
    QString text;

    friend bool operator==(const TextKey&, const TextKey&) = default;
    friend std::size_t qHash(const TextKey& key, std::size_t seed) {
        return qHashMulti(seed, key.dotsPerInch, key.mostWidth, key.font, key.text);
    }
};

} // namespace raincast
