// SPDX-License-Identifier: MIT
#include "support/level3_maker.h"

#include <bzlib.h>
#include <zlib.h>

#include <bit>
#include <stdexcept>

namespace raincast {

namespace {

using Picture = Level3ToMake::Picture;

std::string big(std::uint32_t value, int bytes) {
    std::string result;
    for (int i = bytes - 1; i >= 0; --i) {
        result += static_cast<char>(value >> (8 * i) & 0xFF);
    }
    return result;
}

std::string half(int value) {
    return big(static_cast<std::uint32_t>(value), 2);
}

std::string word(std::size_t value) {
    return big(static_cast<std::uint32_t>(value), 4);
}

std::string runs(const std::vector<std::uint8_t>& cells) {
    std::string result;
    for (std::size_t i = 0; i < cells.size();) {
        std::size_t run = 1;
        while (run < 15 && i + run < cells.size() && cells[i + run] == cells[i]) {
            ++run;
        }
        result += static_cast<char>(run << 4 | cells[i]);
        i += run;
    }
    // A run of none fills the last halfword.
    return result.size() % 2 == 0 ? result : result + '\0';
}

std::string radials(const Level3ToMake& wanted) {
    const bool digital = wanted.picture == Picture::digital;
    std::string result = half(digital ? 16 : 0xAF1F) + half(wanted.firstBin) +
                         half(static_cast<int>(wanted.rows.at(0).cells.size())) + half(256) +
                         half(280) + half(999) + half(static_cast<int>(wanted.rows.size()));
    for (const Level3ToMake::Row& row : wanted.rows) {
        const std::string cells =
            digital ? std::string(row.cells.begin(), row.cells.end()) : runs(row.cells);
        result += half(static_cast<int>(digital ? cells.size() : cells.size() / 2)) +
                  half(row.startTenths) + half(row.widthTenths) + cells;
    }
    return result;
}

std::string raster(const Level3ToMake& wanted) {
    std::string result = half(0xBA07) + half(0x8000) + half(0x00C0) + half(1) + half(1) + half(1) +
                         half(0) + half(1) + half(0) + half(static_cast<int>(wanted.rows.size())) +
                         half(2);
    for (const Level3ToMake::Row& row : wanted.rows) {
        const std::string cells = runs(row.cells);
        result += half(static_cast<int>(cells.size())) + cells;
    }
    return result;
}

std::string layer(const Level3ToMake& wanted) {
    std::string result;
    if (!wanted.text.empty()) {
        result += half(1) + half(static_cast<int>(wanted.text.size()) + 4) + half(7) + half(9) +
                  wanted.text;
    }
    switch (wanted.picture) {
    case Picture::radial:
    case Picture::digital:
        return result + radials(wanted);
    case Picture::raster:
        return result + raster(wanted);
    case Picture::none:
        break;
    }
    return result;
}

std::string bzip2(std::string plain) {
    std::string packed(plain.size() + plain.size() / 50 + 1000, '\0');
    auto size = static_cast<unsigned>(packed.size());
    if (BZ2_bzBuffToBuffCompress(
            packed.data(), &size, plain.data(), static_cast<unsigned>(plain.size()), 9, 0, 0
        ) != BZ_OK) {
        throw std::runtime_error("bzip2 failed");
    }
    packed.resize(size);
    return packed;
}

std::string zlibStreams(const std::string& plain, int count) {
    std::string result;
    const std::size_t piece = plain.size() / static_cast<std::size_t>(count) + 1;
    for (std::size_t begin = 0; begin < plain.size(); begin += piece) {
        const std::string part = plain.substr(begin, piece);
        std::string packed(compressBound(part.size()), '\0');
        uLongf size = packed.size();
        if (compress(
                reinterpret_cast<Bytef*>(packed.data()), &size,
                reinterpret_cast<const Bytef*>(part.data()), part.size()
            ) != Z_OK) {
            throw std::runtime_error("zlib failed");
        }
        result.append(packed, 0, size);
    }
    return result;
}

std::string message(const Level3ToMake& wanted) {
    const std::string packets = layer(wanted);
    std::string blocks = half(-1) + half(1) + word(packets.size() + 16) + half(1) + half(-1) +
                         word(packets.size()) + packets;
    const std::size_t unpacked = blocks.size();
    if (wanted.packed) {
        blocks = bzip2(blocks);
    }
    std::string description = half(-1) + word(static_cast<std::uint32_t>(wanted.latitude)) +
                              word(static_cast<std::uint32_t>(wanted.longitude)) + half(1277) +
                              half(wanted.code) + half(2) + half(12) + half(1) + half(28) +
                              half(wanted.day) + word(static_cast<std::uint32_t>(wanted.second)) +
                              half(wanted.day) + word(static_cast<std::uint32_t>(wanted.second)) +
                              half(0) + half(0) + half(1) + half(wanted.elevationTenths);
    for (const std::uint16_t threshold : wanted.thresholds) {
        description += half(threshold);
    }
    description += half(0) + half(0) + half(0) + half(0) + half(wanted.packed ? 1 : 0) +
                   word(unpacked) + half(0) + word(60) + word(0) + word(0);
    const std::string head = half(wanted.code) + half(wanted.day) +
                             word(static_cast<std::uint32_t>(wanted.second)) +
                             word(120 + blocks.size()) + half(1) + half(0) + half(3);
    return head + description + blocks;
}

} // namespace

std::string makeLevel3(const Level3ToMake& wanted) {
    const std::string end = "\r\r\n";
    std::string headings;
    if (!wanted.wmoHeading.empty()) {
        headings += wanted.wmoHeading + end;
    }
    if (!wanted.awipsId.empty()) {
        headings += wanted.awipsId + end;
    }
    std::string body = message(wanted);
    if (wanted.zlibFrames > 0) {
        body = zlibStreams(headings + body, wanted.zlibFrames);
    }
    std::string result = headings + body;
    if (wanted.startOfHeading) {
        result = "\x01" + end + "734 " + end + result + end + "\x03";
    }
    return result;
}

void Level3ToMake::takenAt(FileTime volume) {
    constexpr std::uint64_t kDay = 86'400;
    const std::uint64_t seconds = toUnixSeconds(volume);
    day = static_cast<int>(seconds / kDay) + 1;
    second = static_cast<int>(seconds % kDay);
}

Level3ToMake digitalProduct(const std::string& awipsId, int code, FileTime volume) {
    constexpr int kFirstAccumulation = 170;
    Level3ToMake wanted;
    wanted.awipsId = awipsId;
    wanted.code = code;
    wanted.picture = Picture::digital;
    wanted.thresholds =
        code >= kFirstAccumulation ? accumulationThresholds(1, 0) : digitalThresholds(-320, 5);
    wanted.takenAt(volume);
    return wanted;
}

Level3ToMake digitalReflectivity(const std::string& site, FileTime volume) {
    return digitalProduct("N0B" + site, 153, volume);
}

std::array<std::uint16_t, 16> digitalThresholds(int leastTenths, int incrementTenths) {
    return {
        static_cast<std::uint16_t>(leastTenths), static_cast<std::uint16_t>(incrementTenths), 254};
}

std::array<std::uint16_t, 16> accumulationThresholds(float scale, float offset) {
    const auto scaleBits = std::bit_cast<std::uint32_t>(scale);
    const auto offsetBits = std::bit_cast<std::uint32_t>(offset);
    const auto low = [](std::uint32_t bits) { return static_cast<std::uint16_t>(bits & 0xFFFF); };
    return {
        low(scaleBits >> 16), low(scaleBits), low(offsetBits >> 16), low(offsetBits), 0, 255, 1};
}

} // namespace raincast
