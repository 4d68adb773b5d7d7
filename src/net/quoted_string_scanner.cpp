// SPDX-License-Identifier: MIT
#include "net/quoted_string_scanner.h"

namespace raincast {

// <li><a href="MUX_20190519_0446_N0R.gif">MUX_20190519_0446_N0R.gif</a></li>
void QuotedStringScanner::scan(QByteArrayView bytes) {
    while (!bytes.isEmpty()) {
        const qsizetype quote = bytes.indexOf('"');
        take(quote < 0 ? bytes : bytes.first(quote));
        if (quote < 0) {
            return;
        }
        if (m_inside) {
            m_strings.insert(m_text);
            m_text.clear();
        }
        m_inside = !m_inside;
        bytes = bytes.sliced(quote + 1);
    }
}

void QuotedStringScanner::take(QByteArrayView bytes) {
    if (!m_inside) {
        return;
    }
    for (const char byte : bytes) {
        m_text.append(QChar(static_cast<char16_t>(static_cast<signed char>(byte))));
    }
}

} // namespace raincast
