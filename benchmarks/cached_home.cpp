// SPDX-License-Identifier: MIT
#include "cached_home.h"

#include "support/gif_maker.h"
#include "support/http_server.h"
#include "support/radar_tree.h"
#include "weather/weather_settings.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cstdio>
#include <cstdlib>

namespace {

using namespace raincast;

constexpr int kDeadline = 60'000; // milliseconds
constexpr int kFrames = 25;

void require(bool condition, const char* what) {
    if (!condition) {
        std::fprintf(stderr, "%s failed.\n", what);
        std::exit(1);
    }
}

/// Rain in cells, a tenth of the image. In a sharp one they are as small in pixels.
QByteArray frame(int number, int detail = 1) {
    return makeGif({
        .screen = QSize(600, 550) * detail,
        .colours = {0xFFFFFFFF, 0xFF00FF00, 0xFFFFFF00, 0xFFFF0000},
        .transparent = 0,
        .pixel =
            [number](int column, int row) {
                const int cell = (column / 25 * 31 + row / 25 * 17 + number) % 97;
                return cell < 10 ? 1 + cell % 3 : 0;
            },
    });
}

void publish(HttpServer& server) {
    test::publishLayers(server, "MUX");
    QStringList stamps;
    for (int i = 0; i < kFrames; ++i) {
        stamps += QString::asprintf("20190519_%02d%02d", i / 6, i % 6 * 10);
    }
    test::publishFrames(server, stamps, "MUX");
    for (int i = 0; i < kFrames; ++i) {
        server.serve(test::framesPath("MUX") + "MUX_" + stamps[i] + "_N0R.gif", frame(i));
    }
}

QByteArray bytesOf(const RadarState& state) {
    const WeatherSettingsBlock block = encodeWeatherSettings(state, {});
    return {reinterpret_cast<const char*>(block.data()), static_cast<qsizetype>(block.size())};
}

} // namespace

CachedHome::CachedHome(const QStringList& more)
    : m_environment(QProcessEnvironment::systemEnvironment()) {
    for (const char* name :
         {"XDG_CONFIG_HOME", "XDG_CONFIG_DIRS", "XDG_DATA_HOME", "XDG_RUNTIME_DIR",
          "RAINCAST_CARD_ROOT"}) {
        m_environment.insert(name, m_folder.path());
    }
    m_environment.insert("QT_QPA_PLATFORM", "offscreen");
    HttpServer server;
    publish(server);
    m_environment.insert("no_proxy", "127.0.0.1");
    const QStringList arguments =
        QStringList{"--site",       "MUX",      "--radar-server",   server.host(),
                    "--page-file",  pageFile(), "--basemap-server", server.host(),
                    "--screenshot", picture()} +
        more;
    run(RAINCAST_PROGRAM, arguments);
    animate();
    run(RAINCAST_PROGRAM, arguments);
}

/// Changes the settings in the page file, as the animation dialog would.
void CachedHome::animate() const {
    RadarState wanted;
    wanted.animate = true;
    wanted.frameCount = kFrames;
    QFile file(pageFile());
    require(file.open(QIODevice::ReadWrite), "opening the page file");
    const QByteArray bytes = file.readAll();
    const qsizetype place = bytes.indexOf(bytesOf({}));
    require(place > 0 && file.seek(place) && file.write(bytesOf(wanted)) > 0, "animating");
}

QString CachedHome::siteFolder() const {
    return m_folder.filePath(QStringLiteral("Quorvane/Temp/Weather/MUX"));
}

void CachedHome::addSharp() const {
    const QDir folder(siteFolder());
    require(folder.mkpath(QStringLiteral("x2")), "making a folder");
    int number = 0;
    for (const QFileInfo& described : folder.entryInfoList({"*.gif", "*.jpg"}, QDir::Files)) {
        const bool isFrame = described.fileName().contains(QStringLiteral("_2019"));
        QFile sharp(folder.filePath("x2/" + described.fileName()));
        const bool written =
            sharp.open(QIODevice::WriteOnly) &&
            sharp.write(
                described.suffix() == QStringLiteral("jpg") ? test::sharpTopoJpeg(2)
                : isFrame                                   ? frame(++number, 2)
                                                            : test::sharpColumnGif(2, 77)
            ) > 0 &&
            sharp.flush() &&
            sharp.setFileTime(described.lastModified(), QFileDevice::FileModificationTime);
        require(written, "writing a sharp picture");
    }
    require(number == kFrames, "finding all frames");
}

void CachedHome::removeSharp() const {
    require(QDir(siteFolder() + QStringLiteral("/x2")).removeRecursively(), "removing a folder");
}

void CachedHome::start(QProcess& process, const char* program, const QStringList& arguments) const {
    process.setProcessEnvironment(m_environment);
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(QString::fromLocal8Bit(program), arguments);
    require(process.waitForStarted(kDeadline), program);
}

void CachedHome::run(const char* program, const QStringList& arguments) const {
    QProcess process;
    start(process, program, arguments);
    require(process.waitForFinished(kDeadline) && process.exitCode() == 0, program);
}
