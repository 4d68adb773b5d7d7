// SPDX-License-Identifier: MIT
// What a client puts into the target and the headers of a request, a line each.
#include "http/http_negotiation.h"

#include "http/client_address.h"
#include "http/http_exchange.h"
#include "input.h"

#include <sys/socket.h>

#include <cstring>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace raincast;
    Input input(data, size);
    HttpRequest request;
    const std::string target = input.line().toStdString();
    setTarget(request, target);
    require(
        !request.path.empty() && request.path.size() + request.query.size() <= target.size() + 1
    );

    const std::string encodings = input.line().toStdString();
    require(!acceptsGzip(encodings) || encodings.find_first_of("*zZ") != std::string::npos);
    const std::string tag = input.line().toStdString();
    const std::string known = input.line().toStdString();
    if (namesTag(known, tag)) {
        require(known.find(tag) != std::string::npos || known.find('*') != std::string::npos);
    }
    request.headers = {{known, tag}, {"If-None-Match", known}};
    require(request.header(known) == tag);

    sockaddr_storage address{};
    const QByteArray bytes = input.bytes(sizeof address);
    std::memcpy(&address, bytes.constData(), static_cast<std::size_t>(bytes.size()));
    require(clientAt(address).size() <= 16);
    return 0;
}
