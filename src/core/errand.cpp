// SPDX-License-Identifier: MIT
#include "core/errand.h"

#include <QMetaObject>

#include <utility>

namespace raincast {

Errand::~Errand() {
    if (m_thread.joinable()) {
        m_thread.join();
    }
}

void Errand::start(std::function<void()> work, std::function<void()> done) {
    m_done = std::move(done);
    // A call that was overtaken by wait() may come when the next errand is under way.
    m_thread = std::thread([this, number = ++m_number, work = std::move(work)] {
        work();
        QMetaObject::invokeMethod(
            &m_home,
            [this, number] {
                if (number == m_number) {
                    wait();
                }
            },
            Qt::QueuedConnection
        );
    });
}

void Errand::wait() {
    if (m_thread.joinable()) {
        m_thread.join();
        std::exchange(m_done, {})();
    }
}

} // namespace raincast
