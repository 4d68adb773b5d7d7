// SPDX-License-Identifier: MIT
#pragma once

#include <QStringView>

#include <array>
#include <cstddef>
#include <optional>
#include <vector>

namespace raincast {

/// A kind of radar image. Its texts live as long as the program.
struct RadarProduct {
    const char16_t* name; ///< what users see
    char16_t code[4];     ///< three characters, used in the paths and names of its images
    bool shortRange;      ///< which of the two sizes of map the product is drawn on

    [[nodiscard]] constexpr QStringView nameText() const { return name; }
    [[nodiscard]] constexpr QStringView codeText() const { return {code, 3}; }
};

inline constexpr std::size_t kRadarProductCount = 7;
using RadarProductTable = std::array<RadarProduct, kRadarProductCount>;

/// The product that is shown until the user chooses another one.
inline constexpr int kDefaultProduct = 0;

/// All products. Their indices are stored in page files: new ones go to the end.
[[nodiscard]] const RadarProductTable& radarProducts();

/// The code of the product of that index. An index that names no product, as a damaged page file
/// can hold, stands for the default product.
[[nodiscard]] QStringView ProductCode(int index);

/// "Short" or "Long": the range word of the product of that index in the paths and names of
/// warnings and map layers. Indices as for ProductCode.
[[nodiscard]] QStringView ProductRange(int index);

/// The index of the product of exactly that code (letter case counts).
[[nodiscard]] std::optional<int> findRadarProduct(QStringView code);

/// The products that a user who typed an unknown code may have meant: those whose code is the
/// fewest typing errors away, in the table's order. Letter case does not count.
[[nodiscard]] std::vector<const RadarProduct*> suggestRadarProducts(QStringView typed);

} // namespace raincast
