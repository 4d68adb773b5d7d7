// SPDX-License-Identifier: MIT
#pragma once

#include "net/curl_library.h"
#include "provider/fetcher.h"

#include <chrono>
#include <map>
#include <memory>
#include <vector>

namespace raincast {

/// Requests over the network by libcurl, in the thread that calls pump().
///
/// Speaks HTTP and HTTPS, checks certificates by the system's authorities (or by those of the file
/// that the environment variable SSL_CERT_FILE names), and follows redirects on the same scheme,
/// host and port only. Proxies come from the environment, but not for a server of this machine. It
/// keeps connections open for the next requests and sends no cookies and no Origin.
class CurlFetcher : public Fetcher {
public:
    using Milliseconds = std::chrono::milliseconds;

    struct Limits {
        Milliseconds connect{5'000}; ///< name, connection and TLS
        Milliseconds whole{20'000};  ///< the whole request
    };

    /// `agent` says who asks. Without libcurl every request fails.
    explicit CurlFetcher(QByteArray agent) : CurlFetcher(std::move(agent), Limits()) {}
    CurlFetcher(QByteArray agent, Limits limits, const CurlLibrary* curl = CurlLibrary::get());
    /// Ends what is under way without an answer.
    ~CurlFetcher() override;
    CurlFetcher(const CurlFetcher&) = delete;
    CurlFetcher& operator=(const CurlFetcher&) = delete;

    void get(FetchRequest request, Done done) override;

    /// Moves requests on, and calls what is to be called of those that are over. Returns then, at a
    /// wake(), or after `most`.
    void pump(Milliseconds most);

    /// Whether nothing is under way.
    [[nodiscard]] bool isIdle() const { return m_running.empty() && m_over.empty(); }

    /// Lets pump() return. For any thread.
    void wake();

private:
    struct Transfer;
    struct EasyDeleter {
        void operator()(CURL* easy) const { CurlLibrary::get()->easyCleanup(easy); }
    };
    struct MultiDeleter {
        void operator()(CURLM* multi) const { CurlLibrary::get()->multiCleanup(multi); }
    };

    bool start(Transfer& transfer);
    void finish(CURL* easy, CURLcode result);
    [[nodiscard]] bool redirected(Transfer& transfer);
    bool callDone();

    QByteArray m_agent;
    QByteArray m_authorities;
    Limits m_limits;
    const CurlLibrary* m_curl;
    std::unique_ptr<CURLM, MultiDeleter> m_multi;
    std::map<CURL*, std::unique_ptr<Transfer>> m_running;
    std::vector<std::unique_ptr<Transfer>> m_over;
};

} // namespace raincast
