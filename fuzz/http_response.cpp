// SPDX-License-Identifier: MIT
// Whatever a server answers, behind a byte that says what was asked of it (and a tag that it gave
// once, in a line): status lines, headers, bodies in pieces. A file is of its kind, nothing is
// larger than it may be, only a status says that there was an answer, and nothing else is asked for
// than headers that are ours.
#include "answering_curl.h"
#include "net/byte_allowance.h"
#include "net/curl_request.h"
#include "net/quoted_string_scanner.h"

namespace raincast {
namespace {

constexpr qint64 kMostBytes = 512;
constexpr FileKind kPicture{
    "GIF image", 4, [](QByteArrayView first) { return first.startsWith("GIF8"); }, true};

CURLcode perform(const CurlLibrary& curl, CURL* easy) {
    CURLM* const multi = curl.multiInit();
    curl.multiAddHandle(multi, easy);
    CURLcode result = CURLE_OK;
    int running = 1;
    while (running > 0) {
        require(curl.multiPerform(multi, &running) == CURLM_OK);
        int left = 0;
        while (const CURLMsg* const message = curl.multiInfoRead(multi, &left)) {
            result = message->data.result;
        }
        if (running > 0) {
            curl.multiPoll(multi, nullptr, 0, 1000, nullptr);
        }
    }
    curl.multiRemoveHandle(multi, easy);
    curl.multiCleanup(multi);
    return result;
}

DownloadOrder orderFor(int kind) {
    DownloadOrder order;
    order.url = "http://127.0.0.1:8155/ridge/RadarImg/N0R/TLX/";
    order.body = kind % 4 == 0 ? DownloadOrder::Body::listing : DownloadOrder::Body::file;
    order.kind = kind % 4 == 1 ? kPicture : kAnyFile;
    order.knownTag = kind % 4 == 2 ? "\"tag\"" : "";
    order.limits.listingBytes = kMostBytes;
    order.limits.fileBytes = kMostBytes;
    return order;
}

void check(const HttpResponse& response, const DownloadOrder& order) {
    require(response.body.size() <= kMostBytes && response.tag.size() <= 128);
    require(response.answered() || !response.whole);
    require(!response.tag.contains('\n') && !response.source.contains('\n'));
    require(!response.unchanged || (response.status == 304 && !order.knownTag.isEmpty()));
    const bool isFile = order.body == DownloadOrder::Body::file;
    if (isFile && !response.body.isEmpty()) {
        require(response.status < kFirstFailingStatus && order.kind.isOne(response.body));
        require(response.whole || !order.kind.mustBeWhole);
    }
    static_cast<void>(outcomeOf(response));
    static_cast<void>(troubleOf(response, QStringLiteral("radar.example")));
    std::set<QString> strings;
    QuotedStringScanner(strings).scan(response.body);
}

} // namespace
} // namespace raincast

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace raincast;
    Input input(data, size);
    DownloadOrder order = orderFor(input.byte());
    if (!order.knownTag.isEmpty()) {
        order.knownTag += input.line();
    }
    AnsweringCurl::prepare({input.rest()});
    CurlRequest request(AnsweringCurl::library(), order);
    const CURLcode result = perform(AnsweringCurl::library(), request.handle());
    check(request.end(result), order);
    AnsweringCurl::requireKnownHeaders();
    return 0;
}
