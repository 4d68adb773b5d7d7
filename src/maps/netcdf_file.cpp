// SPDX-License-Identifier: MIT
#include "maps/netcdf_file.h"

#include "maps/netcdf_header.h"

#include <QFile>

#include <hdf5.h>
#include <netcdf.h>

#include <algorithm>

namespace raincast {

namespace {

// No map data has variables this long; a damaged file may claim them.
constexpr qint64 kMostValues = 100'000'000;
// No packing that the library knows makes more values of a byte.
constexpr qint64 kMostValuesOfAByte = 1032;
// Map data have a kilobyte.
constexpr qint64 kMostHeaderBytes = qint64{64} * 1024;
constexpr QByteArrayView kHdf5 = "\x89HDF\r\n\x1A\n";

/// How many values a file's variable can have; 0 for a file that is not to be opened.
std::size_t mostValuesIn(const QString& path) {
    QFile file(path);
    const QByteArray head =
        file.open(QIODevice::ReadOnly) ? file.read(kMostHeaderBytes) : QByteArray();
    const bool isGood = head.startsWith(kHdf5) || isSoundNetcdfHeader(head, file.size());
    const qint64 most = std::min(file.size(), kMostValues / kMostValuesOfAByte + 1);
    return isGood ? static_cast<std::size_t>(most * kMostValuesOfAByte) : 0;
}

// The library below reports everything that it does not find on standard error unless each thread
// forbids it: a server whose error output is a full pipe would come to a halt.
void keepQuiet() {
    H5Eset_auto2(H5E_DEFAULT, nullptr, nullptr);
}

/// What each reading begins with.
int variableId(int file, const std::string& name) {
    keepQuiet();
    int id = -1;
    return nc_inq_varid(file, name.c_str(), &id) == NC_NOERR ? id : -1;
}

/// Whether a dimension has a part, which must not be empty.
bool hasPart(std::size_t length, std::size_t first, std::size_t count) {
    return count > 0 && first < length && count <= length - first;
}

} // namespace

NetcdfFile::NetcdfFile(const QString& path) {
    keepQuiet();
    m_mostValues = mostValuesIn(path);
    if (m_mostValues == 0 ||
        nc_open(QFile::encodeName(path).constData(), NC_NOWRITE, &m_id) != NC_NOERR) {
        m_id = -1;
    }
}

NetcdfFile::~NetcdfFile() {
    if (isOpen()) {
        nc_close(m_id);
    }
}

std::vector<std::size_t> NetcdfFile::shape(const std::string& variable) const {
    const int id = variableId(m_id, variable);
    int count = 0;
    if (id < 0 || nc_inq_varndims(m_id, id, &count) != NC_NOERR) {
        return {};
    }
    std::vector<int> dimensions(static_cast<std::size_t>(count));
    std::vector<std::size_t> lengths(dimensions.size());
    bool known = nc_inq_vardimid(m_id, id, dimensions.data()) == NC_NOERR;
    for (std::size_t i = 0; known && i < lengths.size(); ++i) {
        known = nc_inq_dimlen(m_id, dimensions[i], &lengths[i]) == NC_NOERR;
    }
    return known ? lengths : std::vector<std::size_t>();
}

std::size_t NetcdfFile::length(const std::string& variable) const {
    const auto lengths = shape(variable);
    return lengths.size() == 1 && lengths[0] <= m_mostValues ? lengths[0] : 0;
}

std::vector<int>
NetcdfFile::ints(const std::string& variable, std::size_t first, std::size_t count) const {
    const auto lengths = shape(variable);
    if (lengths.size() != 1 || !hasPart(lengths[0], first, count) || count > m_mostValues) {
        return {};
    }
    std::vector<int> values(count);
    const bool read =
        nc_get_vara_int(m_id, variableId(m_id, variable), &first, &count, values.data()) ==
        NC_NOERR;
    return read ? values : std::vector<int>();
}

std::vector<int> NetcdfFile::ints(const std::string& variable) const {
    return ints(variable, 0, length(variable));
}

std::vector<double> NetcdfFile::doubles(const std::string& variable) const {
    std::vector<double> values(length(variable));
    const int id = variableId(m_id, variable);
    const bool read = id >= 0 && nc_get_var_double(m_id, id, values.data()) == NC_NOERR;
    return read ? values : std::vector<double>();
}

std::vector<float> NetcdfFile::floats(
    const std::string& variable, std::size_t firstRow, std::size_t rows, std::size_t firstColumn,
    std::size_t columns
) const {
    const auto lengths = shape(variable);
    if (lengths.size() != 2 || !hasPart(lengths[0], firstRow, rows) ||
        !hasPart(lengths[1], firstColumn, columns) || rows > m_mostValues / columns) {
        return {};
    }
    std::vector<float> values(rows * columns);
    const std::size_t start[] = {firstRow, firstColumn};
    const std::size_t count[] = {rows, columns};
    const int id = variableId(m_id, variable);
    const bool read = nc_get_vara_float(m_id, id, start, count, values.data()) == NC_NOERR;
    return read ? values : std::vector<float>();
}

} // namespace raincast
