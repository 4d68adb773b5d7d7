// SPDX-License-Identifier: MIT
#include "net/download_thread.h"

#include "core/text.h"
#include "net/byte_allowance.h"

#include <algorithm>
#include <csignal>
#include <utility>

namespace raincast {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

// Between two looks at the limits of time.
constexpr milliseconds kLook{100};

QByteArray serverOf(const QByteArray& url) {
    return url.left(url.indexOf('/', url.indexOf("//") + 2));
}

// The thread that has the user's windows hears signals, and a write to a connection that has gone
// is no reason to end.
void blockSignals() {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_BLOCK, &all, nullptr);
}

} // namespace

Downloads::Thread::Thread(const CurlLibrary* (*curl)(), Arrived arrived)
    : m_load(curl), m_arrived(std::move(arrived)) {}

Downloads::Thread::~Thread() {
    if (m_thread.joinable()) {
        tell([](Thread& thread) {
            const std::lock_guard lock(thread.m_mutex);
            thread.m_ending = true;
        });
        m_thread.join();
    }
}

void Downloads::Thread::add(std::uint64_t number, DownloadOrder order) {
    tell([number, order = std::move(order)](Thread& thread) { thread.accept(number, order); });
    if (!m_thread.joinable()) {
        m_thread = std::thread([this] { work(); });
    }
}

void Downloads::Thread::cancel(std::uint64_t number) {
    tell([number](Thread& thread) { thread.drop(number); });
}

void Downloads::Thread::closeConnections() {
    tell([](Thread& thread) { thread.m_closing = true; });
}

// From the other thread.
void Downloads::Thread::tell(Command command) {
    const std::lock_guard lock(m_mutex);
    m_commands.push_back(std::move(command));
    m_awake.notify_one();
    if (m_polled != nullptr) {
        m_curl->multiWakeup(m_polled);
    }
}

void Downloads::Thread::work() {
    blockSignals();
    while (takeCommands()) {
        if (m_jobs.empty()) {
            sleep();
            continue;
        }
        startWaiting();
        advance();
        endLasting();
    }
    for (Job& job : m_jobs) {
        if (job.request) {
            m_curl->multiRemoveHandle(m_multi.get(), job.request->handle());
        }
    }
    m_jobs.clear();
    dropMulti();
}

void Downloads::Thread::dropMulti() {
    const std::lock_guard lock(m_mutex);
    m_polled = nullptr;
    m_multi.reset();
}

// False when the thread is to end.
bool Downloads::Thread::takeCommands() {
    std::unique_lock lock(m_mutex);
    while (!m_commands.empty()) {
        const Command command = std::move(m_commands.front());
        m_commands.pop_front();
        lock.unlock();
        command(*this);
        lock.lock();
    }
    return !m_ending;
}

void Downloads::Thread::sleep() {
    if (std::exchange(m_closing, false)) {
        dropMulti();
    }
    std::unique_lock lock(m_mutex);
    m_awake.wait(lock, [this] { return !m_commands.empty(); });
}

void Downloads::Thread::accept(std::uint64_t number, DownloadOrder order) {
    const auto same = std::find_if(m_jobs.begin(), m_jobs.end(), [&order](const Job& job) {
        return job.order.sameAs(order);
    });
    m_closing = false;
    if (same == m_jobs.end()) {
        const QByteArray server = serverOf(order.url);
        m_jobs.push_back({std::move(order), server, {number}, nullptr});
        return;
    }
    same->numbers.push_back(number);
    if (same->request) {
        same->request->share(order.allowance);
    }
}

void Downloads::Thread::drop(std::uint64_t number) {
    const auto job = std::find_if(m_jobs.begin(), m_jobs.end(), [number](const Job& one) {
        return std::count(one.numbers.begin(), one.numbers.end(), number) > 0;
    });
    if (job == m_jobs.end()) {
        return;
    }
    job->numbers.erase(std::find(job->numbers.begin(), job->numbers.end(), number));
    if (job->numbers.empty()) {
        end(job, CURLE_ABORTED_BY_CALLBACK);
    }
}

void Downloads::Thread::startWaiting() {
    for (auto job = m_jobs.begin(); job != m_jobs.end();) {
        const auto next = std::next(job);
        if (!job->request && m_running[job->server] < kMostConnections) {
            start(*job);
            if (!job->request) {
                m_jobs.erase(job);
            }
        }
        job = next;
    }
}

// Begins a request; one that cannot begin is answered at once.
void Downloads::Thread::start(Job& job) {
    if (m_curl == nullptr) {
        m_curl = m_load();
    }
    if (m_curl == nullptr) {
        fail(job, Text::tr("libcurl is not installed"));
        return;
    }
    if (job.order.allowance && job.order.allowance->usedUp()) {
        fail(job, Text::tr("more than one update may bring"));
        return;
    }
    if (!m_multi) {
        const std::lock_guard lock(m_mutex);
        m_multi.reset(m_curl->multiInit());
        m_polled = m_multi.get();
    }
    job.request = std::make_unique<CurlRequest>(*m_curl, job.order);
    CURL* const easy = job.request->handle();
    if (!m_multi || easy == nullptr || m_curl->multiAddHandle(m_multi.get(), easy) != CURLM_OK) {
        job.request.reset();
        fail(job, Text::tr("Out of memory"));
        return;
    }
    ++m_running[job.server];
}

void Downloads::Thread::fail(Job& job, const QString& failure) {
    HttpResponse response;
    response.failure = failure;
    answer(job, response);
}

// Lets libcurl do what it can, and waits for more.
void Downloads::Thread::advance() {
    if (!m_multi) {
        return;
    }
    int running = 0;
    m_curl->multiPerform(m_multi.get(), &running);
    int left = 0;
    bool ended = false;
    while (const CURLMsg* message = m_curl->multiInfoRead(m_multi.get(), &left)) {
        if (message->msg == CURLMSG_DONE) {
            end(jobOf(message->easy_handle), message->data.result);
            ended = true;
        }
    }
    if (!ended && !m_jobs.empty()) {
        m_curl->multiPoll(m_multi.get(), nullptr, 0, static_cast<int>(kLook.count()), nullptr);
    }
}

void Downloads::Thread::endLasting() {
    const auto now = steady_clock::now();
    for (auto job = m_jobs.begin(); job != m_jobs.end();) {
        const auto next = std::next(job);
        if (job->request && job->request->lasted(now)) {
            end(job, CURLE_OK);
        }
        job = next;
    }
}

void Downloads::Thread::end(Jobs::iterator job, CURLcode result) {
    if (job->request) {
        --m_running[job->server];
        m_curl->multiRemoveHandle(m_multi.get(), job->request->handle());
        answer(*job, job->request->end(result));
    }
    m_jobs.erase(job);
}

void Downloads::Thread::answer(const Job& job, const HttpResponse& response) const {
    for (const std::uint64_t number : job.numbers) {
        m_arrived(number, response);
    }
}

Downloads::Thread::Jobs::iterator Downloads::Thread::jobOf(CURL* easy) {
    return std::find_if(m_jobs.begin(), m_jobs.end(), [easy](const Job& job) {
        return job.request && job.request->handle() == easy;
    });
}

} // namespace raincast
