// SPDX-License-Identifier: MIT
#pragma once

#include "net/curl_library.h"
#include "net/http_settings.h"
#include "net/stall_meter.h"

#include <QByteArray>
#include <QString>

#include <array>
#include <memory>
#include <optional>

namespace raincast {

/// GET requests to one server, one after the other over one kept-alive connection, read piece by
/// piece as a file is. A thin shell over libcurl: it knows waiting, hooks and limits, but leaves
/// the meaning of a status or of a body that breaks off to its user.
///
/// Sends the agent "Quorvane" and "Pragma: no-cache" with every request. Follows no redirects,
/// keeps and sends no cookies, and speaks nothing but HTTP and HTTPS. Proxies come
/// from the environment (http_proxy, https_proxy, all_proxy, no_proxy), but not for a server of
/// this machine. While it waits a BusyGuard is active and the waiting hook is called; each request
/// is reported to the finished hook once: when it is closed, or when it fails to open.
class HttpSession {
public:
    /// Without libcurl every request fails at once.
    explicit HttpSession(const CurlLibrary* curl = CurlLibrary::get());
    ~HttpSession();
    HttpSession(const HttpSession&) = delete;
    HttpSession& operator=(const HttpSession&) = delete;

    /// Closes the current request and begins one for `url`; waits until the response's headers
    /// have come. False when they do not come; the accessors below then say why.
    [[nodiscard]] bool open(const QByteArray& url);

    /// The HTTP status of the current response; 0 without a response.
    [[nodiscard]] int status() const { return m_status; }

    /// Waits for the next piece of the body: the bytes that have come, one or more, valid until the
    /// next call. Empty at the body's end, also at an early one.
    [[nodiscard]] QByteArrayView read();

    /// Whether the body was read to its end and, by what the response says, nothing is missing.
    [[nodiscard]] bool bodyIsWhole() const;

    /// Ends the current request, if there is one, and reports it; a body that was not read to its
    /// end costs the connection. `refusal` says why the caller does not take the response: "no GIF
    /// image".
    void close(const std::optional<QString>& refusal = std::nullopt);

    /// Whether the server could not be reached by the last request: its name (or the proxy's) does
    /// not resolve, the connection was refused, or connecting took too long.
    [[nodiscard]] bool connectingFailed() const;

    /// Whether the last request ended by waiting too long, to connect or for its body.
    [[nodiscard]] bool timedOut() const;

private:
    static size_t onHeader(char* data, size_t, size_t bytes, void* self);
    static size_t onBody(char* data, size_t, size_t bytes, void* self);
    static int onConnected(void* self, char*, char*, int, int);

    [[nodiscard]] bool usable() const { return m_multi && m_easy; }
    void setOptions();
    template<typename T>
    void set(CURLoption option, T value);
    template<typename Condition>
    void waitUntil(Condition arrived);
    void advance();
    void wait();
    void callWaitingHook();
    void finish(CURLcode result);
    void report(const std::optional<QString>& refusal);
    [[nodiscard]] std::optional<QString> failure() const;

    struct EasyDeleter {
        void operator()(CURL* easy) const { CurlLibrary::get()->easyCleanup(easy); }
    };
    struct MultiDeleter {
        void operator()(CURLM* multi) const { CurlLibrary::get()->multiCleanup(multi); }
    };
    struct ListDeleter {
        void operator()(curl_slist* list) const { CurlLibrary::get()->slistFreeAll(list); }
    };

    const CurlLibrary* m_curl;                    ///< null without libcurl
    std::unique_ptr<CURLM, MultiDeleter> m_multi; ///< holds the connection
    std::unique_ptr<curl_slist, ListDeleter> m_headers;
    std::unique_ptr<CURL, EasyDeleter> m_easy;
    std::array<char, CURL_ERROR_SIZE> m_error{};

    // The current request
    QByteArray m_url;
    QByteArray m_arrived; ///< of the body, not yet read
    QByteArray m_piece;   ///< what read returned last
    bool m_running = false;
    bool m_reported = true;
    bool m_connected = false;
    bool m_headersComplete = false;
    const char* m_timeout = nullptr; ///< the limit of time that ended it, in words
    int m_status = 0;
    qint64 m_headerBytes = 0;
    qint64 m_bodyBytes = 0;
    CURLcode m_result = CURLE_OK;
    std::optional<StallMeter> m_meter; ///< from the moment the server is reached
    StallMeter::Time m_deadline;       ///< while there is a meter
    StallMeter::Time m_lastHook;
};

} // namespace raincast
