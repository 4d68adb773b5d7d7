// SPDX-License-Identifier: MIT
#include "provider/curl_fetcher.h"

#include "net/curl_headers.h"

#include <QUrl>

#include <algorithm>
#include <array>
#include <optional>

namespace raincast {

namespace {

constexpr int kMostRedirects = 3;
constexpr qint64 kMostHeaderBytes = 64 * 1024;

bool isOfThisMachine(const QUrl& url) {
    const QString host = url.host();
    return host == u"localhost" || host == u"::1" || host.startsWith(u"127.");
}

bool haveOneServer(const QUrl& one, const QUrl& other) {
    const auto portOf = [](const QUrl& url) {
        return url.port(url.scheme() == u"https" ? 443 : 80);
    };
    return one.scheme() == other.scheme() && one.host() == other.host() &&
           portOf(one) == portOf(other);
}

bool isUnreachable(CURLcode result, bool wasConnected) {
    return result == CURLE_COULDNT_RESOLVE_HOST || result == CURLE_COULDNT_RESOLVE_PROXY ||
           result == CURLE_COULDNT_CONNECT || (result == CURLE_OPERATION_TIMEDOUT && !wasConnected);
}

bool takesHeader(QByteArrayView line, const char* name, QByteArray& value) {
    const qsizetype colon = line.indexOf(':');
    const bool isIt = colon > 0 && line.first(colon).compare(name, Qt::CaseInsensitive) == 0;
    if (isIt) {
        value = line.sliced(colon + 1).toByteArray().trimmed();
    }
    return isIt;
}

} // namespace

/// One request and what has come of it.
struct CurlFetcher::Transfer {
    FetchRequest request;
    Done done;
    FetchAnswer answer{};
    std::unique_ptr<CURL, EasyDeleter> easy{};
    std::optional<CurlHeaders> headers{};
    std::array<char, CURL_ERROR_SIZE> error{};
    qint64 headerBytes = 0;
    bool wasConnected = false;
    bool isTooLarge = false;
    int redirects = 0;

    static size_t onHeader(char* data, size_t, size_t bytes, void* self) {
        auto& transfer = *static_cast<Transfer*>(self);
        const QByteArrayView line(data, static_cast<qsizetype>(bytes));
        transfer.headerBytes += line.size();
        if (transfer.headerBytes > kMostHeaderBytes) {
            return 0;
        }
        FetchAnswer& answer = transfer.answer;
        static_cast<void>(
            takesHeader(line, "ETag", answer.etag) ||
            takesHeader(line, "Last-Modified", answer.lastModified) ||
            takesHeader(line, "Retry-After", answer.retryAfter)
        );
        return bytes;
    }

    static size_t onBody(char* data, size_t, size_t bytes, void* self) {
        auto& transfer = *static_cast<Transfer*>(self);
        const auto size = static_cast<qsizetype>(bytes);
        transfer.isTooLarge = transfer.answer.body.size() + size > transfer.request.mostBytes;
        if (transfer.isTooLarge) {
            return 0;
        }
        transfer.answer.body.append(data, size);
        return bytes;
    }

