// SPDX-License-Identifier: MIT
#include "net/curl_request.h"

#include "core/text.h"
#include "net/byte_allowance.h"

#include <QString>
#include <QUrl>

#include <algorithm>
#include <utility>

namespace raincast {

namespace {

using std::chrono::steady_clock;

constexpr char kAgent[] = "Quorvane";
// Longer headers end the request.
constexpr qint64 kMaxHeaderBytes = qint64{256} << 10;
// An error page up to this size is read to its end, so that the connection can be kept.
constexpr qint64 kErrorPageBytes = qint64{8} << 10;
// A longer tag counts as none.
constexpr qsizetype kMostTagBytes = 128;

/// Whether a URL's server is this machine.
bool isOfThisMachine(const QByteArray& url) {
    const QString host = QUrl(QString::fromUtf8(url)).host();
    return host == u"localhost" || host == u"::1" || host.startsWith(u"127.");
}

/// Whether a "Cache-Control", in small letters, says that a body may soon be another one: it must
/// not be used unasked, or for less than an hour.
bool isOfTheMoment(const QByteArray& cacheControl) {
    constexpr qlonglong kSoon = 3600; // seconds
    bool isOfTheMoment = false;
    for (const QByteArray& word : cacheControl.split(',')) {
        const QByteArray directive = word.trimmed();
        if (directive == "immutable") {
            return false;
        }
        bool isNumber = false;
        const qlonglong age =
            directive.startsWith("max-age=") ? directive.sliced(8).toLongLong(&isNumber) : 0;
        isOfTheMoment = isOfTheMoment || directive.startsWith("no-cache") ||
                        (isNumber && age >= 0 && age < kSoon);
    }
    return isOfTheMoment;
}

/// The value of a header's line if it is the header of that name, which ends in ":".
std::optional<QByteArrayView> valueOf(QByteArrayView line, QByteArrayView name) {
    const bool isOne = line.size() >= name.size() &&
                       line.first(name.size()).compare(name, Qt::CaseInsensitive) == 0;
    return isOne ? std::optional(line.sliced(name.size()).trimmed()) : std::nullopt;
}

} // namespace

CurlRequest::CurlRequest(const CurlLibrary& curl, DownloadOrder order)
    : m_curl(curl), m_order(std::move(order)), m_headers(curl), m_easy(m_curl.easyInit()) {
    share(m_order.allowance);
    m_headers.add("Pragma: no-cache");
    m_headers.add("Accept:"); // a name alone takes away libcurl's own, that it accepts anything
    if (!m_order.knownTag.isEmpty()) {
        m_headers.add("If-None-Match: " + m_order.knownTag);
    }
    setOptions();
}

template<typename T>
void CurlRequest::set(CURLoption option, T value) {
    if (m_easy) {
        m_curl.easySetopt(m_easy.get(), option, value);
    }
}

void CurlRequest::setOptions() {
    set(CURLOPT_URL, m_order.url.constData());
    // No proxy knows this machine. Without the option: the environment's proxy.
    if (isOfThisMachine(m_order.url)) {
        set(CURLOPT_PROXY, "");
    }
    set(CURLOPT_PROTOCOLS_STR, "http,https");
    set(CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
    set(CURLOPT_USERAGENT, kAgent);
    set(CURLOPT_HTTPHEADER, m_headers.list());
    set(CURLOPT_FOLLOWLOCATION, 0L);
    set(CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
    set(CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(m_order.limits.connectTimeout.count()));
    set(CURLOPT_NOSIGNAL, 1L); // for all of the process, not for this thread
    // A name server that does not answer must not hold us: leave the thread that waits for it
    // behind.
    set(CURLOPT_QUICK_EXIT, 1L);
    set(CURLOPT_ERRORBUFFER, m_error.data());
    set(CURLOPT_HEADERFUNCTION, &CurlRequest::onHeader);
    set(CURLOPT_HEADERDATA, static_cast<void*>(this));
    set(CURLOPT_WRITEFUNCTION, &CurlRequest::onBody);
    set(CURLOPT_WRITEDATA, static_cast<void*>(this));
    set(CURLOPT_PREREQFUNCTION, &CurlRequest::onConnected);
    set(CURLOPT_PREREQDATA, static_cast<void*>(this));
    set(CURLOPT_PRIVATE, static_cast<void*>(this));
}

void CurlRequest::share(const std::shared_ptr<ByteAllowance>& allowance) {
    if (allowance && m_order.body == DownloadOrder::Body::file) {
        allowance->take(m_bodyBytes);
        m_allowances.push_back(allowance);
    }
}

bool CurlRequest::lasted(Time now) {
    if (!m_meter) {
        return false;
    }
    if (m_meter->stalled(now, m_bodyBytes)) {
        m_timeout = "the server stalled";
    } else if (now >= m_deadline) {
        m_timeout = "the response took too long";
    }
    return m_timeout != nullptr;
}

// libcurl counts in bytes: the size of its items is always 1. It hands over one header line at a
// time, also those of interim responses and trailers.
size_t CurlRequest::onHeader(char* data, size_t, size_t bytes, void* self) {
    auto& request = *static_cast<CurlRequest*>(self);
    const auto line = QByteArrayView(data, static_cast<qsizetype>(bytes));
    request.m_headerBytes += line.size();
    if (request.m_headerBytes > kMaxHeaderBytes) {
        return 0;
    }
    long status = 0;
    request.m_curl.easyGetinfo(request.m_easy.get(), CURLINFO_RESPONSE_CODE, &status);
    const bool blank = line == "\r\n" || line == "\n";
    if (blank && status >= 200 && !request.m_headersComplete) {
        request.m_headersComplete = true;
        request.m_status = static_cast<int>(status);
    }
    if (!request.m_headersComplete) {
        request.noteHeader(line);
    }
    return bytes;
}

void CurlRequest::noteHeader(QByteArrayView line) {
    if (const auto source = valueOf(line, "raincast-source:")) {
        m_source = source->toByteArray();
    } else if (const auto tag = valueOf(line, "etag:")) {
        m_tag = tag->size() <= kMostTagBytes ? tag->toByteArray() : QByteArray();
    } else if (const auto control = valueOf(line, "cache-control:")) {
        m_cacheControl += ',' + control->toByteArray().toLower();
    }
}

size_t CurlRequest::onBody(char* data, size_t, size_t bytes, void* self) {
    auto& request = *static_cast<CurlRequest*>(self);
    const auto piece = QByteArrayView(data, static_cast<qsizetype>(bytes));
    request.m_bodyBytes += piece.size();
    request.m_enough = !request.take(piece);
    return request.m_enough ? 0 : bytes;
}

int CurlRequest::onConnected(void* self, char*, char*, int, int) {
    auto& request = *static_cast<CurlRequest*>(self);
    const HttpLimits& limits = request.m_order.limits;
    request.m_connected = true;
    request.m_meter.emplace(limits.stallTime, limits.stallBytesPerSecond);
    request.m_deadline = steady_clock::now() + limits.totalTime;
    return CURL_PREREQFUNC_OK;
}

bool CurlRequest::goodStatus() const {
    return m_status != 0 && m_status < kFirstFailingStatus;
}

// False when no more of the body is wanted.
bool CurlRequest::take(QByteArrayView piece) {
    if (m_order.body == DownloadOrder::Body::listing) {
        return takeListing(piece);
    }
    for (const auto& allowance : m_allowances) {
        allowance->take(piece.size());
    }
    if (!goodStatus()) {
        return m_bodyBytes < kErrorPageBytes;
    }
    m_body.append(piece);
    m_refusal = faultOfBody(false);
    return !m_refusal;
}

bool CurlRequest::takeListing(QByteArrayView piece) {
    const qint64 left = m_order.limits.listingBytes - m_body.size();
    m_body.append(piece.first(std::min<qint64>(piece.size(), left)));
    return m_body.size() < m_order.limits.listingBytes;
}

bool CurlRequest::allowanceUsedUp() const {
    return std::any_of(m_allowances.begin(), m_allowances.end(), [](const auto& allowance) {
        return allowance->usedUp();
    });
}

// What is wrong with as much of a file as has come.
std::optional<QString> CurlRequest::faultOfBody(bool ended) const {
    if (m_body.size() > m_order.limits.fileBytes) {
        return Text::tr("larger than a file may be");
    }
    if (allowanceUsedUp()) {
        return Text::tr("more than one update may bring");
    }
    const FileKind& kind = m_order.kind;
    const bool tells = ended || m_body.size() >= kind.tellingBytes;
    if (tells &&
        !kind.isOne(QByteArrayView(m_body).first(std::min(m_body.size(), kind.tellingBytes)))) {
        return Text::tr("no %1").arg(Text::of(kind.name));
    }
    return std::nullopt;
}

HttpResponse CurlRequest::end(CURLcode result) {
    if (m_enough) {
        result = CURLE_OK; // it was ended on purpose
    }
    HttpResponse response;
    response.status = m_headersComplete ? m_status : 0;
    response.connectingFailed = connectingFailed(result);
    response.timedOut = m_timeout != nullptr || result == CURLE_OPERATION_TIMEDOUT;
    response.failure = failure(result);
    response.source = m_source;
    response.tag = isOfTheMoment(m_cacheControl) ? m_tag : QByteArray();
    response.unchanged = response.status == kUnchangedStatus && !m_order.knownTag.isEmpty();
    response.whole = m_headersComplete && !m_enough && result == CURLE_OK && m_timeout == nullptr;
    const bool file = m_order.body == DownloadOrder::Body::file;
    if (file && goodStatus()) {
        response.refusal = m_refusal ? m_refusal : faultOfBody(true);
        if (!response.refusal && m_order.kind.mustBeWhole && !response.whole) {
            response.refusal = Text::tr("not whole");
        }
    }
    if (!file || (goodStatus() && !response.refusal)) {
        response.body = std::move(m_body);
    }
    return response;
}

bool CurlRequest::connectingFailed(CURLcode result) const {
    switch (result) {
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

// What went wrong on the way.
std::optional<QString> CurlRequest::failure(CURLcode result) const {
    if (m_timeout != nullptr) {
        return QString::fromLatin1(m_timeout);
    }
    if (result != CURLE_OK) {
        const char* detail = m_error[0] != '\0' ? m_error.data() : m_curl.easyStrerror(result);
        return QString::fromLocal8Bit(detail);
    }
    if (!m_headersComplete) {
        return QStringLiteral("the response ended within its headers");
    }
    return std::nullopt;
}

} // namespace raincast
