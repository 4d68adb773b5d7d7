// SPDX-License-Identifier: MIT
#include "http/http_conversations.h"

#include <microhttpd.h>
#include <sys/socket.h>

#include <algorithm>
#include <cstring>
#include <locale>

namespace raincast {

namespace {

HttpHeaders headersOf(MHD_Connection* connection) {
    HttpHeaders headers;
    const auto add = [](void* to, MHD_ValueKind, const char* name, const char* value) {
        static_cast<HttpHeaders*>(to)->emplace_back(name, value != nullptr ? value : "");
        return MHD_YES;
    };
    MHD_get_connection_values(connection, MHD_HEADER_KIND, add, &headers);
    return headers;
}

bool isForbidden(char c) {
    return c != '\t' && std::iscntrl(c, std::locale::classic());
}

/// Refuses "Content-Length : 5", and a line end within a header: a program that reads them in
/// another way would take the body for the next request.
bool isClear(const HttpHeaders::value_type& header) {
    const auto& [name, value] = header;
    return !name.empty() && name.find_first_of(" \t") == std::string::npos &&
           std::none_of(name.begin(), name.end(), isForbidden) &&
           std::none_of(value.begin(), value.end(), isForbidden);
}

HttpAnswer refusal(int status) {
    return {status, {}, {{MHD_HTTP_HEADER_CONNECTION, "close"}}};
}

/// The library's form of an answer, which keeps the body alive until it is sent.
MHD_Response* responseOf(const HttpAnswer& answer) {
    auto* const body = new QByteArray(answer.body);
    const auto free = [](void* bytes) { delete static_cast<QByteArray*>(bytes); };
    MHD_Response* const response = MHD_create_response_from_buffer_with_free_callback_cls(
        static_cast<std::size_t>(body->size()), const_cast<char*>(body->constData()), free, body
    );
    if (response == nullptr) {
        free(body);
        return nullptr;
    }
    for (const auto& [name, value] : answer.headers) {
        MHD_add_response_header(response, name.c_str(), value.c_str());
    }
    return response;
}

} // namespace

/// The library calls these.
class HttpConversations::Callbacks {
public:
    static void connection(
        void* self, MHD_Connection* connection, void** context, MHD_ConnectionNotificationCode what
    ) {
        auto& all = *static_cast<HttpConversations*>(self);
        if (what == MHD_CONNECTION_NOTIFY_STARTED) {
            all.m_beginning->connection = connection;
            *context = all.m_beginning;
        } else {
            const int id = static_cast<Conversation*>(*context)->id;
            all.m_conversations.erase(id);
            all.m_events.ended(id);
        }
    }

    /// The request line has come. The library passes the result to each call below.
    static void* requestLine(void* /*self*/, const char* target, MHD_Connection* connection) {
        auto* const conversation = static_cast<Conversation*>(
            MHD_get_connection_info(connection, MHD_CONNECTION_INFO_SOCKET_CONTEXT)->socket_context
        );
        conversation->target = target;
        conversation->isBegun = false;
        conversation->isAsked = false;
        return conversation;
    }

    /// Called when the headers have come, when the body has, and when a suspended conversation goes
    /// on. An answer to the first call makes the library end the connection, which is right for a
    /// body that will not be read.
    static MHD_Result request(
        void* self, MHD_Connection* connection, const char* /*path*/, const char* method,
        const char* /*version*/, const char* /*body*/, std::size_t* /*bodySize*/, void** context
    ) {
        auto& all = *static_cast<HttpConversations*>(self);
        auto& conversation = *static_cast<Conversation*>(*context);
        if (conversation.isAsked) {
            return conversation.answer ? send(all, conversation) : MHD_NO;
        }
        if (!std::exchange(conversation.isBegun, true) && !hasBody(connection)) {
            return MHD_YES;
        }
        conversation.isAsked = true;
        conversation.answer = ask(all, conversation, method);
        if (conversation.answer) {
            return send(all, conversation);
        }
        conversation.isSuspended = true;
        MHD_suspend_connection(connection);
        return MHD_YES;
    }

    static void completed(
        void* self, MHD_Connection* /*connection*/, void** context, MHD_RequestTerminationCode how
    ) {
        auto& all = *static_cast<HttpConversations*>(self);
        auto* const conversation = static_cast<Conversation*>(*context);
        if (how == MHD_REQUEST_TERMINATED_COMPLETED_OK && conversation != nullptr) {
            all.m_events.answered(conversation->id);
        }
    }

