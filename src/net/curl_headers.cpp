// SPDX-License-Identifier: MIT
#include "net/curl_headers.h"

#include <algorithm>
#include <locale>

namespace raincast {

void CurlHeaders::add(const QByteArray& line) {
    const auto isControl = [](char c) { return std::iscntrl(c, std::locale::classic()); };
    if (std::any_of(line.begin(), line.end(), isControl)) {
        return;
    }
    if (curl_slist* const longer = m_curl.slistAppend(m_list.get(), line.constData())) {
        static_cast<void>(m_list.release());
        m_list.reset(longer);
    }
}

} // namespace raincast
