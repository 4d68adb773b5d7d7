// SPDX-License-Identifier: MIT
#include "cached_home.h"

#include "map/mark_manager.h"
#include "persist/serial_writer.h"
#include "process_cost.h"
#include "support/gif_maker.h"
#include "support/http_server.h"
#include "support/radar_tree.h"
#include "weather/weather_settings.h"

#include <QBuffer>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace {

using namespace raincast;

constexpr int kDeadline = 300'000; // milliseconds

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
    for (int i = 0; i < CachedHome::kMostFrames; ++i) {
        stamps += QString::asprintf("20190519_%02d%02d", i / 6, i % 6 * 10);
    }
    test::publishFrames(server, stamps, "MUX");
    for (int i = 0; i < CachedHome::kMostFrames; ++i) {
        server.serve(test::framesPath("MUX") + "MUX_" + stamps[i] + "_N0R.gif", frame(i));
    }
}

QByteArray bytesOf(const RadarState& state) {
    const WeatherSettingsBlock block = encodeWeatherSettings(state, {});
    return {reinterpret_cast<const char*>(block.data()), static_cast<qsizetype>(block.size())};
}

} // namespace

CachedHome::CachedHome(int frames, const QStringList& more)
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
    if (frames > 1) {
        animate(frames);
        run(RAINCAST_PROGRAM, arguments);
    }
    m_withoutMarks = pages();
}

QByteArray CachedHome::pages() const {
    QFile file(pageFile());
    require(file.open(QIODevice::ReadOnly), "reading the page file");
    return file.readAll();
}

void CachedHome::setPages(const QByteArray& bytes) const {
    QFile file(pageFile());
    require(
        file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size(),
        "writing the page file"
    );
}

/// Changes the settings in the page file, as the animation dialog would.
void CachedHome::animate(int frames) const {
    RadarState wanted;
    wanted.animate = true;
    wanted.frameCount = frames;
    QByteArray bytes = pages();
    const qsizetype place = bytes.indexOf(bytesOf({}));
    require(place > 0, "animating");
    setPages(bytes.replace(place, bytesOf(wanted).size(), bytesOf(wanted)));
}

/// The flag of a map view's second record stands behind its 12 bytes of the view.
void CachedHome::follow() {
    QByteArray bytes = pages();
    const qsizetype record = bytes.indexOf(QByteArray("\x02\0\0\0\x0C\0\0\0", 8));
    require(record > 0, "following");
    bytes[record + 8 + 12 + 4] = 1;
    setPages(bytes);
    m_withoutMarks = bytes;
}

/// Marks are the last object of a page file.
void CachedHome::setMarks(int count) {
    raincast::CMarkManager marks;
    const int columns = std::max(1, static_cast<int>(std::sqrt(count)));
    for (int i = 0; i < count; ++i) {
        const double down = 0.05 + 0.9 * (i / columns) / columns;
        const double across = 0.05 + 0.9 * (i % columns) / columns;
        marks.add(
            {39.6 - 550 * 0.009 * down, -124.6 + 600 * 0.009 * across},
            QStringLiteral("Mark %1").arg(i)
        );
    }
    QBuffer bytes;
    bytes.open(QIODevice::WriteOnly);
    raincast::CSerialWriter writer(bytes);
    require(count == 0 || (writer.writeObject(marks) && writer.finish()), "adding marks");
    setPages(m_withoutMarks + bytes.data());
}

QStringList CachedHome::viewer() const {
    return {"--page-file",    pageFile(),    "--geometry",       "640x640",
            "--radar-server", "127.0.0.1:9", "--basemap-server", "127.0.0.1:9"};
}

QString CachedHome::siteFolder() const {
    return m_folder.filePath(QStringLiteral("Quorvane/Temp/Weather/MUX"));
}

void CachedHome::addNewerFrame() const {
    QFile file(siteFolder() + QStringLiteral("/MUX_20190519_0500_N0R.gif"));
    require(
        file.open(QIODevice::WriteOnly) && file.write(frame(kMostFrames)) > 0, "adding a frame"
    );
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
    require(number > 0, "finding all frames");
}

void CachedHome::removeSharp() const {
    require(QDir(siteFolder() + QStringLiteral("/x2")).removeRecursively(), "removing a folder");
}

void CachedHome::start(QProcess& process, const char* program, const QStringList& arguments) const {
    process_cost::endWithUs(process);
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
