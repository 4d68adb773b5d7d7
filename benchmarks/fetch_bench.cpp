// SPDX-License-Identifier: MIT
// What raincast-fetch takes when there is nothing new: its cache has the 25 frames that it is asked
// for, and more and more others that the server lists too. Beside it curl, which fetches the
// listing alone.
#include "radar/catalogue/frame_name.h"
#include "support/figure.h"
#include "support/gif_maker.h"
#include "support/http_server.h"
#include "support/radar_tree.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <cstdio>
#include <cstdlib>

namespace {

using namespace raincast;

constexpr int kFrames = 25;
constexpr int kListed[] = {25, 250, 2'500};
constexpr int kPairs = 15;
constexpr double kAim = 15;       // milliseconds
constexpr int kDeadline = 60'000; // milliseconds
const QString kSite = QStringLiteral("MUX");
const QString kProduct = QStringLiteral("N0R");

void require(bool condition, const char* what) {
    if (!condition) {
        std::fprintf(stderr, "%s failed.\n", what);
        std::exit(1);
    }
}

void run(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.setStandardOutputFile(QProcess::nullDevice());
    process.start(program, arguments);
    require(process.waitForFinished(kDeadline) && process.exitCode() == 0, qUtf8Printable(program));
}

/// The n-th newest one, a minute older than the one before.
QString frameName(int number) {
    const FileTime newest = fromCalendar({2019, 5, 19, 5, 54});
    return frameFileName(kSite, newest - number * kFileTimePerMinute, kProduct);
}

/// As compressible as published frames.
QByteArray frame() {
    return makeGif({.screen = {600, 550}, .transparent = 0, .pixel = [](int column, int row) {
                        const int cell = (column / 5 * 31 + row / 4 * 17) % 97;
                        return cell < 9 ? 1 + cell % 3 : 0;
                    }});
}

/// A cache and a server that have the same frames.
class Fixture {
public:
    explicit Fixture(int listed) {
        const QDir cache(m_folder.path());
        require(cache.mkpath(kSite), "Making a folder");
        const QString path = test::framesPath(kSite);
        const QByteArray bytes = frame();
        QByteArray links;
        for (int i = 0; i < listed; ++i) {
            const QString name = frameName(i);
            links += '"' + name.toLatin1() + "\"\n";
            m_server.serve(path + name, bytes);
            QFile file(cache.filePath(kSite + u'/' + name));
            require(file.open(QIODevice::WriteOnly) && file.write(bytes) > 0, "Writing a frame");
        }
        m_server.serve(path, links);
        fetch(); // once, for what it learns of them
    }
    void fetch() const {
        run(QStringLiteral(RAINCAST_FETCH_PROGRAM),
            {kSite, kProduct, "--frames", QString::number(kFrames), "--interval", "1",
             "--no-warnings", "--cache", m_folder.path(), "--radar-server", m_server.host(),
             "--quiet"});
    }
    void curl() const {
        run(QStringLiteral("curl"),
            {"-s", "-f", "http://" + m_server.host() + test::framesPath(kSite)});
    }

private:
    QTemporaryDir m_folder;
    HttpServer m_server;
};

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const QTemporaryDir home;
    for (const char* name : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"}) {
        qputenv(name, home.path().toLocal8Bit());
    }
    for (const int listed : kListed) {
        const Fixture fixture(listed);
        const Ratio ratio = ratioOf(
            kPairs, [&] { fixture.fetch(); }, [&] { fixture.curl(); }
        );
        print(CurvePoint{
            "raincast-fetch with nothing new", "cached files", double(listed), "ms",
            ratio.firstMilliseconds, "curl and the listing", ratio.secondMilliseconds});
        if (listed == kFrames) {
            print(Figure::of(ratio, "raincast-fetch with nothing new", "curl and the listing")
                      .withAim(AimOf::own, kAim));
        }
    }
    return 0;
}
