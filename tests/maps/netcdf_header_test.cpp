// SPDX-License-Identifier: MIT
#include "maps/netcdf_file.h"
#include "maps/netcdf_header.h"
#include "support/files.h"
#include "support/little_memory.h"

#include <QTemporaryDir>
#include <QtEndian>

#include <gtest/gtest.h>
#include <netcdf.h>

namespace raincast {
namespace {

constexpr int kForms[] = {NC_CLASSIC_MODEL, NC_64BIT_OFFSET, NC_64BIT_DATA};

class NetcdfHeaderTest : public ::testing::TestWithParam<int> {
protected:
    NetcdfHeaderTest() {
        int file = 0;
        EXPECT_EQ(nc_create(m_path.toUtf8().constData(), NC_CLOBBER | GetParam(), &file), NC_NOERR);
        int dimensions[2] = {};
        nc_def_dim(file, "time", NC_UNLIMITED, &dimensions[0]);
        nc_def_dim(file, "place", 3, &dimensions[1]);
        int places = 0;
        int heights = 0;
        nc_def_var(file, "places", NC_INT, 1, &dimensions[1], &places);
        nc_def_var(file, "heights", NC_FLOAT, 2, dimensions, &heights);
        nc_put_att_text(file, places, "units", 5, "miles");
        nc_put_att_text(file, NC_GLOBAL, "title", 8, "Somewhere");
        nc_enddef(file);
        const int values[] = {1, 2, 3};
        nc_put_var_int(file, places, values);
        const std::size_t start[] = {0, 0};
        const std::size_t count[] = {2, 3};
        const float grid[] = {1, 2, 3, 4, 5, 6};
        nc_put_vara_float(file, heights, start, count, grid);
        EXPECT_EQ(nc_close(file), NC_NOERR);
        m_bytes = readFile(m_path);
    }

    [[nodiscard]] static bool isSound(const QByteArray& bytes) {
        return isSoundNetcdfHeader(bytes, bytes.size());
    }

    QTemporaryDir m_folder;
    QString m_path = m_folder.filePath("a.nc");
    QByteArray m_bytes;
};

TEST_P(NetcdfHeaderTest, AFileIsSound) {
    EXPECT_TRUE(isSound(m_bytes));
    const NetcdfFile file(m_path);
    EXPECT_EQ(file.ints("places"), (std::vector<int>{1, 2, 3}));
    EXPECT_EQ(file.floats("heights", 1, 1, 0, 3), (std::vector<float>{4, 5, 6}));
}

TEST_P(NetcdfHeaderTest, APartOfAFileIsNot) {
    for (qsizetype size = 0; size < m_bytes.size(); ++size) {
        EXPECT_FALSE(isSound(m_bytes.first(size))) << size;
    }
}

TEST_P(NetcdfHeaderTest, WhatAHeaderClaimsTakesNoMemory) {
    for (const quint32 claim : {0x7FFF'FFFFU, 0x4000'0000U, 0x0500'0000U, 0xFFFF'FFF0U}) {
        for (qsizetype at = 4; at + 4 <= m_bytes.size(); at += 4) {
            QByteArray bytes = m_bytes;
            qToBigEndian(claim, bytes.data() + at);
            writeFile(m_path, bytes);
            const LittleMemory memory(64'000'000);
            const NetcdfFile file(m_path);
            EXPECT_LE(file.ints("places").size(), 3U) << at;
            EXPECT_LE(file.floats("heights", 0, 2, 0, 3).size(), 6U) << at;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Forms, NetcdfHeaderTest, ::testing::ValuesIn(kForms));

} // namespace
} // namespace raincast
