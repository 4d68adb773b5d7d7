// SPDX-License-Identifier: MIT
// Run by the build: packs the borders of counties and states.
//     pack_borders TOPOLOGY.json BORDERS
#include "maps/border_file.h"

#include <QFile>

#include <iostream>

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: pack_borders TOPOLOGY.json BORDERS\n";
        return 2;
    }
    QFile topology(QString::fromLocal8Bit(argv[1]));
    QFile borders(QString::fromLocal8Bit(argv[2]));
    if (!topology.open(QIODevice::ReadOnly) || !borders.open(QIODevice::WriteOnly)) {
        std::cerr << "pack_borders: cannot read " << argv[1] << " or write " << argv[2] << "\n";
        return 1;
    }
    const QByteArray bytes = raincast::packBorders(topology.readAll(), QStringLiteral("states"));
    if (bytes.isEmpty() || borders.write(bytes) != bytes.size()) {
        std::cerr << "pack_borders: no borders in " << argv[1] << ", or a full disk\n";
        return 1;
    }
    return 0;
}