    static int onConnected(void* self, char*, char*, int, int) {
        static_cast<Transfer*>(self)->wasConnected = true;
        return CURL_PREREQFUNC_OK;
    }
};

CurlFetcher::CurlFetcher(QByteArray agent, Limits limits, const CurlLibrary* curl)
    : m_agent(std::move(agent)), m_authorities(qgetenv("SSL_CERT_FILE")), m_limits(limits),
      m_curl(curl) {
    if (m_curl != nullptr) {
        m_multi.reset(m_curl->multiInit());
    }
}

CurlFetcher::~CurlFetcher() {
    for (const auto& [easy, transfer] : m_running) {
        m_curl->multiRemoveHandle(m_multi.get(), easy);
    }
}

void CurlFetcher::get(FetchRequest request, Done done) {
    auto transfer = std::make_unique<Transfer>(Transfer{std::move(request), std::move(done)});
    if (!m_multi) {
        transfer->answer.failure = FetchAnswer::Failure::broken;
        transfer->answer.problem = QStringLiteral("libcurl is not installed");
        m_over.push_back(std::move(transfer));
        return;
    }
    transfer->easy.reset(m_curl->easyInit());
    if (!start(*transfer)) {
        transfer->answer.failure = FetchAnswer::Failure::broken;
        transfer->answer.problem = QStringLiteral("the request cannot be sent");
        m_over.push_back(std::move(transfer));
        return;
    }
    CURL* const easy = transfer->easy.get();
    m_running[easy] = std::move(transfer);
}

// Sets the request up and hands it to libcurl.
bool CurlFetcher::start(Transfer& transfer) {
    CURL* const easy = transfer.easy.get();
    if (easy == nullptr) {
        return false;
    }
    const auto set = [this, easy](CURLoption option, auto value) {
        m_curl->easySetopt(easy, option, value);
    };
    const FetchRequest& request = transfer.request;
    CurlHeaders& headers = transfer.headers.emplace(*m_curl);
    headers.add("Accept: " + request.accept);
    if (!request.etag.isEmpty()) {
        headers.add("If-None-Match: " + request.etag);
    }
    if (!request.lastModified.isEmpty()) {
        headers.add("If-Modified-Since: " + request.lastModified);
    }
    set(CURLOPT_URL, request.url.constData());
    set(CURLOPT_PROTOCOLS_STR, "http,https");
    set(CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
    set(CURLOPT_NOSIGNAL, 1L);
    set(CURLOPT_USERAGENT, m_agent.constData());
    set(CURLOPT_HTTPHEADER, headers.list());
    set(CURLOPT_ACCEPT_ENCODING, "");
    set(CURLOPT_FOLLOWLOCATION, 0L);
    set(CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
    set(CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(m_limits.connect.count()));
    set(CURLOPT_TIMEOUT_MS, static_cast<long>(m_limits.whole.count()));
    set(CURLOPT_QUICK_EXIT, 1L);
    set(CURLOPT_ERRORBUFFER, transfer.error.data());
    set(CURLOPT_HEADERFUNCTION, &Transfer::onHeader);
    set(CURLOPT_HEADERDATA, static_cast<void*>(&transfer));
    set(CURLOPT_WRITEFUNCTION, &Transfer::onBody);
    set(CURLOPT_WRITEDATA, static_cast<void*>(&transfer));
    set(CURLOPT_PREREQFUNCTION, &Transfer::onConnected);
    set(CURLOPT_PREREQDATA, static_cast<void*>(&transfer));
    if (!m_authorities.isEmpty()) {
        set(CURLOPT_CAINFO, m_authorities.constData());
    }
    if (isOfThisMachine(QUrl::fromEncoded(request.url))) {
        set(CURLOPT_PROXY, ""); // no proxy knows this machine
    }
    return m_curl->multiAddHandle(m_multi.get(), easy) == CURLM_OK;
}

void CurlFetcher::pump(Milliseconds most) {
    if (callDone()) {
        return;
    }
    if (!m_multi) {
        return;
    }
    int running = 0;
    m_curl->multiPerform(m_multi.get(), &running);
    int left = 0;
    while (const CURLMsg* const message = m_curl->multiInfoRead(m_multi.get(), &left)) {
        if (message->msg == CURLMSG_DONE) {
            finish(message->easy_handle, message->data.result);
        }
    }
    if (!callDone()) {
        m_curl->multiPoll(m_multi.get(), nullptr, 0, static_cast<int>(most.count()), nullptr);
    }
}

// Calls what is to be called; false when there was nothing.
bool CurlFetcher::callDone() {
    const auto over = std::exchange(m_over, {});
    for (const auto& transfer : over) {
        transfer->done(std::move(transfer->answer));
    }
    return !over.empty();
}

void CurlFetcher::finish(CURL* easy, CURLcode result) {
    m_curl->multiRemoveHandle(m_multi.get(), easy);
    auto node = m_running.extract(easy);
    Transfer& transfer = *node.mapped();
    FetchAnswer& answer = transfer.answer;
    long status = 0;
    m_curl->easyGetinfo(easy, CURLINFO_RESPONSE_CODE, &status);
    answer.status = static_cast<int>(status);
    if (result == CURLE_OK && redirected(transfer)) {
        m_running.insert(std::move(node));
        return;
    }
    if (result != CURLE_OK) {
        answer.failure = isUnreachable(result, transfer.wasConnected)
                             ? FetchAnswer::Failure::unreachable
                             : FetchAnswer::Failure::broken;
        answer.problem = transfer.isTooLarge ? QStringLiteral("the answer is too large")
                         : transfer.error[0] != '\0'
                             ? QString::fromLocal8Bit(transfer.error.data())
                             : QString::fromLocal8Bit(m_curl->easyStrerror(result));
    }
    m_over.push_back(std::move(node.mapped()));
}

// Follows a redirect on the same server; false when there is none to follow.
bool CurlFetcher::redirected(Transfer& transfer) {
    const char* target = nullptr;
    m_curl->easyGetinfo(transfer.easy.get(), CURLINFO_REDIRECT_URL, &target);
    if (target == nullptr) {
        return false;
    }
    const QByteArray url = target;
    const bool mayFollow =
        haveOneServer(QUrl::fromEncoded(url), QUrl::fromEncoded(transfer.request.url)) &&
        transfer.redirects < kMostRedirects;
    if (!mayFollow) {
        return false;
    }
    ++transfer.redirects;
    transfer.request.url = url;
    transfer.answer = {};
    transfer.headerBytes = 0;
    if (!start(transfer)) {
        transfer.answer.failure = FetchAnswer::Failure::broken;
        transfer.answer.problem = QStringLiteral("the request cannot be sent");
        return false;
    }
    return true;
}

void CurlFetcher::wake() {
    if (m_multi) {
        m_curl->multiWakeup(m_multi.get());
    }
}

} // namespace raincast
