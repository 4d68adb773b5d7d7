// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <gtest/gtest.h>
#include <netcdf.h>

#include <string>
#include <vector>

namespace raincast {

/// Writes a netCDF file for a test, variable by variable.
class NetcdfMaker {
public:
    explicit NetcdfMaker(const QString& path) {
        EXPECT_EQ(nc_create(path.toUtf8().constData(), NC_CLOBBER | NC_NETCDF4, &m_file), NC_NOERR);
    }
    ~NetcdfMaker() { EXPECT_EQ(nc_close(m_file), NC_NOERR); }
    NetcdfMaker(const NetcdfMaker&) = delete;
    NetcdfMaker& operator=(const NetcdfMaker&) = delete;

    void ints(const std::string& name, const std::vector<int>& values) const {
        const int id = variable(name, NC_INT, {values.size()});
        EXPECT_EQ(nc_put_var_int(m_file, id, values.data()), NC_NOERR);
    }
    /// As the shore files store offsets: unsigned numbers in a signed type.
    void shorts(const std::string& name, const std::vector<int>& values) const {
        const std::vector<short> stored(values.begin(), values.end());
        const int id = variable(name, NC_SHORT, {values.size()});
        EXPECT_EQ(nc_put_var_short(m_file, id, stored.data()), NC_NOERR);
    }
    void doubles(const std::string& name, const std::vector<double>& values) const {
        const int id = variable(name, NC_DOUBLE, {values.size()});
        EXPECT_EQ(nc_put_var_double(m_file, id, values.data()), NC_NOERR);
    }
    void floats(const std::string& name, std::size_t rows, const std::vector<float>& values) const {
        const int id = variable(name, NC_FLOAT, {rows, values.size() / rows});
        EXPECT_EQ(nc_put_var_float(m_file, id, values.data()), NC_NOERR);
    }

private:
    [[nodiscard]] int
    variable(const std::string& name, int type, const std::vector<std::size_t>& sizes) const {
        std::vector<int> dimensions;
        for (const std::size_t size : sizes) {
            dimensions.push_back(0);
            const std::string dimension = name + std::to_string(dimensions.size());
            EXPECT_EQ(nc_def_dim(m_file, dimension.c_str(), size, &dimensions.back()), NC_NOERR);
        }
        int id = 0;
        EXPECT_EQ(
            nc_def_var(
                m_file, name.c_str(), type, static_cast<int>(sizes.size()), dimensions.data(), &id
            ),
            NC_NOERR
        );
        return id;
    }

    int m_file = 0;
};

} // namespace raincast
