// SPDX-License-Identifier: MIT
#include "net/curl_library.h"

#include <QLibrary>

#include <cstdlib>

namespace raincast {

namespace {

// The version of the library's binary interface, the same since 2006.
constexpr int kInterface = 4;

template<typename Function>
bool find(QLibrary& library, const char* name, Function& function) {
    function = reinterpret_cast<Function>(library.resolve(name));
    return function != nullptr;
}

bool findAll(QLibrary& library, CurlLibrary& curl) {
    return find(library, "curl_easy_init", curl.easyInit) &&
           find(library, "curl_easy_cleanup", curl.easyCleanup) &&
           find(library, "curl_easy_setopt", curl.easySetopt) &&
           find(library, "curl_easy_getinfo", curl.easyGetinfo) &&
           find(library, "curl_easy_strerror", curl.easyStrerror) &&
           find(library, "curl_multi_init", curl.multiInit) &&
           find(library, "curl_multi_cleanup", curl.multiCleanup) &&
           find(library, "curl_multi_add_handle", curl.multiAddHandle) &&
           find(library, "curl_multi_remove_handle", curl.multiRemoveHandle) &&
           find(library, "curl_multi_perform", curl.multiPerform) &&
           find(library, "curl_multi_info_read", curl.multiInfoRead) &&
           find(library, "curl_multi_poll", curl.multiPoll) &&
           find(library, "curl_multi_wakeup", curl.multiWakeup) &&
           find(library, "curl_slist_append", curl.slistAppend) &&
           find(library, "curl_slist_free_all", curl.slistFreeAll);
}

const CurlLibrary* load() {
    static QLibrary library(QStringLiteral("curl"), kInterface);
    static CurlLibrary curl;
    decltype(&curl_global_init) init = nullptr;
    static decltype(&curl_global_cleanup) cleanUp = nullptr;
    const bool whole = findAll(library, curl) && find(library, "curl_global_init", init) &&
                       find(library, "curl_global_cleanup", cleanUp);
    if (!whole || init(CURL_GLOBAL_DEFAULT) != CURLE_OK) {
        return nullptr;
    }
    std::atexit([] { cleanUp(); });
    return &curl;
}

} // namespace

const CurlLibrary* CurlLibrary::get() {
    static const CurlLibrary* const loaded = load();
    return loaded;
}

} // namespace raincast
