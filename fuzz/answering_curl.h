// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_descriptor.h"
#include "input.h"
#include "net/curl_library.h"

#include <sys/socket.h>

#include <deque>
#include <vector>

namespace raincast {

/// libcurl itself, whose connections lead to no server: each finds the next answer on its socket,
/// and the end behind it.
class AnsweringCurl {
public:
    [[nodiscard]] static const CurlLibrary& library() {
        static const CurlLibrary answering = [] {
            require(CurlLibrary::get() != nullptr);
            CurlLibrary curl = *CurlLibrary::get();
            curl.easyInit = &easyInit;
            return curl;
        }();
        return answering;
    }

    /// The answers to come; ends the connections of before.
    static void prepare(std::deque<QByteArray> answers) {
        s_answers = std::move(answers);
        s_peers.clear();
    }

    /// What the connections were asked for; none of it has a line that is not one of these headers.
    static void requireKnownHeaders() {
        for (const FileDescriptor& peer : s_peers) {
            QByteArray asked(64 * 1024, '\0');
            const auto size = recv(peer.get(), asked.data(), 64 * 1024, MSG_DONTWAIT);
            for (QByteArray& line : asked.first(std::max<ssize_t>(size, 0)).split('\n')) {
                require(isKnown(line.trimmed()));
            }
        }
    }

private:
    static bool isKnown(const QByteArray& line) {
        constexpr const char* kHeaders[] = {
            "GET ",     "Host: ",          "User-Agent: ",    "Accept: ",
            "Pragma: ", "Accept-Encoding", "If-None-Match: ", "If-Modified-Since: "};
        return line.isEmpty() ||
               std::any_of(std::begin(kHeaders), std::end(kHeaders), [&line](const char* header) {
                   return line.startsWith(header);
               });
    }
    static CURL* easyInit() {
        const CurlLibrary& curl = *CurlLibrary::get();
        CURL* const easy = curl.easyInit();
        curl.easySetopt(easy, CURLOPT_OPENSOCKETFUNCTION, &openSocket);
        curl.easySetopt(easy, CURLOPT_SOCKOPTFUNCTION, &alreadyConnected);
        return easy;
    }
    static curl_socket_t openSocket(void* /*self*/, curlsocktype, curl_sockaddr* /*address*/) {
        int ends[2];
        require(socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0, ends) == 0);
        if (!s_answers.empty()) {
            const QByteArray& answer = s_answers.front();
            send(ends[1], answer.data(), static_cast<std::size_t>(answer.size()), MSG_NOSIGNAL);
            s_answers.pop_front();
        }
        shutdown(ends[1], SHUT_WR);
        s_peers.emplace_back(ends[1]); // open: what is asked must not come back as an error
        return ends[0];
    }
    static int alreadyConnected(void* /*self*/, curl_socket_t, curlsocktype) {
        return CURL_SOCKOPT_ALREADY_CONNECTED;
    }

    static inline std::deque<QByteArray> s_answers;
    static inline std::vector<FileDescriptor> s_peers;
};

} // namespace raincast
