// SPDX-License-Identifier: MIT
#pragma once

#include "net/curl_library.h"

#include <QByteArray>

#include <memory>

namespace raincast {

/// The headers of a request, as libcurl takes them.
class CurlHeaders {
public:
    /// The library is borrowed.
    explicit CurlHeaders(const CurlLibrary& curl) : m_curl(curl) {}

    /// Adds a line "Name: value". One with a control character is left out: parts of it come from
    /// servers and files, and must not become a header of their own.
    void add(const QByteArray& line);

    /// Null without headers; as long as this object lives and none is added.
    [[nodiscard]] curl_slist* list() const { return m_list.get(); }

private:
    struct Deleter {
        void operator()(curl_slist* list) const { CurlLibrary::get()->slistFreeAll(list); }
    };

    const CurlLibrary& m_curl;
    std::unique_ptr<curl_slist, Deleter> m_list;
};

} // namespace raincast
