// SPDX-License-Identifier: MIT
#pragma once

#include "net/byte_allowance.h"
#include "net/http_transfer.h"
#include "support/event_loop.h"

#include <QString>

#include <set>
#include <utility>
#include <vector>

namespace raincast {

/// Downloads for tests that wait for them: an event loop, and an ear on every request.
class Transfers {
public:
    explicit Transfers(
        ConnectionManager& connection = ConnectionManager::ofTheSystem(),
        const CurlLibrary* (*curl)() = CurlLibrary::get
    )
        : m_downloads(connection, curl) {
        m_downloads.reportTo([this](const QString& url, const QString& outcome) {
            finished.emplace_back(url, outcome);
        });
    }

    [[nodiscard]] Downloads& downloads() { return m_downloads; }
    [[nodiscard]] EventLoop& loop() { return m_loop; }

    /// Each request's URL and its outcome.
    std::vector<std::pair<QString, QString>> finished;

private:
    EventLoop m_loop;
    Downloads m_downloads;
};

/// A transfer object whose calls wait for their ends.
class WaitingTransfer : public CHttpTransfer {
public:
    WaitingTransfer(
        Transfers& transfers, const QString& host, bool useConnectionManager, bool secure,
        std::shared_ptr<ByteAllowance> allowance = nullptr
    )
        : CHttpTransfer(
              transfers.downloads(), host, useConnectionManager, secure, std::move(allowance)
          ),
          m_loop(transfers.loop()) {}

    [[nodiscard]] bool
    DownloadToFile(const QString& path, const QString& local, const FileKind& kind = kAnyFile) {
        m_fetched = m_loop.resultOf<Fetched>([&](const FileDone& done) {
            CHttpTransfer::DownloadToFile(path, local, kind, done);
        });
        return m_fetched.kept;
    }
    /// Why the last file could not be written.
    [[nodiscard]] const std::optional<QString>& writeFailure() const {
        return m_fetched.writeFailure;
    }
    using CHttpTransfer::trouble;
    /// Adds to the strings.
    [[nodiscard]] bool FetchQuotedStrings(const QString& path, std::set<QString>& strings) {
        auto listing = m_loop.resultOf<Listing>([&](const ListingDone& done) {
            CHttpTransfer::FetchQuotedStrings(path, done);
        });
        if (listing) {
            strings.merge(*listing);
        }
        return listing.has_value();
    }

private:
    EventLoop& m_loop;
    Fetched m_fetched;
};

/// Counts what is asked of it.
class CountingConnectionManager : public ConnectionManager {
public:
    explicit CountingConnectionManager(bool succeeds = true) : m_succeeds(succeeds) {}

    void EstablishConnection(const QString& /*host*/, Ready ready) override {
        ++established;
        ready(m_succeeds);
    }
    bool ReleaseConnection() override {
        ++released;
        return true;
    }

    int established = 0;
    int released = 0;

private:
    bool m_succeeds;
};

} // namespace raincast
