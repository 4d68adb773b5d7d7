// SPDX-License-Identifier: MIT
#include "net/downloads.h"

#include "net/download_thread.h"

#include <utility>

namespace raincast {

Downloads::Download::~Download() {
    m_downloads.cancel(m_number);
}

Downloads::Downloads(ConnectionManager& connection, const CurlLibrary* (*curl)())
    : m_connection(connection),
      m_thread(std::make_unique<Thread>(
          curl,
          [this, slit = m_mailbox.slit()](std::uint64_t number, const HttpResponse& response) {
              slit.post([this, number, response] { arrived(number, response); });
          }
      )) {}

Downloads::~Downloads() = default;

std::unique_ptr<Downloads::Download> Downloads::get(DownloadOrder order, Done done) {
    const std::uint64_t number = ++m_last;
    m_waiting.emplace(number, std::move(done));
    m_thread->add(number, std::move(order));
    return std::unique_ptr<Download>(new Download(*this, number));
}

std::shared_ptr<void> Downloads::keepConnections() {
    auto keeping = m_keeping.lock();
    if (!keeping) {
        keeping = std::shared_ptr<void>(this, [](void* self) {
            static_cast<Downloads*>(self)->m_thread->closeConnections();
        });
        m_keeping = keeping;
    }
    return keeping;
}

void Downloads::cancel(std::uint64_t number) {
    if (m_waiting.erase(number) > 0) {
        m_thread->cancel(number);
    }
}

void Downloads::arrived(std::uint64_t number, const HttpResponse& response) {
    const auto found = m_waiting.find(number);
    if (found == m_waiting.end()) {
        return;
    }
    const Done done = std::move(found->second);
    m_waiting.erase(found);
    done(response);
}

void Downloads::report(const QByteArray& url, const QString& outcome) const {
    if (m_report) {
        m_report(QString::fromUtf8(url), outcome);
    }
}

} // namespace raincast
