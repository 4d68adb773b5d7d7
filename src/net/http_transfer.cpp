// SPDX-License-Identifier: MIT
#include "net/http_transfer.h"

#include "core/whole_file.h"
#include "net/byte_allowance.h"
#include "net/connection.h"
#include "net/http_session.h"
#include "net/quoted_string_scanner.h"

#include <QUrl>

#include <algorithm>
#include <utility>

namespace raincast {

namespace {

constexpr int kFirstFailingStatus = 300;
// An error page up to this size is read to its end, so that the connection can be kept.
constexpr qint64 kErrorPageBytes = qint64{8} << 10;

// 127.0.0.1:8000, radar.example, [::1]:8000
bool namesPort(const QString& host) {
    return host.mid(host.lastIndexOf(u']') + 1).contains(u':');
}

QByteArrayView firstOf(QByteArrayView bytes, qsizetype most) {
    return bytes.first(std::min(bytes.size(), most));
}

} // namespace

CHttpTransfer::CHttpTransfer(
    QString host, bool useConnectionManager, bool secure, std::shared_ptr<ByteAllowance> allowance
)
    : m_host(std::move(host)), m_useConnectionManager(useConnectionManager), m_secure(secure),
      m_allowance(allowance ? std::move(allowance) : std::make_shared<ByteAllowance>()) {}

CHttpTransfer::~CHttpTransfer() {
    m_session.reset();
    if (m_connectionRequested) {
        ReleaseConnection();
    }
}

bool CHttpTransfer::DownloadToFile(
    const QString& serverPath, const QString& localPath, const FileKind& kind
) {
    m_writeFailure.reset();
    if (m_allowance->usedUp()) {
        return refuse(url(serverPath, m_secure));
    }
    return OpenRequest(serverPath, m_secure) && ReceiveToFile(localPath, kind);
}

bool CHttpTransfer::FetchQuotedStrings(const QString& serverPath, std::set<QString>& strings) {
    if (!OpenRequest(serverPath, false)) {
        return false;
    }
    QuotedStringScanner scanner(strings);
    qint64 left = httpLimits().listingBytes;
    while (left > 0) {
        const QByteArrayView piece = firstOf(m_session->read(), left);
        if (piece.isEmpty()) {
            break;
        }
        scanner.scan(piece);
        left -= piece.size();
    }
    m_session->close();
    settle();
    return true;
}

// The connection itself is made by the first request, which then settles the state.
bool CHttpTransfer::Connect() {
    const bool ending = httpHooks().ending && httpHooks().ending();
    if (m_connectState == ConnectState::failed || m_gaveUp || ending) {
        return false;
    }
    if (m_session != nullptr) {
        return true;
    }
    if (m_useConnectionManager && !IsConnected()) {
        m_connectionRequested = true;
        static_cast<void>(EstablishConnection()); // without one, the request itself will fail
    }
    m_session = std::make_unique<HttpSession>();
    return true;
}

bool CHttpTransfer::OpenRequest(const QString& serverPath, bool secureFlag) {
    const QByteArray address = url(serverPath, secureFlag);
    if (!Connect()) {
        return refuse(address);
    }
    const bool answered = m_session->open(address);
    settle();
    return answered;
}

int CHttpTransfer::StatusCode() const {
    return m_session->status();
}

bool CHttpTransfer::ReceiveToFile(const QString& localPath, const FileKind& kind) {
    const int status = StatusCode();
    const bool good = status != 0 && status < kFirstFailingStatus;
    std::optional<QString> refusal;
    if (!good) {
        readErrorPage();
    } else if (const auto kept = keepBody(localPath, kind); !kept) {
        refusal = kept.error();
    }
    m_session->close(refusal);
    settle();
    return good && !refusal;
}

// Writes the body into the file.
tl::expected<void, QString>
CHttpTransfer::keepBody(const QString& localPath, const FileKind& kind) {
    const auto body = readFile(kind);
    if (!body) {
        return tl::make_unexpected(body.error());
    }
    if (const auto written = replaceFile(localPath, *body, Lasting::no); !written) {
        m_writeFailure = written.error();
        return tl::make_unexpected(QStringLiteral("not written: ") + written.error());
    }
    return {};
}

// What is wrong with as much of a body as has come.
std::optional<QString>
CHttpTransfer::faultOf(const QByteArray& body, bool ended, const FileKind& kind) const {
    if (body.size() > httpLimits().fileBytes) {
        return QStringLiteral("larger than a file may be");
    }
    if (m_allowance->usedUp()) {
        return QStringLiteral("more than one update may bring");
    }
    const bool tells = ended || body.size() >= kind.tellingBytes;
    if (tells && !kind.isOne(firstOf(body, kind.tellingBytes))) {
        return QStringLiteral("no ") + QLatin1String(kind.name);
    }
    return std::nullopt;
}

// The body, or why it is refused, as early as that is known.
tl::expected<QByteArray, QString> CHttpTransfer::readFile(const FileKind& kind) {
    QByteArray body;
    bool ended = false;
    while (!ended) {
        const QByteArrayView piece = readPiece();
        body.append(piece);
        ended = piece.isEmpty();
        if (const auto fault = faultOf(body, ended, kind)) {
            return tl::make_unexpected(*fault);
        }
    }
    if (kind.mustBeWhole && !m_session->bodyIsWhole()) {
        return tl::make_unexpected(QStringLiteral("not whole"));
    }
    return body;
}

void CHttpTransfer::readErrorPage() {
    for (qint64 left = kErrorPageBytes; left > 0;) {
        const QByteArrayView piece = readPiece();
        if (piece.isEmpty()) {
            return;
        }
        left -= piece.size();
    }
}

QByteArrayView CHttpTransfer::readPiece() {
    const QByteArrayView piece = m_session->read();
    m_allowance->take(piece.size());
    return piece;
}

// Reports a request that is not made; false.
bool CHttpTransfer::refuse(const QByteArray& address) const {
    if (httpHooks().finished) {
        httpHooks().finished(QString::fromUtf8(address), QStringLiteral("not tried again"));
    }
    return false;
}

// Notes how the last request ended.
void CHttpTransfer::settle() {
    if (m_connectState == ConnectState::notYet) {
        m_connectState =
            m_session->connectingFailed() ? ConnectState::failed : ConnectState::connected;
    }
    m_gaveUp = m_gaveUp || m_session->timedOut();
}

// Encodes what must not stand in a request, so that a host stays a host and a path a path.
QByteArray CHttpTransfer::url(const QString& serverPath, bool secureFlag) const {
    // Without a host libcurl would take the path's first folder for it.
    const QString host = m_host.isEmpty() ? QStringLiteral(" ") : m_host;
    QByteArray address = secureFlag ? "https://" : "http://";
    address += QUrl::toPercentEncoding(host, ":[]");
    if (m_secure && !secureFlag && !namesPort(host)) {
        address += ":443";
    }
    return address + QUrl::toPercentEncoding(serverPath, "/!$&'()*+,;=:@?%");
}

} // namespace raincast
