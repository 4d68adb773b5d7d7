// SPDX-License-Identifier: MIT
#include "net/http_session.h"

#include "core/busy_guard.h"

#include <QString>
#include <QStringList>
#include <QUrl>

#include <algorithm>
#include <utility>

namespace raincast {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr char kAgent[] = "Quorvane";
// A little under the 100 ms that http_settings.h promises.
constexpr milliseconds kHookInterval{90};
// Longer headers end the request.
constexpr qint64 kMaxHeaderBytes = qint64{256} << 10;

/// Whether a URL's server is this machine.
bool isOfThisMachine(const QByteArray& url) {
    const QString host = QUrl(QString::fromUtf8(url)).host();
    return host == u"localhost" || host == u"::1" || host.startsWith(u"127.");
}

} // namespace

HttpSession::HttpSession(const CurlLibrary* curl) : m_curl(curl) {
    if (m_curl == nullptr) {
        return;
    }
    m_multi.reset(m_curl->multiInit());
    m_easy.reset(m_curl->easyInit());
    // A name alone takes that header away; libcurl's own says that it accepts anything.
    for (const char* header : {"Pragma: no-cache", "Accept:"}) {
        curl_slist* longer = m_curl->slistAppend(m_headers.get(), header);
        if (longer != nullptr) {
            static_cast<void>(m_headers.release());
            m_headers.reset(longer);
        }
    }
    setOptions();
}

HttpSession::~HttpSession() {
    close();
}

template<typename T>
void HttpSession::set(CURLoption option, T value) {
    if (m_easy) {
        m_curl->easySetopt(m_easy.get(), option, value);
    }
}

