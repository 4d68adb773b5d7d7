// SPDX-License-Identifier: MIT
#include "radar/catalogue/product.h"
#include "radar/catalogue/products.h"

#include <QString>

#include <gtest/gtest.h>

namespace raincast {
namespace {

TEST(ProductTest, TheProductsAreTheViewersOwnInItsOrder) {
    ASSERT_EQ(kAllProducts.size(), radarProducts().size());
    for (const Product product : kAllProducts) {
        const auto row = static_cast<int>(product);
        EXPECT_EQ(std::string(codeOf(product)), ProductCode(row).toString().toStdString());
        EXPECT_EQ(
            std::string(wordOf(rangeOf(product))), ProductRange(row).toString().toStdString()
        );
    }
}

TEST(ProductTest, CodesAndWordsFindWhatTheyName) {
    for (const Product product : kAllProducts) {
        EXPECT_EQ(productOfCode(codeOf(product)), product);
    }
    EXPECT_EQ(productOfCode("N0X"), std::nullopt);
    EXPECT_EQ(productOfCode("n0r"), std::nullopt);
    EXPECT_EQ(rangeOfWord("Short"), Range::shortRange);
    EXPECT_EQ(rangeOfWord("Long"), Range::longRange);
    EXPECT_EQ(rangeOfWord("short"), std::nullopt);
}

TEST(ProductTest, OnlyTheLongRangeProductLiesOnTheLongMap) {
    for (const Product product : kAllProducts) {
        const bool isLong = product == Product::longRangeReflectivity;
        EXPECT_EQ(rangeOf(product) == Range::longRange, isLong) << codeOf(product);
    }
}

} // namespace
} // namespace raincast
