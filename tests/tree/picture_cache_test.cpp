// SPDX-License-Identifier: MIT
#include "tree/picture_cache.h"

#include <gtest/gtest.h>

namespace raincast {
namespace {

TEST(PictureCacheTest, KeepsWhatFits) {
    PictureCache cache(100);
    cache.insert("a", QByteArray("aaaa"));
    EXPECT_EQ(cache.find("a")->bytes(), "aaaa");
    EXPECT_EQ(cache.bytes(), 4);
    EXPECT_FALSE(cache.find("b"));
}

TEST(PictureCacheTest, ForgetsWhatWasNotAskedForLongest) {
    PictureCache cache(100);
    cache.insert("a", QByteArray(40, 'a'));
    cache.insert("b", QByteArray(40, 'b'));
    EXPECT_TRUE(cache.find("a"));
    cache.insert("c", QByteArray(40, 'c'));
    EXPECT_TRUE(cache.find("a"));
    EXPECT_FALSE(cache.find("b"));
    EXPECT_TRUE(cache.find("c"));
    EXPECT_LE(cache.bytes(), 100);
}

TEST(PictureCacheTest, DoesNotKeepWhatIsLargerThanItself) {
    PictureCache cache(10);
    cache.insert("a", QByteArray("aaa"));
    cache.insert("b", QByteArray(11, 'b'));
    EXPECT_FALSE(cache.find("b"));
    EXPECT_EQ(cache.find("a")->bytes(), "aaa");
}

} // namespace
} // namespace raincast
