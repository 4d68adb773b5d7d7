// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_descriptor.h"
#include "server/http_exchange.h"

#include <chrono>
#include <map>
#include <memory>
#include <optional>

struct MHD_Connection;
struct MHD_Daemon;
struct sockaddr_storage;

namespace raincast {

/// HTTP on sockets that are given to it, by GNU libmicrohttpd, which nothing else here knows. Each
/// conversation has a number of its owner's. For one thread, which waits for descriptor() and then
/// calls run(). A request with a body, and one that is no HTTP, is the last of its conversation.
class HttpConversations {
public:
    /// What happens in conversations; called from within run().
    class Events {
    public:
        virtual ~Events() = default;

        /// A request has come. Nothing: its answer will be given to answer().
        [[nodiscard]] virtual std::optional<HttpAnswer> asked(int id, HttpRequest request) = 0;
        /// Its answer begins. Whether it is the last one in this conversation.
        [[nodiscard]] virtual bool isLast(int id) = 0;
        /// The answer has been sent, and the next request is waited for.
        virtual void answered(int id) = 0;
        /// It has ended; the number means nothing any more.
        virtual void ended(int id) = 0;
    };

    /// A longer request (first line and headers) is refused. The events are borrowed.
    HttpConversations(Events& events, std::size_t mostRequestBytes);
    /// Ends all conversations, with ended() for each.
    ~HttpConversations();
    HttpConversations(const HttpConversations&) = delete;
    HttpConversations& operator=(const HttpConversations&) = delete;

    /// Readable when run() has something to do.
    [[nodiscard]] int descriptor() const;
    /// How long to wait for it at most; nothing: for ever.
    [[nodiscard]] std::optional<std::chrono::milliseconds> timeout() const;
    void run();

    /// Begins one. False when there is no memory for it; the socket is closed then.
    [[nodiscard]] bool begin(int id, FileDescriptor socket, const sockaddr_storage& address);
    /// Answers what asked() left open.
    void answer(int id, HttpAnswer answer);
    /// Lets go of a conversation whose socket its owner has shut down: it ends in the next run().
    void drop(int id);

private:
    class Callbacks;
    struct Conversation {
        int id = 0;
        MHD_Connection* connection = nullptr;
        std::string target;   ///< of the present request
        bool isBegun = false; ///< its headers have come
        bool isAsked = false;
        bool isSuspended = false;
        std::optional<HttpAnswer> answer;
    };

    Events& m_events;
    std::size_t m_mostRequestBytes;
    std::map<int, Conversation> m_conversations;
    Conversation* m_beginning = nullptr;
    MHD_Daemon* m_daemon;
};

} // namespace raincast
