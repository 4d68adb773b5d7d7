// SPDX-License-Identifier: MIT
#include "maps/border_file.h"

#include "maps/topojson.h"

#include <QtEndian>

#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <optional>

namespace raincast {

namespace {

constexpr unsigned kBits = 7;
constexpr std::uint8_t kMore = 1U << kBits;
constexpr unsigned kMostBits = 56;

/// From whole steps to positions.
struct Scale {
    GeoPosition step;
    GeoPosition begin;

    [[nodiscard]] GeoPosition at(std::int64_t x, std::int64_t y) const {
        return {
            static_cast<double>(y) * step.latitude + begin.latitude,
            static_cast<double>(x) * step.longitude + begin.longitude};
    }
};

void append(QByteArray& bytes, double number) {
    std::array<char, sizeof(quint64)> eight{};
    quint64 bits = 0;
    std::memcpy(&bits, &number, sizeof bits);
    qToLittleEndian(bits, eight.data());
    bytes.append(eight.data(), qsizetype{eight.size()});
}

void append(QByteArray& bytes, std::uint64_t number) {
    for (; number >= kMore; number >>= kBits) {
        bytes += static_cast<char>(number | kMore);
    }
    bytes += static_cast<char>(number);
}

void appendStep(QByteArray& bytes, std::int64_t step) {
    append(bytes, (static_cast<std::uint64_t>(step) << 1U) ^ (step < 0 ? ~std::uint64_t{0} : 0));
}

/// False where a point is not a whole number of steps away.
bool append(QByteArray& bytes, const MapLine& line, const Scale& scale) {
    bytes += static_cast<char>(line.rank);
    append(bytes, std::uint64_t{line.points.size()});
    std::int64_t lastX = 0;
    std::int64_t lastY = 0;
    for (const GeoPosition& point : line.points) {
        const GeoPosition steps{
            (point.latitude - scale.begin.latitude) / scale.step.latitude,
            (point.longitude - scale.begin.longitude) / scale.step.longitude};
        const std::int64_t x = std::llround(steps.longitude);
        const std::int64_t y = std::llround(steps.latitude);
        const GeoPosition read = scale.at(x, y);
        if (read.latitude != point.latitude || read.longitude != point.longitude) {
            return false;
        }
        appendStep(bytes, x - lastX);
        appendStep(bytes, y - lastY);
        lastX = x;
        lastY = y;
    }
    return true;
}

/// Takes what append() wrote; nothing is left after the first bad byte.
class Reader {
public:
    explicit Reader(const QByteArray& bytes) : m_at(bytes.begin()), m_end(bytes.end()) {}

    [[nodiscard]] bool isAtEnd() const { return m_at == m_end; }

    std::optional<double> real() {
        if (m_end - m_at < qsizetype{sizeof(quint64)}) {
            return std::nullopt;
        }
        const auto bits = qFromLittleEndian<quint64>(m_at);
        m_at += sizeof bits;
        double number = 0;
        std::memcpy(&number, &bits, sizeof number);
        return number;
    }

    std::optional<std::uint64_t> number() {
        std::uint64_t number = 0;
        for (unsigned bit = 0; m_at != m_end && bit < kMostBits; bit += kBits) {
            const auto byte = static_cast<std::uint8_t>(*m_at++);
            number |= std::uint64_t{byte & (kMore - 1U)} << bit;
            if (byte < kMore) {
                return number;
            }
        }
        return std::nullopt;
    }

    /// Below zero as a complement: sums of any steps are numbers.
    std::optional<std::uint64_t> step() {
        const auto coded = number();
        return coded ? std::optional((*coded >> 1U) ^ (0 - (*coded & 1U))) : std::nullopt;
    }

private:
    const char* m_at;
    const char* m_end;
};

std::optional<Scale> readScale(Reader& reader) {
    const auto north = reader.real();
    const auto east = reader.real();
    const auto beginNorth = reader.real();
    const auto beginEast = reader.real();
    return beginEast ? std::optional(Scale{{*north, *east}, {*beginNorth, *beginEast}})
                     : std::nullopt;
}

std::optional<MapLine> readLine(Reader& reader, const Scale& scale) {
    const auto rank = reader.number();
    const auto count = reader.number();
    if (!rank || !count) {
        return std::nullopt;
    }
    MapLine line{static_cast<int>(*rank), {}};
    std::uint64_t x = 0;
    std::uint64_t y = 0;
    for (std::uint64_t i = 0; i < *count; ++i) {
        const auto east = reader.step();
        const auto north = reader.step();
        if (!east || !north) {
            return std::nullopt;
        }
        x += *east;
        y += *north;
        line.points.push_back(scale.at(static_cast<std::int64_t>(x), static_cast<std::int64_t>(y)));
    }
    return line;
}

} // namespace

QByteArray packBorders(const QByteArray& topology, const QString& major) {
    const auto transform = transformOf(topology);
    if (!transform) {
        return {};
    }
    const Scale scale{transform->step, transform->begin};
    QByteArray bytes;
    for (const double number :
         {scale.step.latitude, scale.step.longitude, scale.begin.latitude, scale.begin.longitude}) {
        append(bytes, number);
    }
    for (const MapLine& line : readTopology(topology, major)) {
        if (!append(bytes, line, scale)) {
            return {};
        }
    }
    return bytes;
}

std::vector<MapLine> readBorders(const QByteArray& packed) {
    Reader reader(packed);
    std::vector<MapLine> lines;
    const auto scale = readScale(reader);
    while (scale && !reader.isAtEnd()) {
        auto line = readLine(reader, *scale);
        if (!line) {
            break;
        }
        lines.push_back(std::move(*line));
    }
    return lines;
}

} // namespace raincast
