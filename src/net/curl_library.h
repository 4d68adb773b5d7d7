// SPDX-License-Identifier: MIT
#pragma once

#include <curl/curl.h>

namespace raincast {

/// The functions of libcurl that transfers use, found when the first of them is about to begin.
/// Linked in, libcurl and the thirty libraries below it would be loaded at every start of the
/// viewer, a fifth of the time to its first paint, though many a start shows what is stored.
struct CurlLibrary {
    decltype(&curl_easy_init) easyInit = nullptr;
    decltype(&curl_easy_cleanup) easyCleanup = nullptr;
    decltype(&curl_easy_setopt) easySetopt = nullptr;
    decltype(&curl_easy_getinfo) easyGetinfo = nullptr;
    decltype(&curl_easy_strerror) easyStrerror = nullptr;
    decltype(&curl_multi_init) multiInit = nullptr;
    decltype(&curl_multi_cleanup) multiCleanup = nullptr;
    decltype(&curl_multi_add_handle) multiAddHandle = nullptr;
    decltype(&curl_multi_remove_handle) multiRemoveHandle = nullptr;
    decltype(&curl_multi_perform) multiPerform = nullptr;
    decltype(&curl_multi_info_read) multiInfoRead = nullptr;
    decltype(&curl_multi_poll) multiPoll = nullptr;
    decltype(&curl_slist_append) slistAppend = nullptr;
    decltype(&curl_slist_free_all) slistFreeAll = nullptr;

    /// Loaded at the first call, and kept for as long as the process lives; null where libcurl is
    /// not installed.
    [[nodiscard]] static const CurlLibrary* get();
};

} // namespace raincast
