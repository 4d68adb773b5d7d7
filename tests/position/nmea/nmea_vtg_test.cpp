// SPDX-License-Identifier: MIT
#include "position/nmea/nmea_vtg.h"

#include <gtest/gtest.h>

namespace raincast {
namespace {

using CNMEA_GPS::VTG;

TEST(NmeaVtgTest, ReadsCourseAndKnots) {
    const struct {
        const char* text;
        float course;
        float speed;
    } rows[] = {
        {"GPVTG,113.02,T,111.1,M,0.142,N,0.263,K,A", 113.02F, 0.142F},
        {"GPVTG,113.02,T,,M,0.142", 113.02F, 0.142F},
        {"GPVTG,113.02,T,,M", 113.02F, 0},
        {"GPVTG,113.02*5,T,,M,7", 113.02F, 0},
        {"GPVTG,,T,,M,,N,,K,N", 0, 0},
        {"GPVTG", 0, 0},
        {"", 0, 0},
    };
    for (const auto& row : rows) {
        VTG vtg(*CNMEASentenceType::find("VTG"));
        EXPECT_TRUE(vtg.Parse(row.text));
        EXPECT_EQ(vtg.course, row.course) << row.text;
        EXPECT_EQ(vtg.speed, row.speed) << row.text;
    }
}

} // namespace
} // namespace raincast
