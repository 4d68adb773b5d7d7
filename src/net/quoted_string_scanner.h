// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArrayView>
#include <QString>

#include <set>

namespace raincast {

/// Collects every double-quoted string of a byte stream: the link targets of a directory listing.
/// It knows nothing of HTML: a quote opens, the next one closes. Bytes are taken as signed
/// characters, so 0x80 to 0xFF become U+FF80 to U+FFFF. An empty pair gives the empty string.
/// Keeps nothing but the strings and the one being read; text after an unclosed quote is lost.
class QuotedStringScanner {
public:
    /// Found strings go into `strings`, which is borrowed.
    explicit QuotedStringScanner(std::set<QString>& strings) : m_strings(strings) {}

    /// Takes the next bytes; a string may begin in one piece and end in a later one.
    void scan(QByteArrayView bytes);

private:
    void take(QByteArrayView bytes);

    std::set<QString>& m_strings;
    QString m_text; ///< what came since the quote that opened
    bool m_inside = false;
};

} // namespace raincast
