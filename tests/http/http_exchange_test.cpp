// SPDX-License-Identifier: MIT
#include "http/http_exchange.h"
#include "http/http_reply_slot.h"

#include <gtest/gtest.h>

#include <thread>

namespace raincast {
namespace {

TEST(HttpRequestTest, TheTargetIsSplitAndDecoded) {
    using namespace std::string_literals;
    const struct {
        std::string target;
        std::string path;
        std::string query;
    } rows[] = {
        {"/page", "/page", ""},
        {"/page?a=b", "/page", "a=b"},
        {"/?q?r", "/", "q?r"},
        {"/page?", "/page", ""},
        {"http://host/page?a", "/page", "a"},
        {"HTTP://user@host:8155/page", "/page", ""},
        {"https://[::1]:80/", "/", ""},
        {"http://host", "/", ""},
        {"http://host?a/b", "/", "a/b"},
        {"http://", "/", ""},
        {"/http://host/page", "/http://host/page", ""},
        {"", "/", ""},
        {"*", "*", ""},
        {"host:80", "host:80", ""},
        {"/%41%2f%2F?%41", "/A//", "%41"},
        {"/%00a", "/\0a"s, ""},
        {"/%", "/%", ""},
        {"/%4", "/%4", ""},
        {"/%4g%zz%-1%+1% 1", "/%4g%zz%-1%+1% 1", ""},
        {"/%2541", "/%41", ""},
        {"/a+b", "/a+b", ""},
    };
    for (const auto& row : rows) {
        HttpRequest request;
        setTarget(request, row.target);
        EXPECT_EQ(request.path, row.path) << row.target;
        EXPECT_EQ(request.query, row.query) << row.target;
    }
}

TEST(HttpRequestTest, HeadersAreFoundInAnyCase) {
    const HttpRequest request{
        "GET", "/", "", {{"Host", "a"}, {"If-None-Match", "b"}, {"host", "c"}}};
    EXPECT_EQ(request.header("host"), "a");
    EXPECT_EQ(request.header("IF-NONE-MATCH"), "b");
    EXPECT_EQ(request.header("If-None"), "");
}

class HttpReplyTest : public ::testing::Test {
protected:
    int m_woken = 0;
    std::shared_ptr<HttpReply::Slot> m_slot =
        std::make_shared<HttpReply::Slot>([this] { ++m_woken; });
};

TEST_F(HttpReplyTest, AnAnswerAtOnceWakesNobody) {
    const HttpReply reply(m_slot);
    EXPECT_TRUE(reply.isWanted());
    reply.send({200, "a", {}});
    EXPECT_FALSE(reply.isWanted());
    reply.send({404, "b", {}});
    const auto answer = m_slot->takeOrWait();
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->status, 200);
    EXPECT_EQ(m_woken, 0);
}

TEST_F(HttpReplyTest, ALaterAnswerWakesWhoWaits) {
    const HttpReply reply(m_slot);
    EXPECT_FALSE(m_slot->takeOrWait());
    std::thread([reply] { reply.send({200, "a", {}}); }).join();
    EXPECT_EQ(m_woken, 1);
    EXPECT_EQ(m_slot->takeOrWait()->body, "a");
}

TEST_F(HttpReplyTest, AReplyThatIsForgottenIsAnError) {
    {
        const HttpReply reply(m_slot);
        const HttpReply copy = reply; // NOLINT(performance-unnecessary-copy-initialization)
        EXPECT_FALSE(m_slot->takeOrWait());
    }
    EXPECT_EQ(m_woken, 1);
    EXPECT_EQ(m_slot->takeOrWait()->status, 500);
}

TEST_F(HttpReplyTest, WhoHasGoneIsNotTold) {
    const HttpReply reply(m_slot);
    EXPECT_FALSE(m_slot->takeOrWait());
    m_slot->abandon();
    EXPECT_FALSE(reply.isWanted());
    reply.send({200, "a", {}});
    EXPECT_EQ(m_woken, 0);
    EXPECT_FALSE(m_slot->takeOrWait());
}

} // namespace
} // namespace raincast
