// SPDX-License-Identifier: MIT
#include "nexrad/bounded_unpack.h"

#include <bzlib.h>
#include <zlib.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

namespace raincast {

namespace {

// Output grows by this much at a time, so that no claim of the input takes memory.
constexpr std::size_t kChunk = 64 * 1024;

/// Both libraries read through pointers that are not const.
std::vector<char> mutableCopy(QByteArrayView bytes) {
    return {bytes.begin(), bytes.end()};
}

/// Runs `step`, which fills a chunk and returns how far the stream is, until its end.
enum class Progress { goesOn, ended, failed };

template<typename Step>
std::optional<QByteArray> unpack(std::size_t most, Step step) {
    QByteArray result;
    std::array<char, kChunk> chunk;
    Progress progress = Progress::goesOn;
    while (progress == Progress::goesOn) {
        std::size_t filled = 0;
        progress = step(chunk, filled);
        // A step that neither fills anything nor ends the stream never will.
        const bool stuck = progress == Progress::goesOn && filled == 0;
        if (progress == Progress::failed || stuck ||
            static_cast<std::size_t>(result.size()) + filled > most) {
            return std::nullopt;
        }
        result.append(chunk.data(), static_cast<qsizetype>(filled));
    }
    return result;
}

} // namespace

std::optional<QByteArray> unpackBzip2(QByteArrayView packed, std::size_t most) {
    std::vector<char> input = mutableCopy(packed);
    bz_stream stream{};
    if (BZ2_bzDecompressInit(&stream, 0, 0) != BZ_OK) {
        return std::nullopt;
    }
    stream.next_in = input.data();
    stream.avail_in = static_cast<unsigned>(input.size());
    auto result = unpack(most, [&](std::array<char, kChunk>& chunk, std::size_t& filled) {
        stream.next_out = chunk.data();
        stream.avail_out = kChunk;
        const int status = BZ2_bzDecompress(&stream);
        filled = kChunk - stream.avail_out;
        if (status == BZ_STREAM_END) {
            return Progress::ended;
        }
        return status == BZ_OK ? Progress::goesOn : Progress::failed;
    });
    BZ2_bzDecompressEnd(&stream);
    return result;
}

std::optional<QByteArray> unpackZlib(QByteArrayView& packed, std::size_t most) {
    std::vector<char> input = mutableCopy(packed);
    z_stream stream{};
    if (inflateInit(&stream) != Z_OK) {
        return std::nullopt;
    }
    stream.next_in = reinterpret_cast<Bytef*>(input.data());
    stream.avail_in = static_cast<unsigned>(input.size());
    auto result = unpack(most, [&](std::array<char, kChunk>& chunk, std::size_t& filled) {
        stream.next_out = reinterpret_cast<Bytef*>(chunk.data());
        stream.avail_out = kChunk;
        const int status = inflate(&stream, Z_NO_FLUSH);
        filled = kChunk - stream.avail_out;
        if (status == Z_STREAM_END) {
            return Progress::ended;
        }
        return status == Z_OK ? Progress::goesOn : Progress::failed;
    });
    if (result) {
        packed = packed.last(static_cast<qsizetype>(stream.avail_in));
    }
    inflateEnd(&stream);
    return result;
}

} // namespace raincast