void HttpSession::setOptions() {
    set(CURLOPT_PROTOCOLS_STR, "http,https");
    set(CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
    set(CURLOPT_USERAGENT, kAgent);
    set(CURLOPT_HTTPHEADER, m_headers.get());
    set(CURLOPT_FOLLOWLOCATION, 0L);
    set(CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
    // A name server that does not answer must not hold us beyond the limit: leave the thread that
    // waits for it behind.
    set(CURLOPT_QUICK_EXIT, 1L);
    set(CURLOPT_ERRORBUFFER, m_error.data());
    set(CURLOPT_HEADERFUNCTION, &HttpSession::onHeader);
    set(CURLOPT_HEADERDATA, static_cast<void*>(this));
    set(CURLOPT_WRITEFUNCTION, &HttpSession::onBody);
    set(CURLOPT_WRITEDATA, static_cast<void*>(this));
    set(CURLOPT_PREREQFUNCTION, &HttpSession::onConnected);
    set(CURLOPT_PREREQDATA, static_cast<void*>(this));
}

bool HttpSession::open(const QByteArray& url) {
    close();
    m_url = url;
    m_arrived.clear();
    m_connected = m_headersComplete = false;
    m_timeout = nullptr;
    m_status = 0;
    m_headerBytes = m_bodyBytes = 0;
    m_result = CURLE_OK;
    m_meter.reset();
    m_error[0] = '\0';
    set(CURLOPT_URL, m_url.constData());
    // No proxy knows this machine. Null: the environment's proxy.
    set(CURLOPT_PROXY, isOfThisMachine(m_url) ? "" : nullptr);
    set(CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(httpLimits().connectTimeout.count()));
    callWaitingHook();
    m_running = true;
    m_reported = false;
    if (!usable() || m_curl->multiAddHandle(m_multi.get(), m_easy.get()) != CURLM_OK) {
        finish(CURLE_FAILED_INIT);
    }
    waitUntil([this] { return m_headersComplete; });
    if (!m_headersComplete) {
        report(std::nullopt);
    }
    return m_headersComplete;
}

QByteArrayView HttpSession::read() {
    waitUntil([this] { return !m_arrived.isEmpty(); });
    // Two buffers in turn: neither gives up its memory from piece to piece.
    m_piece.swap(m_arrived);
    m_arrived.resize(0);
    return m_piece;
}

bool HttpSession::bodyIsWhole() const {
    return m_headersComplete && !m_running && m_arrived.isEmpty() && m_result == CURLE_OK &&
           m_timeout == nullptr;
}

void HttpSession::close(const std::optional<QString>& refusal) {
    if (m_running) {
        finish(CURLE_OK);
    }
    report(refusal);
}

bool HttpSession::connectingFailed() const {
    switch (m_result) {
    case CURLE_URL_MALFORMAT: // the host is not a host's name
    case CURLE_COULDNT_RESOLVE_HOST:
    case CURLE_COULDNT_RESOLVE_PROXY:
    case CURLE_COULDNT_CONNECT:
        return true;
    case CURLE_OPERATION_TIMEDOUT:
        return !m_connected;
    default:
        return false;
    }
}

bool HttpSession::timedOut() const {
    return m_timeout != nullptr || m_result == CURLE_OPERATION_TIMEDOUT;
}

// libcurl counts in bytes: the size of its items is always 1. It hands over one header line at a
// time, also those of interim responses and trailers.
size_t HttpSession::onHeader(char* data, size_t, size_t bytes, void* self) {
    auto& session = *static_cast<HttpSession*>(self);
    const auto line = QByteArrayView(data, static_cast<qsizetype>(bytes));
    session.m_headerBytes += line.size();
    if (session.m_headerBytes > kMaxHeaderBytes) {
        return 0;
    }
    long status = 0;
    session.m_curl->easyGetinfo(session.m_easy.get(), CURLINFO_RESPONSE_CODE, &status);
    const bool blank = line == "\r\n" || line == "\n";
    if (blank && status >= 200 && !session.m_headersComplete) {
        session.m_headersComplete = true;
        session.m_status = static_cast<int>(status);
    }
    return bytes;
}

size_t HttpSession::onBody(char* data, size_t, size_t bytes, void* self) {
    auto& session = *static_cast<HttpSession*>(self);
    session.m_arrived.append(data, static_cast<qsizetype>(bytes));
    session.m_bodyBytes += static_cast<qint64>(bytes);
    return bytes;
}

int HttpSession::onConnected(void* self, char*, char*, int, int) {
    auto& session = *static_cast<HttpSession*>(self);
    const HttpLimits& limits = httpLimits();
    session.m_connected = true;
    session.m_meter.emplace(limits.stallTime, limits.stallBytesPerSecond);
    session.m_deadline = steady_clock::now() + limits.totalTime;
    return CURL_PREREQFUNC_OK;
}

template<typename Condition>
void HttpSession::waitUntil(Condition arrived) {
    const BusyGuard guard;
    while (m_running) {
        advance();
        // While a body keeps coming there is no wait, but the hook is still due.
        if (steady_clock::now() - m_lastHook >= kHookInterval) {
            callWaitingHook();
        }
        if (arrived() || !m_running) {
            return;
        }
        wait();
    }
}

// Lets libcurl do all that it can do without waiting.
void HttpSession::advance() {
    int running = 0;
    const CURLMcode result = m_curl->multiPerform(m_multi.get(), &running);
    if (result != CURLM_OK) {
        finish(CURLE_FAILED_INIT);
        return;
    }
    int left = 0;
    const CURLMsg* message = m_curl->multiInfoRead(m_multi.get(), &left);
    if (message != nullptr && message->msg == CURLMSG_DONE) {
        finish(message->data.result);
        return;
    }
    const auto now = steady_clock::now();
    if (m_meter && m_meter->stalled(now, m_bodyBytes)) {
        m_timeout = "the server stalled";
    } else if (m_meter && now >= m_deadline) {
        m_timeout = "the response took too long";
    }
    if (m_timeout != nullptr) {
        finish(CURLE_OK);
    }
}

// Waits until something comes or the hook is due.
void HttpSession::wait() {
    using std::chrono::duration_cast;
    const auto due = m_lastHook + kHookInterval - steady_clock::now();
    const auto left = std::clamp(duration_cast<milliseconds>(due), milliseconds{0}, kHookInterval);
    m_curl->multiPoll(m_multi.get(), nullptr, 0, static_cast<int>(left.count()) + 1, nullptr);
}

void HttpSession::callWaitingHook() {
    const BusyGuard guard;
    if (httpHooks().waiting) {
        httpHooks().waiting();
    }
    m_lastHook = steady_clock::now();
}

void HttpSession::finish(CURLcode result) {
    m_running = false;
    m_result = result;
    if (usable()) {
        m_curl->multiRemoveHandle(m_multi.get(), m_easy.get());
    }
}

void HttpSession::report(const std::optional<QString>& refusal) {
    if (std::exchange(m_reported, true) || !httpHooks().finished) {
        return;
    }
    QStringList outcome;
    if (m_status != 0) {
        outcome += QString::number(m_status);
    }
    for (const auto& fault : {failure(), refusal}) {
        if (fault) {
            outcome += *fault;
        }
    }
    httpHooks().finished(QString::fromUtf8(m_url), outcome.join(QStringLiteral(", ")));
}

// What went wrong on the way.
std::optional<QString> HttpSession::failure() const {
    if (m_curl == nullptr) {
        return QStringLiteral("libcurl is not installed");
    }
    if (m_timeout != nullptr) {
        return QString::fromLatin1(m_timeout);
    }
    if (m_result != CURLE_OK) {
        const char* detail = m_error[0] != '\0' ? m_error.data() : m_curl->easyStrerror(m_result);
        return QString::fromLocal8Bit(detail);
    }
    if (m_status == 0) {
        return QStringLiteral("the response ended within its headers");
    }
    return std::nullopt;
}

} // namespace raincast
