// SPDX-License-Identifier: MIT
#include "nexrad/bounded_unpack.h"

#include <bzlib.h>
#include <gtest/gtest.h>
#include <zlib.h>

namespace raincast {
namespace {

const QByteArray kText(100'000, 'x');
constexpr std::size_t kMost = 100'000;

QByteArray bzip2(QByteArray plain) {
    QByteArray packed(plain.size() + 1000, '\0');
    auto size = static_cast<unsigned>(packed.size());
    EXPECT_EQ(
        BZ2_bzBuffToBuffCompress(
            packed.data(), &size, plain.data(), static_cast<unsigned>(plain.size()), 9, 0, 0
        ),
        BZ_OK
    );
    return packed.first(size);
}

QByteArray zlib(const QByteArray& plain) {
    const auto plainSize = static_cast<uLong>(plain.size());
    QByteArray packed(static_cast<qsizetype>(compressBound(plainSize)), '\0');
    auto size = static_cast<uLongf>(packed.size());
    EXPECT_EQ(
        compress(
            reinterpret_cast<Bytef*>(packed.data()), &size,
            reinterpret_cast<const Bytef*>(plain.data()), plainSize
        ),
        Z_OK
    );
    return packed.first(static_cast<qsizetype>(size));
}

TEST(BoundedUnpackTest, Bzip2ComesBack) {
    EXPECT_EQ(unpackBzip2(bzip2(kText), kMost), kText);
    EXPECT_EQ(unpackBzip2(bzip2(kText) + "what follows", kMost), kText);
    EXPECT_EQ(unpackBzip2(bzip2(""), 0), "");
}

TEST(BoundedUnpackTest, MoreThanTheLimitIsRefused) {
    EXPECT_EQ(unpackBzip2(bzip2(kText), kMost - 1), std::nullopt);
    const QByteArray packed = zlib(kText);
    QByteArrayView rest = packed;
    EXPECT_EQ(unpackZlib(rest, kMost - 1), std::nullopt);
    EXPECT_EQ(rest, packed);
}

TEST(BoundedUnpackTest, DamagedAndCutOffStreamsAreRefused) {
    const QByteArray packed = bzip2(kText);
    EXPECT_EQ(unpackBzip2(packed.chopped(5), 1'000'000), std::nullopt);
    EXPECT_EQ(unpackBzip2("BZh9 and no more", 1'000'000), std::nullopt);
    EXPECT_EQ(unpackBzip2("", 1'000'000), std::nullopt);
    QByteArray damaged = packed;
    damaged[damaged.size() / 2] = static_cast<char>(damaged[damaged.size() / 2] ^ 0x10);
    EXPECT_EQ(unpackBzip2(damaged, 1'000'000), std::nullopt);

    const QByteArray stream = zlib(kText);
    QByteArrayView cut = QByteArrayView(stream).chopped(5);
    EXPECT_EQ(unpackZlib(cut, 1'000'000), std::nullopt);
    QByteArrayView none;
    EXPECT_EQ(unpackZlib(none, 1'000'000), std::nullopt);
}

TEST(BoundedUnpackTest, ZlibStreamsAreTakenOneByOne) {
    const QByteArray both = zlib("first") + zlib("second") + "rest";
    QByteArrayView left = both;
    EXPECT_EQ(unpackZlib(left, 100), "first");
    EXPECT_EQ(unpackZlib(left, 100), "second");
    EXPECT_EQ(left, "rest");
}

} // namespace
} // namespace raincast
