// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace raincast {

/// What the user wants drawn over radar pictures to read them by. Kept in the settings record
/// "CReading": "scale" and "rings" are the enumerators below.
class ReadingSetting {
public:
    enum Scale : std::uint32_t {
        kScaleWhereRoom = 0, ///< until the user says otherwise
        kScaleShown = 1,
        kScaleHidden = 2,
    };
    enum Rings : std::uint32_t { kNoRings = 0, kRingsRoundRadar = 1, kRingsRoundPosition = 2 };

    /// The least width of an item, in pixels of 96 to an inch, that shows the scale by itself.
    static constexpr int kWidthForScale = 400;

    [[nodiscard]] static bool scaleShown(int width);
    static void showScale(bool wanted);

    [[nodiscard]] static Rings rings();
    static void showRings(Rings wanted);

    /// All of it, to be put back.
    struct Kept {
        std::uint32_t scale = kScaleWhereRoom;
        std::uint32_t rings = kNoRings;
    };
    [[nodiscard]] static Kept keep();
    static void restore(const Kept& kept);

private:
    class Persistant;
};

} // namespace raincast
