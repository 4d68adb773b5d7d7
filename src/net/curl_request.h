// SPDX-License-Identifier: MIT
#pragma once

#include "net/curl_headers.h"
#include "net/download_order.h"
#include "net/http_response.h"
#include "net/stall_meter.h"

#include <QByteArray>

#include <array>
#include <memory>
#include <optional>
#include <vector>

namespace raincast {

/// One GET request on its way through libcurl: its options, its limits and what has come so far.
/// It belongs to the thread of Downloads.
///
/// Sends the agent "Quorvane", "Pragma: no-cache" and the order's tag as "If-None-Match". Follows
/// no redirects, keeps and sends no cookies, and speaks nothing but HTTP and HTTPS. Proxies come
/// from the environment (http_proxy, https_proxy, all_proxy, no_proxy), but not for a server of
/// this machine.
class CurlRequest {
public:
    using Time = StallMeter::Time;

    CurlRequest(const CurlLibrary& curl, DownloadOrder order);
    CurlRequest(const CurlRequest&) = delete;
    CurlRequest& operator=(const CurlRequest&) = delete;

    [[nodiscard]] CURL* handle() const { return m_easy.get(); }
    [[nodiscard]] const DownloadOrder& order() const { return m_order; }

    /// What comes counts against this allowance too, and what has come does.
    void share(const std::shared_ptr<ByteAllowance>& allowance);

    /// Whether the response has reached a limit of time, which ends it.
    [[nodiscard]] bool lasted(Time now);

    /// The request has ended, with this result of libcurl's.
    [[nodiscard]] HttpResponse end(CURLcode result);

private:
    static size_t onHeader(char* data, size_t, size_t bytes, void* self);
    static size_t onBody(char* data, size_t, size_t bytes, void* self);
    static int onConnected(void* self, char*, char*, int, int);

    void setOptions();
    template<typename T>
    void set(CURLoption option, T value);
    void noteHeader(QByteArrayView line);
    [[nodiscard]] bool goodStatus() const;
    [[nodiscard]] bool take(QByteArrayView piece);
    [[nodiscard]] bool takeListing(QByteArrayView piece);
    [[nodiscard]] std::optional<QString> faultOfBody(bool ended) const;
    [[nodiscard]] bool allowanceUsedUp() const;
    [[nodiscard]] std::optional<QString> failure(CURLcode result) const;
    [[nodiscard]] bool connectingFailed(CURLcode result) const;

    struct EasyDeleter {
        void operator()(CURL* easy) const { CurlLibrary::get()->easyCleanup(easy); }
    };

    const CurlLibrary& m_curl;
    DownloadOrder m_order;
    std::vector<std::shared_ptr<ByteAllowance>> m_allowances;
    CurlHeaders m_headers;
    std::unique_ptr<CURL, EasyDeleter> m_easy;
    std::array<char, CURL_ERROR_SIZE> m_error{};

    QByteArray m_body;
    std::optional<QString> m_refusal;
    bool m_enough = false; ///< what else comes is not wanted
    bool m_connected = false;
    bool m_headersComplete = false;
    QByteArray m_source;             ///< of the header "Raincast-Source"
    QByteArray m_tag;                ///< of the header "ETag"
    QByteArray m_cacheControl;       ///< all headers "Cache-Control", between commas
    const char* m_timeout = nullptr; ///< the limit of time that ended it, in words
    int m_status = 0;
    qint64 m_headerBytes = 0;
    qint64 m_bodyBytes = 0;
    std::optional<StallMeter> m_meter; ///< from the moment the server is reached
    Time m_deadline;                   ///< while there is a meter
};

} // namespace raincast
