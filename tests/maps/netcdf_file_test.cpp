// SPDX-License-Identifier: MIT
#include "maps/netcdf_file.h"
#include "netcdf_maker.h"
#include "support/files.h"
#include "support/little_memory.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace raincast {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class NetcdfFileTest : public ::testing::Test {
protected:
    NetcdfFileTest() {
        const NetcdfMaker maker(m_path);
        maker.ints("numbers", {1, 2, 3, 4});
        maker.shorts("small", {-1, 2});
        maker.doubles("axis", {0.5, 1.5});
        maker.floats("grid", 2, {1, 2, 3, 4, 5, 6});
    }

    QTemporaryDir m_folder;
    QString m_path = m_folder.filePath("a.nc");
};

TEST_F(NetcdfFileTest, ReadsWholeVariables) {
    const NetcdfFile file(m_path);
    ASSERT_TRUE(file.isOpen());
    EXPECT_THAT(file.ints("numbers"), ElementsAre(1, 2, 3, 4));
    EXPECT_THAT(file.ints("small"), ElementsAre(-1, 2));
    EXPECT_THAT(file.doubles("axis"), ElementsAre(0.5, 1.5));
}

TEST_F(NetcdfFileTest, ReadsParts) {
    const NetcdfFile file(m_path);
    EXPECT_THAT(file.ints("numbers", 1, 2), ElementsAre(2, 3));
    EXPECT_THAT(file.floats("grid", 0, 2, 1, 2), ElementsAre(2, 3, 5, 6));
}

TEST_F(NetcdfFileTest, WhatIsNotThereIsEmpty) {
    const NetcdfFile file(m_path);
    EXPECT_THAT(file.ints("none"), IsEmpty());
    EXPECT_THAT(file.ints("numbers", 3, 2), IsEmpty());
    EXPECT_THAT(file.ints("numbers", 0, 0), IsEmpty());
    EXPECT_THAT(file.ints("grid"), IsEmpty());
    EXPECT_THAT(file.doubles("none"), IsEmpty());
    EXPECT_THAT(file.floats("grid", 0, 3, 0, 3), IsEmpty());
    EXPECT_THAT(file.floats("none", 0, 1, 0, 1), IsEmpty());
}

TEST_F(NetcdfFileTest, WhatAFileClaimsTakesNoMemory) {
    const NetcdfFile file(m_path);
    constexpr std::size_t kHuge = 90'000'000;
    const LittleMemory memory(32'000'000);
    EXPECT_THAT(file.ints("numbers", 0, kHuge), IsEmpty());
    EXPECT_THAT(file.ints("none", 0, kHuge), IsEmpty());
    EXPECT_THAT(file.ints("numbers", 1, std::numeric_limits<std::size_t>::max()), IsEmpty());
    EXPECT_THAT(file.floats("grid", 0, 9000, 0, 9000), IsEmpty());
    EXPECT_THAT(file.floats("grid", 1, std::numeric_limits<std::size_t>::max(), 0, 1), IsEmpty());
}

TEST_F(NetcdfFileTest, OtherFilesDoNotOpen) {
    writeFile(m_folder.filePath("bad.nc"), "no netCDF at all");
    EXPECT_FALSE(NetcdfFile(m_folder.filePath("bad.nc")).isOpen());
    EXPECT_FALSE(NetcdfFile(m_folder.filePath("none.nc")).isOpen());
}

} // namespace
} // namespace raincast
