// SPDX-License-Identifier: MIT
// Files of any bytes where shores and relief should be: reading ends, with nothing or with numbers.
#include "maps/relief_file.h"
#include "maps/shore_file.h"

#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <cmath>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace raincast;
    static const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("map.nc"));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        return 0;
    }
    file.write(reinterpret_cast<const char*>(data), static_cast<qint64>(size));
    file.close();
    const GeoBox box{34, -98, 36, -96};
    const ReliefGrid relief = readRelief(path, box);
    std::vector<double> heights;
    ReliefProfiles(relief, {-98, -97, -96}).at(35, heights);
    if (!std::all_of(heights.begin(), heights.end(), [](double h) { return std::isfinite(h); })) {
        std::abort();
    }
    static_cast<void>(ShoreFile(path).in(box));
    static_cast<void>(RiverFile(path).in(box));
    return 0;
}
