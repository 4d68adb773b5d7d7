// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace raincast {

/// The code of a GIF's pixels: Lempel, Ziv and Welch's, the least significant bits first. The same
/// bytes as giflib's own, in a fraction of the time.
class LzwCode {
public:
    /// Pixels have so many bits, 2 to 8; those above are left out.
    explicit LzwCode(int bits);

    void add(std::span<const std::uint8_t> pixels);

    /// The bytes of all pixels that were added: one at least, and nothing comes after this.
    [[nodiscard]] const std::vector<std::uint8_t>& finish();

private:
    static constexpr int kNone = -1;
    static constexpr int kMostCodes =
        4095; ///< as giflib has it: one code of twelve bits stays unused

    /// Takes as many of the run's pixel as there is a code for; how many.
    std::size_t takeRun(std::span<const std::uint8_t> pixels);
    void take(std::uint32_t pixel);
    void beginWith(std::uint32_t pixel);
    void put(int code);
    void clear();

    int m_bits;
    int m_last = kNone;    ///< the code of the pixels that are not written yet
    std::size_t m_run = 0; ///< how many m_last stands for, if all of them are m_runPixel; else 0
    std::uint32_t m_runPixel = 0;
    int m_next = 0;  ///< the first code without a meaning
    int m_width = 0; ///< bits of a code
    std::uint32_t m_rest = 0;
    int m_restBits = 0;
    /// The code that stands for a code and a pixel behind it; 0 where there is none.
    std::vector<std::uint16_t> m_longer;
    /// Of each pixel the codes of one, two, three of it and so on.
    std::vector<std::vector<std::uint16_t>> m_runs;
    std::array<std::uint32_t, kMostCodes> m_places{}; ///< where each code stands in it
    std::vector<std::uint8_t> m_bytes;
};

} // namespace raincast
