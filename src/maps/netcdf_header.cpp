// SPDX-License-Identifier: MIT
#include "maps/netcdf_header.h"

#include <QtEndian>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <vector>

namespace raincast {

namespace {

constexpr quint64 kPadding = 4; // names and values fill whole words

/// The tags of the header's lists.
enum Tag : quint32 { absent = 0, dimensions = 10, variables = 11, attributes = 12 };

/// Bytes of a value of the types 1 to 11; 0 for no type.
quint64 sizeOf(quint32 type) {
    constexpr quint64 kSizes[] = {0, 1, 1, 2, 4, 4, 8, 1, 2, 4, 8, 8};
    return type < std::size(kSizes) ? kSizes[type] : 0;
}

/// Too many count as more than any file has.
quint64 product(quint64 a, quint64 b) {
    constexpr quint64 kMost = std::numeric_limits<quint64>::max();
    return b != 0 && a > kMost / b ? kMost : a * b;
}

class HeaderReader {
public:
    HeaderReader(QByteArrayView bytes, qint64 fileBytes)
        : m_rest(bytes), m_fileBytes(static_cast<quint64>(fileBytes)) {}

    [[nodiscard]] bool read() {
        if (m_rest.size() < 4 || !m_rest.startsWith("CDF")) {
            return false;
        }
        const char version = m_rest[3];
        m_countBytes = version == 5 ? 8 : 4;
        m_offsetBytes = version == 1 ? 4 : 8;
        skip(4);
        m_records = number(m_countBytes);
        const bool isStreamed = m_records == (m_countBytes == 4 ? 0xFFFF'FFFFU : ~quint64{0});
        m_records = isStreamed ? 0 : m_records;
        return (version == 1 || version == 2 || version == 5) &&
               list(dimensions, &HeaderReader::dimension) &&
               list(attributes, &HeaderReader::attribute) &&
               list(variables, &HeaderReader::variable);
    }

private:
    /// Reads one element of a list; false when it makes no sense.
    using Element = bool (HeaderReader::*)();

    bool list(Tag tag, Element element) {
        const quint64 found = number(4);
        const quint64 count = number(m_countBytes);
        if (found != tag) {
            return m_isGood && found == absent && count == 0;
        }
        // Each of them ends the reading at the latest where the bytes end.
        for (quint64 i = 0; m_isGood && i < count; ++i) {
            m_isGood = (this->*element)() && m_isGood;
        }
        return m_isGood;
    }

    bool dimension() {
        skipPadded(number(m_countBytes));
        m_lengths.push_back(number(m_countBytes));
        return m_isGood;
    }

    bool attribute() {
        skipPadded(number(m_countBytes));
        const quint64 size = sizeOf(static_cast<quint32>(number(4)));
        skipPadded(product(number(m_countBytes), size));
        return m_isGood && size > 0;
    }

    bool variable() {
        skipPadded(number(m_countBytes));
        const quint64 rank = number(m_countBytes);
        quint64 values = 1;
        for (quint64 i = 0; m_isGood && i < rank; ++i) {
            const quint64 dimension = number(m_countBytes);
            m_isGood = m_isGood && dimension < m_lengths.size();
            const quint64 length = m_isGood ? m_lengths[dimension] : 0;
            values = product(values, length == 0 ? m_records : length); // 0: one for each record
        }
        if (!m_isGood || !list(attributes, &HeaderReader::attribute)) {
            return false;
        }
        const quint64 size = sizeOf(static_cast<quint32>(number(4)));
        number(m_countBytes); // of bytes: what the lengths say counts
        const quint64 begin = number(m_offsetBytes);
        return m_isGood && size > 0 && begin <= m_fileBytes &&
               product(values, size) <= m_fileBytes - begin;
    }

    quint64 number(quint64 bytes) {
        const QByteArrayView taken = m_rest;
        skip(bytes);
        if (!m_isGood) {
            return 0;
        }
        return bytes == 4 ? qFromBigEndian<quint32>(taken.data())
                          : qFromBigEndian<quint64>(taken.data());
    }

    void skipPadded(quint64 bytes) {
        skip(bytes);
        skip((kPadding - bytes % kPadding) % kPadding);
    }

    void skip(quint64 bytes) {
        m_isGood = m_isGood && bytes <= static_cast<quint64>(m_rest.size());
        m_rest = m_isGood ? m_rest.sliced(static_cast<qsizetype>(bytes)) : QByteArrayView();
    }

    QByteArrayView m_rest;
    quint64 m_fileBytes;
    bool m_isGood = true;
    quint64 m_countBytes = 4;
    quint64 m_offsetBytes = 4;
    quint64 m_records = 0;
    std::vector<quint64> m_lengths; ///< of the dimensions
};

} // namespace

bool isSoundNetcdfHeader(QByteArrayView bytes, qint64 fileBytes) {
    return HeaderReader(bytes, fileBytes).read();
}

} // namespace raincast
