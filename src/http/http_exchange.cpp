// SPDX-License-Identifier: MIT
#include "http/http_exchange.h"

#include "http/http_reply_slot.h"

#include <algorithm>
#include <charconv>

namespace raincast {

namespace {

char lower(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

bool equalInAnyCase(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char left, char right) {
        return lower(left) == lower(right);
    });
}

/// Without "http://host": proxies get that form, and every server must understand it.
std::string_view withoutHost(std::string_view target) {
    for (const std::string_view scheme : {"http://", "https://"}) {
        if (equalInAnyCase(target.substr(0, scheme.size()), scheme)) {
            target.remove_prefix(scheme.size());
            target.remove_prefix(std::min(target.find_first_of("/?"), target.size()));
            break;
        }
    }
    return target;
}

/// "%20" becomes a space; a bad code stays as it is.
std::string decoded(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        unsigned char byte = 0;
        const char* const code = text.data() + i + 1;
        const bool isCode = text[i] == '%' && i + 2 < text.size() &&
                            std::from_chars(code, code + 2, byte, 16).ptr == code + 2;
        result += isCode ? static_cast<char>(byte) : text[i];
        i += isCode ? 2 : 0;
    }
    return result;
}

} // namespace

std::string_view HttpRequest::header(std::string_view name) const {
    const auto found = std::find_if(headers.begin(), headers.end(), [name](const auto& header) {
        return equalInAnyCase(header.first, name);
    });
    return found == headers.end() ? std::string_view() : found->second;
}

void setTarget(HttpRequest& request, std::string_view target) {
    target = withoutHost(target);
    const std::size_t end = std::min(target.find('?'), target.size());
    request.query = target.substr(std::min(end + 1, target.size()));
    request.path = decoded(target.substr(0, end));
    if (request.path.empty()) {
        request.path = "/";
    }
}

void HttpReply::Slot::send(HttpAnswer answer) {
    {
        const std::lock_guard lock(m_mutex);
        if (!m_isWanted) {
            return;
        }
        m_isWanted = false;
        m_answer = std::move(answer);
        if (!m_isWaiting) {
            return;
        }
    }
    m_wake();
}

std::optional<HttpAnswer> HttpReply::Slot::takeOrWait() {
    const std::lock_guard lock(m_mutex);
    m_isWaiting = !m_answer;
    return std::exchange(m_answer, std::nullopt);
}

void HttpReply::Slot::abandon() {
    const std::lock_guard lock(m_mutex);
    m_isWanted = false;
}

/// All copies of a reply share this.
class HttpReply::Promise {
public:
    explicit Promise(std::shared_ptr<Slot> slot) : m_slot(std::move(slot)) {}
    ~Promise() { m_slot->send({500, {}, {}}); }
    Promise(const Promise&) = delete;
    Promise& operator=(const Promise&) = delete;

    [[nodiscard]] Slot& slot() const { return *m_slot; }

private:
    std::shared_ptr<Slot> m_slot;
};

HttpReply::HttpReply(std::shared_ptr<Slot> slot)
    : m_promise(std::make_shared<const Promise>(std::move(slot))) {}

void HttpReply::send(HttpAnswer answer) const {
    m_promise->slot().send(std::move(answer));
}

bool HttpReply::isWanted() const {
    return m_promise->slot().isWanted();
}

} // namespace raincast