    /// Does not decode: with the library's decoding, "%00" would end the path.
    static std::size_t unescape(void* /*self*/, MHD_Connection* /*connection*/, char* text) {
        return std::strlen(text);
    }

private:
    static std::optional<HttpAnswer>
    ask(HttpConversations& all, Conversation& conversation, const char* method) {
        const auto* const size = MHD_get_connection_info(
            conversation.connection, MHD_CONNECTION_INFO_REQUEST_HEADER_SIZE
        );
        if (size != nullptr && size->header_size > all.m_mostRequestBytes) {
            return refusal(431);
        }
        HttpRequest request;
        request.method = method;
        setTarget(request, conversation.target);
        request.headers = headersOf(conversation.connection);
        if (!std::all_of(request.headers.begin(), request.headers.end(), isClear)) {
            return refusal(400);
        }
        return all.m_events.asked(conversation.id, std::move(request));
    }

    static MHD_Result send(HttpConversations& all, Conversation& conversation) {
        const HttpAnswer answer = *std::exchange(conversation.answer, std::nullopt);
        MHD_Response* const response = responseOf(answer);
        if (response == nullptr) {
            return MHD_NO;
        }
        // The body is not read, so the bytes behind it would make no sense.
        if (all.m_events.isLast(conversation.id) || hasBody(conversation.connection)) {
            MHD_add_response_header(response, MHD_HTTP_HEADER_CONNECTION, "close");
        }
        const auto status = static_cast<unsigned int>(answer.status);
        const MHD_Result result = MHD_queue_response(conversation.connection, status, response);
        MHD_destroy_response(response);
        return result;
    }

    static bool hasBody(MHD_Connection* connection) {
        const auto has = [connection](const char* name) {
            return MHD_lookup_connection_value(connection, MHD_HEADER_KIND, name) != nullptr;
        };
        return has(MHD_HTTP_HEADER_CONTENT_LENGTH) || has(MHD_HTTP_HEADER_TRANSFER_ENCODING);
    }
};

HttpConversations::HttpConversations(Events& events, std::size_t mostRequestBytes)
    : m_events(events), m_mostRequestBytes(mostRequestBytes),
      m_daemon(MHD_start_daemon(
          MHD_USE_EPOLL | MHD_USE_NO_LISTEN_SOCKET | MHD_ALLOW_SUSPEND_RESUME, 0, nullptr, nullptr,
          &Callbacks::request, this,
          // Of a connection: the request as it came, its headers as a list, the answer's headers.
          MHD_OPTION_CONNECTION_MEMORY_LIMIT, 2 * mostRequestBytes,
          // The owner of the sockets has limits of its own.
          MHD_OPTION_CONNECTION_LIMIT, 65536U, //
          MHD_OPTION_NOTIFY_CONNECTION, &Callbacks::connection, this, MHD_OPTION_NOTIFY_COMPLETED,
          &Callbacks::completed, this, MHD_OPTION_URI_LOG_CALLBACK, &Callbacks::requestLine, this,
          MHD_OPTION_UNESCAPE_CALLBACK, &Callbacks::unescape, this, //
          MHD_OPTION_END
      )) {}

HttpConversations::~HttpConversations() {
    for (auto& [id, conversation] : m_conversations) {
        drop(id);
    }
    MHD_stop_daemon(m_daemon);
}

int HttpConversations::descriptor() const {
    return MHD_get_daemon_info(m_daemon, MHD_DAEMON_INFO_EPOLL_FD)->epoll_fd;
}

std::optional<std::chrono::milliseconds> HttpConversations::timeout() const {
    unsigned long long milliseconds = 0;
    if (MHD_get_timeout(m_daemon, &milliseconds) == MHD_NO) {
        return std::nullopt;
    }
    return std::chrono::milliseconds(milliseconds);
}

void HttpConversations::run() {
    MHD_run(m_daemon);
}

bool HttpConversations::begin(int id, FileDescriptor socket, const sockaddr_storage& address) {
    Conversation& conversation = m_conversations[id];
    conversation.id = id;
    m_beginning = &conversation;
    const bool isBegun =
        MHD_add_connection(
            m_daemon, socket.release(), reinterpret_cast<const sockaddr*>(&address), sizeof address
        ) == MHD_YES;
    if (!isBegun) {
        m_conversations.erase(id);
    }
    return isBegun;
}

void HttpConversations::answer(int id, HttpAnswer answer) {
    const auto found = m_conversations.find(id);
    if (found != m_conversations.end() && found->second.isSuspended) {
        found->second.answer = std::move(answer);
        drop(id);
    }
}

void HttpConversations::drop(int id) {
    const auto found = m_conversations.find(id);
    if (found != m_conversations.end() && std::exchange(found->second.isSuspended, false)) {
        MHD_resume_connection(found->second.connection);
    }
}

} // namespace raincast
