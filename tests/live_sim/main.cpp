// SPDX-License-Identifier: MIT
// live-sim [FOLDER | --moving HOURS]: stand-ins for the providers of live weather at free loopback
// ports. The bucket has the files of the folder under their names; or all sites have weather that
// goes on, whose last hours are there. Prints the options that lead raincast-server there and ends
// when its input does.
#include "live_sim/live_sim.h"
#include "live_sim/moving_weather.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <chrono>
#include <iostream>
#include <limits>
#include <string_view>
#include <thread>

namespace {

void putFiles(raincast::LiveSim& sim, const char* folder) {
    const QFileInfoList files = QDir(QString::fromLocal8Bit(folder)).entryInfoList(QDir::Files);
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
}

} // namespace

int main(int argc, char** argv) {
    raincast::LiveSim sim;
    std::jthread moving;
    if (argc > 2 && argv[1] == std::string_view("--moving")) {
        raincast::MovingWeather weather(sim, std::atoi(argv[2]));
        weather.update();
        moving = std::jthread([weather](const std::stop_token& stop) mutable {
            while (!stop.stop_requested()) {
                std::this_thread::sleep_for(std::chrono::milliseconds(200));
                weather.update();
            }
        });
    } else if (argc > 1) {
        putFiles(sim, argv[1]);
    }
    std::cout << "--live-frames " << sim.bucket.url().toStdString() << " --live-fallback "
              << sim.ring.url().toStdString() << " --live-warnings "
              << sim.alerts.url().toStdString() << std::endl;
    std::cin.ignore(std::numeric_limits<std::streamsize>::max());
    return 0;
}
