// SPDX-License-Identifier: MIT
#include "core/mailbox.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>

#include <deque>
#include <mutex>
#include <utility>

namespace raincast {

/// The calls, which travel under a mutex; an event only says that there is one more.
class Mailbox::Box {
public:
    void open(QObject* opener) {
        const std::lock_guard lock(m_mutex);
        m_opener = opener;
    }

    void post(std::function<void()> call) {
        const std::lock_guard lock(m_mutex);
        if (m_opener != nullptr) {
            m_calls.push_back(std::move(call));
            QCoreApplication::postEvent(m_opener, new QEvent(QEvent::User));
        }
    }

    void makeNext() {
        std::unique_lock lock(m_mutex);
        if (m_calls.empty()) {
            return;
        }
        const auto call = std::move(m_calls.front());
        m_calls.pop_front();
        lock.unlock();
        call();
    }

    void close() {
        std::deque<std::function<void()>> dropped; // outside of the lock: they may own anything
        const std::lock_guard lock(m_mutex);
        m_opener = nullptr;
        dropped.swap(m_calls);
    }

private:
    std::mutex m_mutex;
    QObject* m_opener = nullptr;
    std::deque<std::function<void()>> m_calls;
};

class Mailbox::Opener : public QObject {
public:
    explicit Opener(std::shared_ptr<Box> box) : m_box(std::move(box)) {}

    void customEvent(QEvent* /*event*/) override {
        const auto box = m_box; // the call may end the mailbox, and this with it
        box->makeNext();
    }

private:
    std::shared_ptr<Box> m_box;
};

Mailbox::Slit::Slit(std::shared_ptr<Box> box) : m_box(std::move(box)) {}

void Mailbox::Slit::post(std::function<void()> call) const {
    m_box->post(std::move(call));
}

Mailbox::Mailbox() : m_box(std::make_shared<Box>()), m_opener(std::make_unique<Opener>(m_box)) {
    m_box->open(m_opener.get());
}

Mailbox::~Mailbox() {
    m_box->close();
}

Mailbox::Slit Mailbox::slit() const {
    return Slit(m_box);
}

} // namespace raincast
