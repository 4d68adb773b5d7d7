// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <cstddef>
#include <string>
#include <vector>

namespace raincast {

/// A netCDF file, read in pieces. The library serves the whole process and knows no threads:
/// callers in several threads must read one at a time.
class NetcdfFile {
public:
    /// Opens a file to read; see isOpen(). One whose header makes no sense stays closed: the
    /// library would ask for gigabytes of memory.
    explicit NetcdfFile(const QString& path);
    ~NetcdfFile();
    NetcdfFile(const NetcdfFile&) = delete;
    NetcdfFile& operator=(const NetcdfFile&) = delete;

    [[nodiscard]] bool isOpen() const { return m_id >= 0; }

    /// `count` values of a variable of one dimension from an index on, converted to int; empty when
    /// there is no such variable or it has no such part.
    [[nodiscard]] std::vector<int>
    ints(const std::string& variable, std::size_t first, std::size_t count) const;

    /// The same of all its values.
    [[nodiscard]] std::vector<int> ints(const std::string& variable) const;
    [[nodiscard]] std::vector<double> doubles(const std::string& variable) const;

    /// A part of a variable of two dimensions, row by row.
    [[nodiscard]] std::vector<float> floats(
        const std::string& variable, std::size_t firstRow, std::size_t rows,
        std::size_t firstColumn, std::size_t columns
    ) const;

private:
    /// The lengths of a variable's dimensions; empty when there is no such variable.
    [[nodiscard]] std::vector<std::size_t> shape(const std::string& variable) const;
    [[nodiscard]] std::size_t length(const std::string& variable) const;

    int m_id = -1;
    std::size_t m_mostValues = 0; ///< of a variable: what its claims are held to
};

} // namespace raincast
