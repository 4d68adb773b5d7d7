// SPDX-License-Identifier: MIT
// live-sim [FOLDER]: stand-ins for the providers of live weather at free loopback ports. The bucket
// has the files of the folder under their names. Prints the options that lead raincast-server there
// and ends when its input does.
#include "live_sim/live_sim.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <iostream>
#include <limits>

int main(int argc, char** argv) {
    raincast::LiveSim sim;
    const QFileInfoList files =
        argc > 1 ? QDir(QString::fromLocal8Bit(argv[1])).entryInfoList(QDir::Files)
                 : QFileInfoList();
    for (const QFileInfo& info : files) {
        QFile file(info.filePath());
        if (file.open(QIODevice::ReadOnly)) {
            const auto modified =
                static_cast<std::uint32_t>(info.lastModified().toSecsSinceEpoch());
            sim.bucket.put(
                info.fileName().toStdString(), file.readAll(), raincast::fromUnixSeconds(modified)
            );
        }
    }
    std::cout << "--live-frames " << sim.bucket.url().toStdString() << " --live-fallback "
              << sim.ring.url().toStdString() << " --live-warnings "
              << sim.alerts.url().toStdString() << std::endl;
    std::cin.ignore(std::numeric_limits<std::streamsize>::max());
    return 0;
}
