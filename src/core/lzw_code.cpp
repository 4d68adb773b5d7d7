// SPDX-License-Identifier: MIT
#include "core/lzw_code.h"

#include <algorithm>

namespace raincast {

namespace {

constexpr int kByte = 8;

} // namespace

LzwCode::LzwCode(int bits)
    : m_bits(bits), m_next((1 << bits) + 2), m_width(bits + 1),
      m_longer(std::size_t{kMostCodes} << static_cast<unsigned>(bits)),
      m_runs(std::size_t{1} << static_cast<unsigned>(bits)) {
    for (std::size_t pixel = 0; pixel < m_runs.size(); ++pixel) {
        m_runs[pixel].push_back(static_cast<std::uint16_t>(pixel));
    }
    put(1 << bits);
}

void LzwCode::add(std::span<const std::uint8_t> pixels) {
    const std::uint32_t mask = (1U << static_cast<unsigned>(m_bits)) - 1;
    while (!pixels.empty()) {
        const std::uint32_t pixel = pixels.front() & mask;
        const std::size_t taken = m_run > 0 && pixel == m_runPixel ? takeRun(pixels) : 0;
        if (taken == 0) {
            take(pixel);
        }
        pixels = pixels.subspan(std::max<std::size_t>(taken, 1));
    }
}

// Pixel by pixel each step would wait for the one before it.
std::size_t LzwCode::takeRun(std::span<const std::uint8_t> pixels) {
    const std::vector<std::uint16_t>& codes = m_runs[m_runPixel];
    const std::size_t most = std::min(pixels.size(), codes.size() - m_run);
    std::size_t count = 0;
    while (count < most && pixels[count] == pixels.front()) {
        ++count;
    }
    m_run += count;
    m_last = codes[m_run - 1];
    return count;
}

void LzwCode::take(std::uint32_t pixel) {
    if (m_last == kNone) {
        beginWith(pixel);
        return;
    }
    const std::uint32_t place = (static_cast<std::uint32_t>(m_last) << m_bits) | pixel;
    if (m_longer[place] != 0) {
        m_last = m_longer[place];
        m_run = 0;
        return;
    }
    put(m_last);
    if (m_next < kMostCodes) {
        m_places[static_cast<std::size_t>(m_next)] = place;
        m_longer[place] = static_cast<std::uint16_t>(m_next);
        if (m_run > 0 && pixel == m_runPixel) {
            m_runs[pixel].push_back(static_cast<std::uint16_t>(m_next));
        }
        ++m_next;
    } else {
        clear();
    }
    beginWith(pixel);
}

void LzwCode::beginWith(std::uint32_t pixel) {
    m_last = static_cast<int>(pixel);
    m_run = 1;
    m_runPixel = pixel;
}

const std::vector<std::uint8_t>& LzwCode::finish() {
    put(m_last);
    put((1 << m_bits) + 1);
    if (m_restBits > 0) {
        m_bytes.push_back(static_cast<std::uint8_t>(m_rest));
    }
    return m_bytes;
}

void LzwCode::put(int code) {
    m_rest |= static_cast<std::uint32_t>(code) << m_restBits;
    for (m_restBits += m_width; m_restBits >= kByte; m_restBits -= kByte) {
        m_bytes.push_back(static_cast<std::uint8_t>(m_rest));
        m_rest >>= kByte;
    }
    if (m_next >= 1 << m_width) {
        ++m_width;
    }
}

// Only what is known is forgotten: the table is large.
void LzwCode::clear() {
    put(1 << m_bits);
    const int first = (1 << m_bits) + 2;
    for (int code = first; code < m_next; ++code) {
        m_longer[m_places[static_cast<std::size_t>(code)]] = 0;
    }
    for (std::vector<std::uint16_t>& codes : m_runs) {
        codes.resize(1);
    }
    m_next = first;
    m_width = m_bits + 1;
}

} // namespace raincast
