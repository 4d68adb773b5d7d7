// SPDX-License-Identifier: MIT
#pragma once

#include "net/curl_request.h"
#include "net/downloads.h"

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace raincast {

/// The thread of Downloads: libcurl's multi handle with its connections, the requests that run and
/// those that wait for a connection. It begins with the first request and sleeps while there is
/// none.
class Downloads::Thread {
public:
    /// Called in the thread when a request has ended.
    using Arrived = std::function<void(std::uint64_t number, const HttpResponse& response)>;

    Thread(const CurlLibrary* (*curl)(), Arrived arrived);
    /// Cancels everything and waits for the thread, which does not wait for the network.
    ~Thread();
    Thread(const Thread&) = delete;
    Thread& operator=(const Thread&) = delete;

    void add(std::uint64_t number, DownloadOrder order);
    void cancel(std::uint64_t number);
    /// Closes the connections that are kept, as soon as no request runs.
    void closeConnections();

private:
    /// A request and who waits for it.
    struct Job {
        DownloadOrder order;
        QByteArray server;
        std::vector<std::uint64_t> numbers;
        std::unique_ptr<CurlRequest> request; ///< while it runs
    };
    using Jobs = std::list<Job>;
    using Command = std::function<void(Thread&)>;

    struct MultiDeleter {
        void operator()(CURLM* multi) const { CurlLibrary::get()->multiCleanup(multi); }
    };

    void tell(Command command);
    void work();
    [[nodiscard]] bool takeCommands();
    void sleep();
    void dropMulti();
    void accept(std::uint64_t number, DownloadOrder order);
    void drop(std::uint64_t number);
    void startWaiting();
    void start(Job& job);
    void fail(Job& job, const QString& failure);
    void advance();
    void endLasting();
    void end(Jobs::iterator job, CURLcode result);
    void answer(const Job& job, const HttpResponse& response) const;
    [[nodiscard]] Jobs::iterator jobOf(CURL* easy);

    const CurlLibrary* (*m_load)();
    Arrived m_arrived;

    std::mutex m_mutex; ///< guards these
    std::condition_variable m_awake;
    std::deque<Command> m_commands;
    bool m_ending = false;
    CURLM* m_polled = nullptr; ///< the multi handle that the thread may wait for

    const CurlLibrary* m_curl = nullptr; ///< of the thread, from here on
    std::unique_ptr<CURLM, MultiDeleter> m_multi;
    bool m_closing = false;              ///< the connections
    Jobs m_jobs;                         ///< in the order of asking
    std::map<QByteArray, int> m_running; ///< by server

    std::thread m_thread;
};

} // namespace raincast
