// SPDX-License-Identifier: MIT
#include "provider/polite_fetcher.h"
#include "support/test_clock.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace raincast {
namespace {

constexpr FileTime kSecond = kFileTimePerSecond;

/// Keeps requests until the test answers them.
class FakeFetcher : public Fetcher {
public:
    void get(FetchRequest request, Done done) override {
        urls.push_back(request.url);
        waiting.push_back(std::move(done));
    }
    void answerAll(const FetchAnswer& answer) {
        for (const Done& done : std::exchange(waiting, {})) {
            done(answer);
        }
    }

    std::vector<QByteArray> urls;
    std::vector<Done> waiting;
};

FetchAnswer status(int number, const QByteArray& retryAfter = {}) {
    FetchAnswer answer;
    answer.status = number;
    answer.body = "body";
    answer.retryAfter = retryAfter;
    return answer;
}

FetchAnswer unreachable() {
    FetchAnswer answer;
    answer.failure = FetchAnswer::Failure::unreachable;
    answer.problem = "No route";
    return answer;
}

class PoliteFetcherTest : public ::testing::Test {
protected:
    void ask(const QByteArray& url = "http://radar.example/a", PoliteFetcher::Check check = {}) {
        ask(FetchRequest{url, 1000}, std::move(check));
    }
    void ask(FetchRequest request, PoliteFetcher::Check check = {}) {
        m_polite.get(std::move(request), std::move(check), [this](const FetchAnswer& answer) {
            m_answers.push_back(answer);
        });
        m_polite.turn();
    }
    void answer(const FetchAnswer& with) {
        m_fetcher.answerAll(with);
        m_polite.turn();
    }
    /// How long after now the next request begins.
    FileTime pause() {
        const FileTime begin = m_clock.now();
        const std::size_t before = m_fetcher.urls.size();
        while (m_fetcher.urls.size() == before && m_clock.now() < begin + 3600 * kSecond) {
            m_clock.advance(kSecond);
            m_polite.turn();
        }
        return (m_clock.now() - begin) / kSecond;
    }
    [[nodiscard]] const HostHealth& health() const { return m_polite.health("radar.example"); }

