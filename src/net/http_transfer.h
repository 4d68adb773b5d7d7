// SPDX-License-Identifier: MIT
#pragma once

#include "core/background.h"
#include "net/downloads.h"
#include "net/file_kind.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <list>
#include <memory>
#include <optional>
#include <set>

namespace raincast {

class ByteAllowance;

/// Fetches files and directory listings from one server, for the length of one user action: make
/// one for each server, and let it go at the end, which cancels what runs. Several requests may run
/// at the same time. No call blocks: results come from the event loop, and none once the object has
/// gone.
///
/// Once an object could not connect, or waited for a stalled or endless response, it fails what
/// still runs and every later request at once: otherwise each of a radar's frames would cost its
/// own half minute. So it does for files when its action has brought all that it may.
class CHttpTransfer {
public:
    enum class ConnectState {
        notYet = 0,
        connected = 1,
        failed = 2, ///< for good: this object makes no more requests
    };

    /// What became of a file.
    struct Fetched {
        bool kept = false; ///< the file has it
        /// The object has given up, with this request or before: later ones fail at once.
        bool last = false;
        /// Why the file could not be written, in the system's words ("Permission denied"); none
        /// when nothing was wrong with the disk.
        std::optional<QString> writeFailure;
        /// Of a file that was kept: its tag, if the server wants to be asked for it again (see
        /// HttpResponse).
        QByteArray tag;
    };
    using FileDone = std::function<void(const Fetched&)>;

    /// The quoted strings of a listing; none when no response came.
    using Listing = std::optional<std::set<QString>>;
    using ListingDone = std::function<void(Listing)>;

    /// `host` is HOST or HOST:PORT; without a port it is 80, or 443 when `secure`. With
    /// `useConnectionManager` a data connection is asked for before the first request and released
    /// by the destructor; it may be a name, too, that the connection manager knows an address for.
    /// Objects of one action share an allowance; without one the object has its own. The downloads
    /// are borrowed.
    CHttpTransfer(
        Downloads& downloads, QString host, bool useConnectionManager, bool secure,
        std::shared_ptr<ByteAllowance> allowance = nullptr
    );
    ~CHttpTransfer();
    CHttpTransfer(const CHttpTransfer&) = delete;
    CHttpTransfer& operator=(const CHttpTransfer&) = delete;

    /// Another one for the same server and action, which gives up for itself.
    [[nodiscard]] std::unique_ptr<CHttpTransfer> sibling() const;

    /// Fetches serverPath (absolute, "/ridge/...") into localPath, replacing it. Not kept, with
    /// localPath untouched, when the server cannot be reached or gives no status or one of 300 and
    /// above, when the body is not of the kind or larger than a file may be, and when the file
    /// cannot be created or written in full (a full disk).
    ///
    /// A body that breaks off counts as ended there, unless its kind must be whole: the shorter
    /// file is kept. The file gets its name only when the transfer is over: a program that is
    /// killed in the middle leaves no file.
    void DownloadToFile(
        const QString& serverPath, const QString& localPath, const FileKind& kind, FileDone done
    );

    /// The same for a file whose bytes of that tag are there: fetches others, if the server has
    /// them.
    void DownloadIfOther(
        const QString& serverPath, const QString& localPath, const FileKind& kind,
        const QByteArray& knownTag, FileDone done
    );

    /// The same for a file that the server need not have: once it answers that there is none
    /// (404), it is not asked for that again as long as the downloads live.
    void DownloadIfThere(
        const QString& serverPath, const QString& localPath, const FileKind& kind, FileDone done
    );

    /// Whether the server said so of a path, or was found not to have it.
    [[nodiscard]] bool isAbsent(const QString& serverPath) const;
    void noteAbsent(const QString& serverPath);

    /// Fetches serverPath and gives every double-quoted string of the body: a directory listing
    /// names its files that way. The status does not matter: an error page is scanned like a
    /// listing. Always plain HTTP, even when `secure`, but on the port that goes with `secure`.
    void FetchQuotedStrings(const QString& serverPath, ListingDone done);

    /// Fails what runs and all that is asked for later.
    void giveUp();

    /// Whether it could not connect, waited too long or was told to give up.
    [[nodiscard]] bool hasGivenUp() const;

    [[nodiscard]] ConnectState connectState() const { return m_connectState; }

    /// The bytes of files that came for its action so far, from all servers.
    [[nodiscard]] qint64 bytesTaken() const;

    /// What was wrong with the last response that had a fault, in a sentence for the user:
    /// "radar.example does not answer."; empty while none had.
    [[nodiscard]] const QString& trouble() const { return m_trouble; }

    /// What the server of the last listing said about its source of frames, in the words of its
    /// header: "provider"; empty if nothing.
    [[nodiscard]] const QByteArray& listingSource() const { return m_listingSource; }

private:
    /// Called with the response; null when there is none, because the object has given up.
    using Ended = std::function<void(const HttpResponse* response)>;

    /// What a request is for, on whichever address the host has.
    struct Place {
        QString path;
        bool secure;
    };

    /// A request from its asking to its response. Its order has no URL before it has begun.
    struct Request {
        Place place;
        DownloadOrder order;
        Ended ended;
        std::unique_ptr<Downloads::Download> download; ///< once it has begun
    };
    using Requests = std::list<Request>;

    void Connect();
    void beginAll();
    void OpenRequest(const Place& place, DownloadOrder order, Ended ended);
    [[nodiscard]] DownloadOrder fileOrder(const FileKind& kind) const;
    void ReceiveToFile(
        const QByteArray& address, const HttpResponse* response, const QString& localPath,
        const FileDone& done
    );
    void begin(Requests::iterator request);
    void arrived(Requests::iterator request, const HttpResponse& response);
    void settle(const HttpResponse& response);
    void refuse(const QByteArray& address, Ended ended);
    [[nodiscard]] QByteArray url(const Place& place) const;

    Downloads& m_downloads;
    QString m_host;
    QString m_address; ///< where the host is
    bool m_useConnectionManager;
    bool m_secure;
    bool m_connectionRequested = false;
    bool m_ready = false; ///< for requests to begin
    ConnectState m_connectState = ConnectState::notYet;
    QString m_trouble;
    QByteArray m_listingSource;
    bool m_gaveUp = false; ///< a request waited to its limit, or the owner wants no more
    std::shared_ptr<ByteAllowance> m_allowance;
    std::shared_ptr<void> m_connections; ///< kept for the action
    Requests m_requests;
    Background m_background;
    std::shared_ptr<bool> m_alive = std::make_shared<bool>(true); ///< for a late connection
};

} // namespace raincast
