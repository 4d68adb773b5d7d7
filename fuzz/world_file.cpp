// SPDX-License-Identifier: MIT
// World files of any bytes: each either places the image or does not, and what it makes of points
// and positions may be without meaning but is never undefined.
#include "geo/geo_reference.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

constexpr int kWidth = 600;
constexpr int kHeight = 550;

/// A file in memory with a name.
class MemoryFile {
public:
    MemoryFile() : m_descriptor(memfd_create("world_file", MFD_CLOEXEC)) {}

    std::string write(const std::uint8_t* data, std::size_t size) const {
        const auto length = static_cast<ssize_t>(size);
        if (ftruncate(m_descriptor, 0) != 0 || pwrite(m_descriptor, data, size, 0) != length) {
            std::abort();
        }
        return "/proc/self/fd/" + std::to_string(m_descriptor);
    }

private:
    int m_descriptor;
};

void require(bool condition) {
    if (!condition) {
        std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const MemoryFile file;
    raincast::GeoReference reference;
    require(reference.loadWorldFile(file.write(data, size), kWidth, kHeight) == reference.valid());
    for (const raincast::ImagePoint point :
         {raincast::ImagePoint{0, 0}, {kWidth, kHeight}, {-1e300, 1e300}}) {
        const raincast::GeoPosition position = reference.pixelToGeo(point);
        const auto inside = reference.geoToPixelInside(position);
        const auto [column, row] = inside.pixel;
        require(!inside.ok || (column >= 0 && column < kWidth && row >= 0 && row < kHeight));
        static_cast<void>(reference.geoToPixelForDrawing(position));
    }
    return 0;
}
