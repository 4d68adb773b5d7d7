// SPDX-License-Identifier: MIT
#include "maps/city_file.h"

#include <cmath>
#include <cstdint>
#include <optional>
#include <string_view>

namespace raincast {

namespace {

constexpr double kUnitsPerDegree = 1e5;

/// Protobuf's wire format, bounds checked: after the first error it is at its end and gives
/// zeros.
/// Source: https://protobuf.dev/programming-guides/encoding/
class Wire {
public:
    explicit Wire(std::string_view bytes) : m_bytes(bytes) {}

    [[nodiscard]] bool atEnd() const { return m_bytes.empty(); }

    std::uint64_t varint() {
        std::uint64_t value = 0;
        for (unsigned shift = 0; shift < 64 && !m_bytes.empty(); shift += 7) {
            const auto byte = static_cast<unsigned char>(m_bytes.front());
            m_bytes.remove_prefix(1);
            value |= std::uint64_t(byte & 0x7FU) << shift;
            if (byte < 0x80) {
                return value;
            }
        }
        m_bytes = {};
        return 0;
    }

    /// A number whose lowest bit is its sign.
    std::int64_t zigzag() {
        const std::uint64_t value = varint();
        return static_cast<std::int64_t>(value >> 1U) ^ -static_cast<std::int64_t>(value & 1U);
    }

    std::string_view bytes() {
        const std::uint64_t length = varint();
        if (length > m_bytes.size()) {
            m_bytes = {};
            return {};
        }
        const std::string_view result = m_bytes.substr(0, length);
        m_bytes.remove_prefix(length);
        return result;
    }

    void skip(unsigned wireType) {
        const std::size_t fixed = wireType == 1 ? 8 : wireType == 5 ? 4 : 0;
        if (wireType == 0) {
            varint();
        } else if (wireType == 2) {
            bytes();
        } else if (fixed > 0 && fixed <= m_bytes.size()) {
            m_bytes.remove_prefix(fixed);
        } else {
            m_bytes = {};
        }
    }

private:
    std::string_view m_bytes;
};

struct Record {
    std::string_view name;
    std::string_view featureCode;
    std::uint64_t population = 0;
    std::int64_t eastStep = 0;
    std::int64_t northStep = 0;
};

Record readRecord(Wire wire) {
    enum Field { name = 2, featureCode = 7, population = 9, longitude = 10, latitude = 11 };
    Record record;
    while (!wire.atEnd()) {
        const std::uint64_t tag = wire.varint();
        switch (tag >> 3U) {
        case name:
            record.name = wire.bytes();
            break;
        case featureCode:
            record.featureCode = wire.bytes();
            break;
        case population:
            record.population = wire.varint();
            break;
        case longitude:
            record.eastStep = wire.zigzag();
            break;
        case latitude:
            record.northStep = wire.zigzag();
            break;
        default:
            wire.skip(static_cast<unsigned>(tag & 7U));
        }
    }
    return record;
}

/// PPLX is a section of a city; PPLH, PPLQ and PPLW are gone.
bool isPlaceOfItsOwn(std::string_view code) {
    return code.starts_with("PPL") && code != "PPLX" && code != "PPLH" && code != "PPLQ" &&
           code != "PPLW";
}

} // namespace

std::vector<City> readCities(const QByteArray& bytes) {
    Wire wire({bytes.constData(), static_cast<std::size_t>(bytes.size())});
    std::vector<City> cities;
    // Unsigned, so that a damaged file's sums wrap instead of overflowing.
    std::uint64_t east = 0;
    std::uint64_t north = 0;
    while (!wire.atEnd()) {
        const Record record = readRecord(Wire(wire.bytes()));
        east += static_cast<std::uint64_t>(record.eastStep);
        north += static_cast<std::uint64_t>(record.northStep);
        const GeoPosition position{
            static_cast<double>(static_cast<std::int64_t>(north)) / kUnitsPerDegree,
            static_cast<double>(static_cast<std::int64_t>(east)) / kUnitsPerDegree};
        const bool onEarth =
            std::abs(position.latitude) <= 90 && std::abs(position.longitude) <= 180;
        if (onEarth && !record.name.empty() && isPlaceOfItsOwn(record.featureCode)) {
            cities.push_back(
                {QString::fromUtf8(record.name.data(), static_cast<qsizetype>(record.name.size())),
                 record.population, position}
            );
        }
    }
    return cities;
}

} // namespace raincast
