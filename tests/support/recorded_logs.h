// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace raincast::test {

/// The folder of recorded logs of receivers, which need not exist.
inline std::filesystem::path recordedLogs() {
    const char* data = std::getenv("RAINCAST_TEST_DATA");
    return std::filesystem::path(data != nullptr ? data : "") / "nmea";
}

inline std::string logIn(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file) << path;
    return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace raincast::test
