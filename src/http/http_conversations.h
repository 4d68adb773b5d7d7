// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_descriptor.h"
#include "http/http_exchange.h"

#include <chrono>
#include <map>
#include <memory>
#include <optional>

struct MHD_Connection;
struct MHD_Daemon;
struct sockaddr_storage;

namespace raincast {

/// HTTP on sockets that its owner gives it, by GNU libmicrohttpd, which no other file uses. The
/// owner numbers the conversations. For one thread, which waits for descriptor() and then calls
/// run(). A request with a body, or one that is not HTTP, ends its conversation.
class HttpConversations {
public:
    /// The events of conversations; called from within run().
    class Events {
    public:
        virtual ~Events() = default;

        /// A request has come. If this returns nothing, its answer comes by answer().
        [[nodiscard]] virtual std::optional<HttpAnswer> asked(int id, HttpRequest request) = 0;
        /// Its answer begins. Whether it is the last one in this conversation.
        [[nodiscard]] virtual bool isLast(int id) = 0;
        /// The answer has been sent; the next request may come.
        virtual void answered(int id) = 0;
        /// The conversation has ended; its number is free.
        virtual void ended(int id) = 0;
    };

    /// Refuses a longer request (first line and headers). The events are borrowed.
    HttpConversations(Events& events, std::size_t mostRequestBytes);
    /// Ends all conversations, with ended() for each.
    ~HttpConversations();
    HttpConversations(const HttpConversations&) = delete;
    HttpConversations& operator=(const HttpConversations&) = delete;

    /// Readable when run() has something to do.
    [[nodiscard]] int descriptor() const;
    /// The longest time to wait for it; nothing: no limit.
    [[nodiscard]] std::optional<std::chrono::milliseconds> timeout() const;
    void run();

    /// Begins a conversation. Without memory it closes the socket and returns false.
    [[nodiscard]] bool begin(int id, FileDescriptor socket, const sockaddr_storage& address);
    /// Answers a request that asked() left open.
    void answer(int id, HttpAnswer answer);
    /// Ends a conversation whose socket its owner has shut down, in the next run().
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
