// SPDX-License-Identifier: MIT
#include "core/lzw_code.h"

namespace raincast {

namespace {

constexpr int kByte = 8;

} // namespace

LzwCode::LzwCode(int bits)
    : m_bits(bits), m_next((1 << bits) + 2), m_width(bits + 1),
      m_longer(std::size_t{kMostCodes} << static_cast<unsigned>(bits)) {
    put(1 << bits);
}

void LzwCode::add(std::span<const std::uint8_t> pixels) {
    const std::uint32_t mask = (1U << static_cast<unsigned>(m_bits)) - 1;
    std::uint16_t* const longer = m_longer.data();
    if (m_last == kNone && !pixels.empty()) {
        m_last = static_cast<int>(pixels.front() & mask);
        pixels = pixels.subspan(1);
    }
    int last = m_last;
    for (const std::uint8_t any : pixels) {
        const std::uint32_t pixel = any & mask;
        const std::uint32_t place = (static_cast<std::uint32_t>(last) << m_bits) | pixel;
        if (longer[place] != 0) {
            last = longer[place];
            continue;
        }
        put(last);
        last = static_cast<int>(pixel);
        if (m_next < kMostCodes) {
            m_places[static_cast<std::size_t>(m_next)] = place;
            longer[place] = static_cast<std::uint16_t>(m_next++);
        } else {
            clear();
        }
    }
    m_last = last;
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
    m_next = first;
    m_width = m_bits + 1;
}

} // namespace raincast
