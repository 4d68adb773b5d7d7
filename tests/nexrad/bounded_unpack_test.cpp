// SPDX-License-Identifier: MIT
#include "nexrad/bounded_unpack.h"

#include <bzlib.h>
#include <gtest/gtest.h>
#include <zlib.h>

namespace raincast {
namespace {

const std::string kText(100'000, 'x');

std::string bzip2(std::string plain) {
    std::string packed(plain.size() + 1000, '\0');
    auto size = static_cast<unsigned>(packed.size());
    EXPECT_EQ(
        BZ2_bzBuffToBuffCompress(
            packed.data(), &size, plain.data(), static_cast<unsigned>(plain.size()), 9, 0, 0
        ),
        BZ_OK
    );
    return packed.substr(0, size);
}

std::string zlib(const std::string& plain) {
    std::string packed(compressBound(plain.size()), '\0');
    uLongf size = packed.size();
    EXPECT_EQ(
        compress(
            reinterpret_cast<Bytef*>(packed.data()), &size,
            reinterpret_cast<const Bytef*>(plain.data()), plain.size()
        ),
        Z_OK
    );
    return packed.substr(0, size);
}

TEST(BoundedUnpackTest, Bzip2ComesBack) {
    EXPECT_EQ(unpackBzip2(bzip2(kText), kText.size()), kText);
    EXPECT_EQ(unpackBzip2(bzip2(kText) + "what follows", kText.size()), kText);
    EXPECT_EQ(unpackBzip2(bzip2(""), 0), "");
}

TEST(BoundedUnpackTest, MoreThanTheLimitIsRefused) {
    EXPECT_EQ(unpackBzip2(bzip2(kText), kText.size() - 1), std::nullopt);
    const std::string packed = zlib(kText);
    std::string_view rest = packed;
    EXPECT_EQ(unpackZlib(rest, kText.size() - 1), std::nullopt);
    EXPECT_EQ(rest, packed);
}

TEST(BoundedUnpackTest, DamagedAndCutOffStreamsAreRefused) {
    const std::string packed = bzip2(kText);
    EXPECT_EQ(unpackBzip2(packed.substr(0, packed.size() - 5), 1'000'000), std::nullopt);
    EXPECT_EQ(unpackBzip2("BZh9 and no more", 1'000'000), std::nullopt);
    EXPECT_EQ(unpackBzip2("", 1'000'000), std::nullopt);
    std::string damaged = packed;
    damaged[damaged.size() / 2] ^= 0x10;
    EXPECT_EQ(unpackBzip2(damaged, 1'000'000), std::nullopt);

    const std::string stream = zlib(kText);
    std::string_view cut = std::string_view(stream).substr(0, stream.size() - 5);
    EXPECT_EQ(unpackZlib(cut, 1'000'000), std::nullopt);
    std::string_view none;
    EXPECT_EQ(unpackZlib(none, 1'000'000), std::nullopt);
}

TEST(BoundedUnpackTest, ZlibStreamsAreTakenOneByOne) {
    const std::string both = zlib("first") + zlib("second") + "rest";
    std::string_view left = both;
    EXPECT_EQ(unpackZlib(left, 100), "first");
    EXPECT_EQ(unpackZlib(left, 100), "second");
    EXPECT_EQ(left, "rest");
}

} // namespace
} // namespace raincast