    TestClock m_clock;
    FakeFetcher m_fetcher;
    PoliteFetcher m_polite{m_fetcher, [] { return 0.0; }};
    std::vector<FetchAnswer> m_answers;
};

TEST_F(PoliteFetcherTest, SendsFourAtOnceToEachHost) {
    for (int i = 0; i < 9; ++i) {
        ask("http://radar.example/" + QByteArray::number(i));
        ask("http://other.example:81/" + QByteArray::number(i));
    }
    EXPECT_EQ(m_fetcher.urls.size(), 8U);
    answer(status(200));
    EXPECT_EQ(m_answers.size(), 8U);
    EXPECT_EQ(m_fetcher.urls.size(), 16U);
    answer(status(200));
    answer(status(200));
    EXPECT_EQ(m_answers.size(), 18U);
    EXPECT_EQ(m_polite.health("other.example:81").requests, 9U);
}

TEST_F(PoliteFetcherTest, RepeatsWhatMayDoBetterThenLetsTheHostRest) {
    ask();
    answer(status(503));
    EXPECT_EQ(pause(), 2);
    answer(status(429));
    EXPECT_EQ(pause(), 4);
    EXPECT_TRUE(m_answers.empty());
    answer(status(500));
    ASSERT_EQ(m_answers.size(), 1U);
    EXPECT_EQ(m_answers[0].status, 500);
    EXPECT_TRUE(m_polite.rests("radar.example"));
    // Whoever asks now is told at once.
    ask();
    m_polite.turn();
    EXPECT_EQ(m_answers.size(), 2U);
    EXPECT_EQ(m_fetcher.urls.size(), 3U);
}

TEST_F(PoliteFetcherTest, RestsLongerEachTimeUpToTenMinutes) {
    for (int i = 0; i < 3; ++i) {
        ask();
        answer(status(403));
        m_clock.advance(10 * kSecond);
    }
    for (const int seconds : {60, 120, 240, 480, 600, 600}) {
        const FileTime rest = (health().restsUntil - m_clock.now()) / kSecond;
        EXPECT_NEAR(static_cast<double>(rest), seconds, 11);
        m_clock.set(health().restsUntil);
        ask();
        EXPECT_EQ(m_fetcher.waiting.size(), 1U);
        ask(); // one alone tries
        EXPECT_EQ(m_fetcher.waiting.size(), 1U);
        answer(status(403));
    }
    m_clock.set(health().restsUntil);
    ask();
    answer(status(200));
    EXPECT_EQ(health().failures, 0);
    EXPECT_EQ(health().problem, QString());
}

TEST_F(PoliteFetcherTest, DoesNotRepeatWhatIsGoneOrForbidden) {
    for (const int number : {403, 404}) {
        ask();
        answer(status(number));
        EXPECT_EQ(m_answers.back().status, number);
        m_clock.advance(5 * kSecond);
        m_polite.turn();
    }
    EXPECT_EQ(m_fetcher.urls.size(), 2U);
    EXPECT_EQ(health().failures, 2);
    EXPECT_EQ(health().problem, "status 404, as if it had moved or closed");
    FetchRequest request{"http://radar.example/a", 1000};
    request.mayBeAbsent = true;
    ask(request);
    answer(status(404));
    EXPECT_EQ(m_answers.back().status, 404);
    EXPECT_EQ(health().failures, 0); // it is an answer
}

TEST_F(PoliteFetcherTest, FailuresTogetherCountOnce) {
    for (int i = 0; i < 4; ++i) {
        ask();
    }
    answer(status(503));
    EXPECT_EQ(health().failures, 1);
    EXPECT_FALSE(m_polite.rests("radar.example"));
}

TEST_F(PoliteFetcherTest, ObeysRetryAfter) {
    ask();
    answer(status(503, "7"));
    EXPECT_EQ(pause(), 7);
    answer(status(503, "Fri, 15 Jun 2007 19:00:00 GMT"));
    EXPECT_EQ(health().restsUntil, fromCalendar({2007, 6, 15, 19, 0}));
    EXPECT_EQ(m_answers.size(), 1U);
    // Nonsense is none, and nothing lasts for ever.
    m_clock.set(health().restsUntil);
    ask();
    answer(status(503, "99999999999999999999"));
    m_clock.advance(700 * kSecond);
    ask();
    answer(status(503, "86400"));
    EXPECT_LE(health().restsUntil, m_clock.now() + 3600 * kSecond);
}

TEST_F(PoliteFetcherTest, AnotherAnswerDoesNotEndARest) {
    ask();
    ask();
    auto waiting = std::exchange(m_fetcher.waiting, {});
    waiting[0](status(503, "120"));
    waiting[1](status(200));
    m_polite.turn();
    EXPECT_EQ(health().restsUntil, m_clock.now() + 120 * kSecond);
}

TEST_F(PoliteFetcherTest, WithoutAConnectionItTriesSooner) {
    ask();
    answer(unreachable());
    EXPECT_FALSE(health().isReached);
    EXPECT_EQ(pause(), 1);
    answer(unreachable());
    EXPECT_EQ(pause(), 2);
    answer(unreachable());
    EXPECT_EQ(m_answers.size(), 1U);
    // A network that is there again is found within half a minute.
    EXPECT_EQ(health().restsUntil, m_clock.now() + 25 * kSecond);
}

TEST_F(PoliteFetcherTest, WhatIsNoAnswerToTheQuestionIsAFailure) {
    const auto check = [](const FetchAnswer& answer) {
        return answer.body == "body" ? std::optional<QString>("not this") : std::nullopt;
    };
    ask("http://radar.example/a", check);
    answer(status(200));
    ASSERT_EQ(m_answers.size(), 1U);
    EXPECT_EQ(m_answers[0].failure, FetchAnswer::Failure::broken);
    EXPECT_EQ(health().failures, 1);
    EXPECT_EQ(health().problem, "not this");
}

TEST_F(PoliteFetcherTest, AClockThatGoesBackFreesTheHost) {
    ask();
    answer(status(503, "3000"));
    m_clock.advance(-7200 * kSecond);
    ask();
    m_polite.turn();
    ask();
    EXPECT_EQ(m_fetcher.urls.size(), 2U);
}

} // namespace
} // namespace raincast
