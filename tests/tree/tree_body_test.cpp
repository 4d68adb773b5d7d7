// SPDX-License-Identifier: MIT
#include "tree/tree_body.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <random>

namespace raincast {
namespace {

QByteArray unpacked(const QByteArray& gzip, qsizetype size) {
    z_stream stream{};
    EXPECT_EQ(inflateInit2(&stream, 15 + 16), Z_OK);
    QByteArray bytes(size + 1, '?');
    QByteArray in = gzip;
    stream.next_in = reinterpret_cast<Bytef*>(in.data());
    stream.avail_in = static_cast<uInt>(in.size());
    stream.next_out = reinterpret_cast<Bytef*>(bytes.data());
    stream.avail_out = static_cast<uInt>(bytes.size());
    EXPECT_EQ(inflate(&stream, Z_FINISH), Z_STREAM_END);
    bytes.resize(static_cast<qsizetype>(stream.total_out));
    inflateEnd(&stream);
    return bytes;
}

TEST(TreeBodyTest, HasATagOfItsBytes) {
    const TreeBody body = QByteArray("hello");
    EXPECT_EQ(body.tag(), TreeBody(QByteArray("hello")).tag());
    EXPECT_NE(body.tag(), TreeBody(QByteArray("hallo")).tag());
    EXPECT_EQ(body.tag().size(), 22U);
    EXPECT_EQ(body.tag().front(), '"');
    EXPECT_EQ(body.tag().back(), '"');
}

TEST(TreeBodyTest, CopiesShareWhatIsWorkedOut) {
    const TreeBody body = QByteArray(2000, 'a');
    const TreeBody copy = body;
    EXPECT_EQ(&copy.tag(), &body.tag());
    EXPECT_EQ(&copy.gzipped(), &body.gzipped());
}

TEST(TreeBodyTest, IsPackedWhereItPays) {
    const QByteArray text = QByteArray("<a href=\"LWX_20180725_2000_N0R.gif\">").repeated(50);
    const TreeBody body = text;
    EXPECT_LT(body.gzipped().size(), text.size() / 5);
    EXPECT_EQ(unpacked(body.gzipped(), text.size()), text);
    EXPECT_TRUE(TreeBody(QByteArray()).gzipped().isEmpty());
    EXPECT_TRUE(TreeBody(QByteArray(511, 'a')).gzipped().isEmpty());
    EXPECT_FALSE(TreeBody(QByteArray(512, 'a')).gzipped().isEmpty());
    std::mt19937 random(1);
    QByteArray noise(4000, '\0');
    for (char& byte : noise) {
        byte = static_cast<char>(random());
    }
    EXPECT_TRUE(TreeBody(noise).gzipped().isEmpty());
}

} // namespace
} // namespace raincast
