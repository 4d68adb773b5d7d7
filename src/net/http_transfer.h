// SPDX-License-Identifier: MIT
#pragma once

#include "net/file_kind.h"

#include <QByteArray>
#include <QString>

#include <memory>
#include <optional>
#include <set>
#include <tl/expected.hpp>

namespace raincast {

class ByteAllowance;
class HttpSession;

/// Fetches files and directory listings from one server, for the length of one user action: make
/// one for each server, and let it go at the end. All its requests share one kept-alive connection.
/// Every call blocks until it is done, on the user-interface thread only; limits and hooks are
/// those of http_settings.h.
///
/// A failure is a plain false, and the caller finds the words for it. Once an object could not
/// connect, or waited for a stalled or endless response, it fails every later request at once:
/// otherwise each of a radar's frames would cost its own half minute. So does every object while
/// the program ends, and for files every object whose action has brought all that it may.
class CHttpTransfer {
public:
    enum class ConnectState {
        notYet = 0,
        connected = 1,
        failed = 2, ///< for good: this object makes no more requests
    };

    /// `host` is HOST or HOST:PORT; without a port it is 80, or 443 when `secure`. With
    /// `useConnectionManager` a data connection is asked for before the first request and released
    /// by the destructor. Objects of one action share an allowance; without one the object has its
    /// own.
    CHttpTransfer(
        QString host, bool useConnectionManager, bool secure,
        std::shared_ptr<ByteAllowance> allowance = nullptr
    );
    ~CHttpTransfer();
    CHttpTransfer(const CHttpTransfer&) = delete;
    CHttpTransfer& operator=(const CHttpTransfer&) = delete;

    /// Fetches serverPath (absolute, "/ridge/...") into localPath, replacing it. False, with
    /// localPath untouched, when the server cannot be reached or gives no status or one of 300 and
    /// above, when the body is not of the kind or larger than a file may be, and when the file
    /// cannot be created or written in full (a full disk).
    ///
    /// A body that breaks off counts as ended there, unless its kind must be whole: the shorter
    /// file is kept and the result is true. The file gets its name only when the transfer is over:
    /// a program that is killed in the middle leaves no file.
    [[nodiscard]] bool DownloadToFile(
        const QString& serverPath, const QString& localPath, const FileKind& kind = kAnyFile
    );

    /// Why the last file that was fetched could not be written, in the system's words ("Permission
    /// denied"); none when nothing was wrong with the disk.
    [[nodiscard]] const std::optional<QString>& writeFailure() const { return m_writeFailure; }

    /// Fetches serverPath and adds every double-quoted string of the body to `strings`: a directory
    /// listing names its files that way. The status does not matter: an error page is scanned like
    /// a listing. False only when no response came. Always plain HTTP, even when `secure`, but on
    /// the port that goes with `secure`.
    [[nodiscard]] bool FetchQuotedStrings(const QString& serverPath, std::set<QString>& strings);

    [[nodiscard]] ConnectState connectState() const { return m_connectState; }

private:
    [[nodiscard]] bool Connect();
    [[nodiscard]] bool OpenRequest(const QString& serverPath, bool secureFlag);
    [[nodiscard]] int StatusCode() const;
    [[nodiscard]] bool ReceiveToFile(const QString& localPath, const FileKind& kind);

    [[nodiscard]] tl::expected<void, QString>
    keepBody(const QString& localPath, const FileKind& kind);
    [[nodiscard]] std::optional<QString>
    faultOf(const QByteArray& body, bool ended, const FileKind& kind) const;
    [[nodiscard]] tl::expected<QByteArray, QString> readFile(const FileKind& kind);
    void readErrorPage();
    [[nodiscard]] QByteArrayView readPiece();
    bool refuse(const QByteArray& address) const;
    void settle();
    [[nodiscard]] QByteArray url(const QString& serverPath, bool secureFlag) const;

    QString m_host;
    bool m_useConnectionManager;
    bool m_secure;
    bool m_connectionRequested = false;
    ConnectState m_connectState = ConnectState::notYet;
    bool m_gaveUp = false;                 ///< a request waited to its limit
    std::optional<QString> m_writeFailure; ///< of the last file
    std::shared_ptr<ByteAllowance> m_allowance;
    std::unique_ptr<HttpSession> m_session; ///< from the first request on
};

} // namespace raincast
