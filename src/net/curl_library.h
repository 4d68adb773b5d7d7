// SPDX-License-Identifier: MIT
#pragma once

#include <curl/curl.h>

namespace raincast {

/// The functions of libcurl that transfers use, loaded when the first transfer begins. If they were
/// linked in, every start of the viewer would load libcurl and the thirty libraries below it. That
/// takes a fifth of the time to the first paint, though many starts show only stored images.
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
    decltype(&curl_multi_wakeup) multiWakeup = nullptr;
    decltype(&curl_slist_append) slistAppend = nullptr;
    decltype(&curl_slist_free_all) slistFreeAll = nullptr;

    /// Loads the library at the first call and keeps it until the process ends; null where libcurl
    /// is not installed.
    [[nodiscard]] static const CurlLibrary* get();
};

} // namespace raincast
