// SPDX-License-Identifier: MIT
#include "net/http_transfer.h"

#include "net/connection.h"
#include "net/http_session.h"
#include "net/quoted_string_scanner.h"
#include "platform/whole_file.h"

#include <QFileInfo>
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

// Hands the body to `take`, piece by piece, up to `limit` bytes or until it returns false, and
// closes the request. Returns whether all that it was given was taken.
template<typename Take>
bool readBody(HttpSession& session, qint64 limit, Take take) {
    bool taken = true;
    while (limit > 0 && taken) {
        QByteArrayView piece = session.read();
        if (piece.isEmpty()) {
            break;
        }
        piece = piece.first(std::min<qint64>(piece.size(), limit));
        limit -= piece.size();
        taken = take(piece);
    }
    session.close();
    return taken;
}

} // namespace

CHttpTransfer::CHttpTransfer(QString host, bool useConnectionManager, bool secure)
    : m_host(std::move(host)), m_useConnectionManager(useConnectionManager), m_secure(secure) {}

CHttpTransfer::~CHttpTransfer() {
    m_session.reset();
    if (m_connectionRequested) {
        ReleaseConnection();
    }
}

bool CHttpTransfer::DownloadToFile(const QString& serverPath, const QString& localPath) {
    return OpenRequest(serverPath, m_secure) && ReceiveToFile(localPath);
}

bool CHttpTransfer::DownloadIfAbsent(const QString& serverPath, const QString& localPath) {
    return QFileInfo::exists(localPath) || DownloadToFile(serverPath, localPath);
}

bool CHttpTransfer::FetchQuotedStrings(const QString& serverPath, std::set<QString>& strings) {
    if (!OpenRequest(serverPath, false)) {
        return false;
    }
    QuotedStringScanner scanner(strings);
    const auto scan = [&](QByteArrayView piece) {
        scanner.scan(piece);
        return true;
    };
    const bool scanned = readBody(*m_session, httpLimits().listingBytes, scan);
    settle();
    return scanned;
}

// The connection itself is made by the first request, which then settles the state.
bool CHttpTransfer::Connect() {
    const bool ending = httpHooks().ending && httpHooks().ending();
    if (m_connectState == ConnectState::Failed || m_gaveUp || ending) {
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
        if (httpHooks().finished) {
            httpHooks().finished(QString::fromUtf8(address), QStringLiteral("not tried again"));
        }
        return false;
    }
    const bool answered = m_session->open(address);
    settle();
    return answered;
}

int CHttpTransfer::StatusCode() const {
    return m_session->status();
}

bool CHttpTransfer::ReceiveToFile(const QString& localPath) {
    const int status = StatusCode();
    const bool good = status != 0 && status < kFirstFailingStatus;
    WholeFile file(Lasting::no);
    const bool created = good && file.open(localPath);
    const auto keep = [&](QByteArrayView piece) { return !good || (created && file.write(piece)); };
    const qint64 limit = good ? httpLimits().fileBytes : kErrorPageBytes;
    const bool written = readBody(*m_session, limit, keep);
    settle();
    return created && written && file.commit().has_value();
}

// Draws the conclusions of the last request, whichever way it went.
void CHttpTransfer::settle() {
    if (m_connectState == ConnectState::NotYet) {
        m_connectState =
            m_session->connectingFailed() ? ConnectState::Failed : ConnectState::Connected;
    }
    m_gaveUp = m_gaveUp || m_session->timedOut();
}

// What must not stand in a request is encoded, so that a host is a host and a path a path.
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
