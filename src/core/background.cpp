// SPDX-License-Identifier: MIT
#include "core/background.h"

#include <QRunnable>
#include <QThreadPool>

#include <mutex>

namespace raincast {

namespace {

/// Some work on its way into the pool.
class Piece : public QRunnable {
public:
    Piece(
        std::function<void()> work, std::function<void()> done, Mailbox::Slit results,
        std::shared_ptr<const std::atomic<bool>> dropped
    )
        : m_results(std::move(results)) {
        const std::lock_guard lock(m_mutex);
        m_work = std::move(work);
        m_done = std::move(done);
        m_dropped = std::move(dropped);
    }

    void run() override {
        const std::lock_guard lock(m_mutex);
        if (!*m_dropped) {
            m_work();
            m_work = nullptr; // what it owns ends here
            m_results.post(std::move(m_done));
        }
    }

private:
    std::mutex m_mutex; ///< hands the rest over to the thread
    std::function<void()> m_work;
    std::function<void()> m_done;
    std::shared_ptr<const std::atomic<bool>> m_dropped;
    Mailbox::Slit m_results;
};

} // namespace

Background::~Background() {
    *m_ended = true;
}

void Background::start(std::function<void()> work, std::function<void()> done) {
    QThreadPool::globalInstance()->start(
        new Piece(std::move(work), std::move(done), m_mailbox.slit(), m_ended)
    );
}

} // namespace raincast
