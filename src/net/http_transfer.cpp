// SPDX-License-Identifier: MIT
#include "net/http_transfer.h"

#include "core/whole_file.h"
#include "net/byte_allowance.h"
#include "net/quoted_string_scanner.h"

#include <QUrl>

#include <utility>

namespace raincast {

namespace {

// 127.0.0.1:8000, radar.example, [::1]:8000
bool namesPort(const QString& host) {
    return host.mid(host.lastIndexOf(u']') + 1).contains(u':');
}

bool bringsFile(const HttpResponse& response) {
    return response.answered() && response.status < kFirstFailingStatus && !response.refusal;
}

std::set<QString> quotedStringsOf(const QByteArray& body) {
    std::set<QString> strings;
    QuotedStringScanner(strings).scan(body);
    return strings;
}

} // namespace

CHttpTransfer::CHttpTransfer(
    Downloads& downloads, QString host, bool useConnectionManager, bool secure,
    std::shared_ptr<ByteAllowance> allowance
)
    : m_downloads(downloads), m_host(std::move(host)), m_address(m_host),
      m_useConnectionManager(useConnectionManager), m_secure(secure),
      m_allowance(allowance ? std::move(allowance) : std::make_shared<ByteAllowance>()),
      m_connections(downloads.keepConnections()) {}

CHttpTransfer::~CHttpTransfer() {
    m_requests.clear();
    if (m_connectionRequested) {
        m_downloads.connection().ReleaseConnection();
    }
}

std::unique_ptr<CHttpTransfer> CHttpTransfer::sibling() const {
    return std::make_unique<CHttpTransfer>(
        m_downloads, m_host, m_useConnectionManager, m_secure, m_allowance
    );
}

void CHttpTransfer::DownloadToFile(
    const QString& serverPath, const QString& localPath, const FileKind& kind, FileDone done
) {
    DownloadIfOther(serverPath, localPath, kind, {}, std::move(done));
}

void CHttpTransfer::DownloadIfOther(
    const QString& serverPath, const QString& localPath, const FileKind& kind,
    const QByteArray& knownTag, FileDone done
) {
    DownloadOrder order = fileOrder(kind);
    order.knownTag = knownTag;
    OpenRequest(
        {serverPath, m_secure}, std::move(order),
        [=, this, done = std::move(done)](const HttpResponse* response) {
            ReceiveToFile(url({serverPath, m_secure}), response, localPath, done);
        }
    );
}

void CHttpTransfer::DownloadIfThere(
    const QString& serverPath, const QString& localPath, const FileKind& kind, FileDone done
) {
    if (isAbsent(serverPath)) {
        m_background.later([last = hasGivenUp(), done = std::move(done)] {
            done({false, last, std::nullopt, {}});
        });
        return;
    }
    OpenRequest(
        {serverPath, m_secure}, fileOrder(kind),
        [=, this, done = std::move(done)](const HttpResponse* response) {
            if (response != nullptr && response->status == kAbsentStatus) {
                noteAbsent(serverPath);
            }
            ReceiveToFile(url({serverPath, m_secure}), response, localPath, done);
        }
    );
}

bool CHttpTransfer::isAbsent(const QString& serverPath) const {
    return m_downloads.isAbsent(m_host + serverPath);
}

void CHttpTransfer::noteAbsent(const QString& serverPath) {
    m_downloads.noteAbsent(m_host + serverPath);
}

DownloadOrder CHttpTransfer::fileOrder(const FileKind& kind) const {
    return {{}, DownloadOrder::Body::file, kind, m_allowance};
}

// Writes the body into the file.
void CHttpTransfer::ReceiveToFile(
    const QByteArray& address, const HttpResponse* response, const QString& localPath,
    const FileDone& done
) {
    const bool last = hasGivenUp() || m_allowance->usedUp();
    if (response == nullptr || !bringsFile(*response)) {
        if (response != nullptr) {
            m_downloads.report(address, outcomeOf(*response));
        }
        done({false, last, std::nullopt, {}});
        return;
    }
    const auto write = [localPath, body = response->body] {
        return replaceFile(localPath, body, Lasting::no);
    };
    HttpResponse outcome = *response;
    outcome.body.clear();
    m_background.run(write, [this, address, outcome, last, done](const WholeFile::Result& written) {
        Fetched fetched{written.has_value(), last, std::nullopt, outcome.tag};
        HttpResponse told = outcome;
        if (!written) {
            fetched.writeFailure = written.error();
            told.refusal = QStringLiteral("not written: ") + written.error();
        }
        m_downloads.report(address, outcomeOf(told));
        done(fetched);
    });
}

void CHttpTransfer::FetchQuotedStrings(const QString& serverPath, ListingDone done) {
    OpenRequest(
        {serverPath, false}, {{}, DownloadOrder::Body::listing},
        [this, serverPath, done = std::move(done)](const HttpResponse* response) {
            if (response != nullptr) {
                m_downloads.report(url({serverPath, false}), outcomeOf(*response));
                m_listingSource = response->source;
            }
            if (response == nullptr || !response->answered()) {
                done(std::nullopt);
                return;
            }
            m_background.run(
                [body = response->body] { return quotedStringsOf(body); },
                [done](std::set<QString> strings) { done(std::move(strings)); }
            );
        }
    );
}

void CHttpTransfer::giveUp() {
    m_gaveUp = true;
    for (Request& request : std::exchange(m_requests, {})) {
        refuse(url(request.place), std::move(request.ended));
    }
}

qint64 CHttpTransfer::bytesTaken() const {
    return m_allowance->taken();
}

bool CHttpTransfer::hasGivenUp() const {
    return m_connectState == ConnectState::failed || m_gaveUp;
}

// Asks for a data connection, once. The connection to the server itself is made by the first
// request, which then settles the state.
void CHttpTransfer::Connect() {
    if (m_connectionRequested) {
        return;
    }
    ConnectionManager& manager = m_downloads.connection();
    if (!m_useConnectionManager || manager.IsConnected()) {
        beginAll();
        return;
    }
    m_connectionRequested = true;
    // Without a connection the requests themselves will fail.
    const auto ready = [this, alive = std::weak_ptr(m_alive)](bool /*up*/) {
        if (!alive.expired()) {
            beginAll();
        }
    };
    manager.EstablishConnection(m_host, ready);
}

// Begins what has waited for the connection.
void CHttpTransfer::beginAll() {
    m_ready = true;
    m_address = m_downloads.connection().addressOf(m_host);
    if (m_address.isEmpty() && !m_host.isEmpty()) {
        HttpResponse nobody;
        nobody.connectingFailed = true;
        settle(nobody);
        return;
    }
    for (auto request = m_requests.begin(); request != m_requests.end(); ++request) {
        begin(request);
    }
}

void CHttpTransfer::OpenRequest(const Place& place, DownloadOrder order, Ended ended) {
    const bool broughtAll = order.body == DownloadOrder::Body::file && m_allowance->usedUp();
    if (hasGivenUp() || broughtAll) {
        refuse(url(place), std::move(ended));
        return;
    }
    m_requests.push_back({place, std::move(order), std::move(ended), nullptr});
    const auto request = std::prev(m_requests.end());
    if (m_ready) {
        begin(request);
    } else {
        Connect();
    }
}

void CHttpTransfer::begin(Requests::iterator request) {
    request->order.url = url(request->place);
    request->download =
        m_downloads.get(request->order, [this, request](const HttpResponse& response) {
            arrived(request, response);
        });
}

void CHttpTransfer::arrived(Requests::iterator request, const HttpResponse& response) {
    const Ended ended = std::move(request->ended);
    m_requests.erase(request);
    settle(response);
    ended(&response);
}

// Notes how a request ended.
void CHttpTransfer::settle(const HttpResponse& response) {
    const QString trouble = troubleOf(response, m_host);
    if (!trouble.isEmpty()) {
        m_trouble = trouble;
    }
    if (m_connectState == ConnectState::notYet) {
        m_connectState = response.connectingFailed ? ConnectState::failed : ConnectState::connected;
    }
    if (response.timedOut || m_connectState == ConnectState::failed) {
        giveUp();
    }
}

// Reports a request that is not made, or not to its end.
void CHttpTransfer::refuse(const QByteArray& address, Ended ended) {
    m_downloads.report(address, QStringLiteral("not tried again"));
    m_background.later([ended = std::move(ended)] { ended(nullptr); });
}

// Encodes what must not stand in a request, so that a host stays a host and a path a path.
QByteArray CHttpTransfer::url(const Place& place) const {
    // Without a host libcurl would take the path's first folder for it.
    const QString host = m_address.isEmpty() ? QStringLiteral(" ") : m_address;
    QByteArray address = place.secure ? "https://" : "http://";
    address += QUrl::toPercentEncoding(host, ":[]");
    if (m_secure && !place.secure && !namesPort(host)) {
        address += ":443";
    }
    return address + QUrl::toPercentEncoding(place.path, "/!$&'()*+,;=:@?%");
}

} // namespace raincast
