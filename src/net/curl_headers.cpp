// SPDX-License-Identifier: MIT
#include "net/curl_headers.h"

#include <algorithm>

namespace raincast {

namespace {

bool isControl(char c) {
    return ('\0' <= c && c < ' ') || c == '\x7F';
}

} // namespace

void CurlHeaders::add(const QByteArray& line) {
    if (std::any_of(line.begin(), line.end(), isControl)) {
        return;
    }
    if (curl_slist* const longer = m_curl.slistAppend(m_list.get(), line.constData())) {
        static_cast<void>(m_list.release());
        m_list.reset(longer);
    }
}

} // namespace raincast
