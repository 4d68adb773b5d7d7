// SPDX-License-Identifier: MIT
// Whatever a provider answers, after it has given a tag and a date (each behind its length in a
// byte), connection by connection (each answer behind its length in two bytes): statuses,
// redirects, headers that say when to come again. A request ends, after few attempts and within a
// day, and has no headers but ours.
#include "answering_curl.h"
#include "core/clock.h"
#include "provider/curl_fetcher.h"
#include "provider/http_time.h"
#include "provider/polite_fetcher.h"

namespace raincast {
namespace {

constexpr qint64 kMostBytes = 512;
constexpr FileTime kDay = 24 * 60 * kFileTimePerMinute;
const FileTime kNow = fromCalendar({2026, 11, 21, 17, 52});

class StillClock : public ManualClock {
public:
    StillClock() : ManualClock(kNow) { use(this); }
};

std::deque<QByteArray> answersIn(Input& input) {
    std::deque<QByteArray> answers;
    while (!input.atEnd()) {
        const int high = input.byte();
        answers.push_back(input.bytes(high * 256 + input.byte()));
    }
    return answers;
}

} // namespace
} // namespace raincast

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace raincast;
    static StillClock clock;
    clock.set(kNow);
    Input input(data, size);
    const QByteArray tag = input.piece();
    const QByteArray date = input.piece();
    require(readHttpTime(date) >= 0);
    AnsweringCurl::prepare(answersIn(input));
    CurlFetcher curl("raincast-server", {}, &AnsweringCurl::library());
    PoliteFetcher fetcher(curl, [] { return 0.5; });
    int done = 0;
    const auto note = [&done](const FetchAnswer& answer) {
        ++done;
        require(answer.body.size() <= kMostBytes);
        require((answer.failure == FetchAnswer::Failure::none) || !answer.problem.isEmpty());
    };
    fetcher.get({"http://127.0.0.1:8156/bucket/", kMostBytes, tag, date}, nullptr, note);
    while (done == 0) {
        const FileTime next = fetcher.turn();
        if (curl.isIdle() && done == 0) {
            require(next < kNow + kDay);
            clock.set(std::max(clock.now(), next));
        }
        curl.pump(std::chrono::milliseconds(curl.isIdle() ? 0 : 1000));
    }
    AnsweringCurl::requireKnownHeaders();
    require(done == 1 && fetcher.health("127.0.0.1:8156").requests <= 3);
    return 0;
}
