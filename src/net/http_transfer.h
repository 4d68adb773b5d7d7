// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <memory>
#include <set>

namespace raincast {

class HttpSession;

/// Fetches files and directory listings from one server, for the length of one user action: make
/// one per server, let it go at the end. All its requests share one kept-alive connection. Every
/// call blocks until it is done, on the user-interface thread only; limits and hooks are those of
/// http_settings.h.
///
/// Failures are plain false, and the caller words them. An object that could not connect, or that
/// waited for a stalled or endless response once, fails every later request at once: otherwise each
/// of a radar's frames would cost its own half minute. So does every object while the program is to
/// end.
class CHttpTransfer {
public:
    enum class ConnectState {
        NotYet = 0,
        Connected = 1,
        Failed = 2, ///< stays: this object tries no more
    };

    /// `host` is HOST or HOST:PORT; without a port it is 80, or 443 when `secure`. With
    /// `useConnectionManager` a data connection is asked for before the first request and released
    /// by the destructor.
    CHttpTransfer(QString host, bool useConnectionManager, bool secure);
    ~CHttpTransfer();
    CHttpTransfer(const CHttpTransfer&) = delete;
    CHttpTransfer& operator=(const CHttpTransfer&) = delete;

    /// Fetches serverPath (absolute, "/ridge/...") into localPath, replacing it. False, with
    /// localPath untouched, when the server cannot be reached or gives no status or one of 300 and
    /// above, and when the file cannot be created or written in full (a full disk).
    ///
    /// A body that breaks off or reaches a limit counts as ended there: the shorter file is kept
    /// and the result is true. The file gets its name only when the transfer is over, so a program
    /// killed in the middle leaves none.
    [[nodiscard]] bool DownloadToFile(const QString& serverPath, const QString& localPath);

    /// True at once when anything (an empty file, too) has the name localPath; otherwise
    /// DownloadToFile.
    [[nodiscard]] bool DownloadIfAbsent(const QString& serverPath, const QString& localPath);

    /// Fetches serverPath and adds every double-quoted string of the body to `strings`, which is
    /// how a directory listing names its files. The status does not matter: an error page is
    /// scanned like a listing. False only when no response came. Always plain HTTP, even when
    /// `secure`; the port follows `secure` nevertheless.
    [[nodiscard]] bool FetchQuotedStrings(const QString& serverPath, std::set<QString>& strings);

    [[nodiscard]] ConnectState connectState() const { return m_connectState; }

private:
    [[nodiscard]] bool Connect();
    [[nodiscard]] bool OpenRequest(const QString& serverPath, bool secureFlag);
    [[nodiscard]] int StatusCode() const;
    [[nodiscard]] bool ReceiveToFile(const QString& localPath);

    void settle();
    [[nodiscard]] QByteArray url(const QString& serverPath, bool secureFlag) const;

    QString m_host;
    bool m_useConnectionManager;
    bool m_secure;
    bool m_connectionRequested = false;
    ConnectState m_connectState = ConnectState::NotYet;
    bool m_gaveUp = false;                  ///< a request waited to its limit
    std::unique_ptr<HttpSession> m_session; ///< from the first request on
};

} // namespace raincast
