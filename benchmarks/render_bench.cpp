// SPDX-License-Identifier: MIT
// Level III products rendered per second and core, beside the writing of the picture alone, which
// nobody can do without; how long sharp pictures take, and how many bytes they have; and the same
// for sample weather. Products are made here, of the size of real ones; those of the folder
// RAINCAST_TEST_DATA are measured too where it is there.
#include "nexrad/frame_painter.h"
#include "nexrad/level3_decoder.h"
#include "radar/catalogue/image_geometry.h"
#include "sample/sample_weather.h"
#include "support/figure.h"
#include "support/level3_maker.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <cstdio>
#include <cstdlib>

namespace {

using namespace raincast;

constexpr int kPairs = 15;
constexpr int kDeadline = 60'000;   // milliseconds
constexpr double kAimASecond = 400; // of Level III products of up to a kilometre
constexpr double kAimOfOne = 40;    // milliseconds for one, by a program that begins with it

/// Rain in patches, whose colours a picture compresses about as well as real ones.
std::uint8_t echo(int radial, int bin, int most) {
    const int patch = (radial / 6 * 31 + bin / 8 * 17) % 97;
    return static_cast<std::uint8_t>(patch < 30 ? 1 + patch * most / 30 : 0);
}

Level3ToMake product(int code, int radials, int bins, bool digital) {
    Level3ToMake result;
    result.code = code;
    result.rows.clear();
    for (int radial = 0; radial < radials; ++radial) {
        Level3ToMake::Row row{radial * 3600 / radials, 3600 / radials, {}};
        for (int bin = 0; bin < bins; ++bin) {
            row.cells.push_back(echo(radial, bin, digital ? 200 : 14));
        }
        result.rows.push_back(row);
    }
    if (digital) {
        result.thresholds = digitalThresholds(-320, 5);
        result.picture = Level3ToMake::Picture::digital;
        result.packed = true;
    }
    return result;
}

PolarScan decoded(const std::string& bytes) {
    const Level3Result result = decodeLevel3(bytes);
    if (!result) {
        std::fprintf(stderr, "%s\n", qUtf8Printable(result.error()));
        std::exit(1);
    }
    return *result;
}

/// A picture's detail, and the time that one from the sharpest products is meant to take at most.
struct Detail {
    int detail;
    double aimMilliseconds;
};
constexpr Detail kSharp[] = {{2, 60}, {4, 200}};

/// From a file's bytes to the picture's, never at a place that was drawn before: what follows each
/// other in a feed is of different sites as often as not.
struct Measured {
    Ratio ratio;
    qsizetype bytes = 0;
};
Measured rendered(const std::string& bytes, int detail) {
    int drawn = 0;
    Measured result{};
    const auto render = [&] {
        PolarScan scan = decoded(bytes);
        scan.site.clear();
        scan.latitude += ++drawn * 0.1;
        const ImageGeometry image = frameGeometry(scan, rangeOf(scan.product), detail);
        result.bytes = renderFrame(scan, scan.product, image).value_or(QByteArray()).size();
    };
    result.ratio = processorRatioOf(kPairs, render, [] { static_cast<void>(emptyFrame()); });
    return result;
}

/// As many a second, and as many times less than of its peer.
Figure rateOf(const Ratio& ratio, const std::string& what, double pictures = 1) {
    return {
        .what = what,
        .unit = "a second",
        .own = 1000 * pictures / ratio.firstMilliseconds,
        .peerName = "an empty picture",
        .peer = 1000 / ratio.secondMilliseconds,
        .ratio = pictures / ratio.median,
        .better = Better::higher};
}

void tellSize(qsizetype bytes) {
    std::printf("    of %lld bytes\n", static_cast<long long>(bytes));
}

void measure(const std::string& name, const std::string& bytes, double aim = 0) {
    const Measured result = rendered(bytes, 1);
    const Figure figure = rateOf(result.ratio, "Level III to pictures, " + name);
    print(aim > 0 ? figure.withAim(AimOf::own, aim) : figure);
    tellSize(result.bytes);
}

/// One product by the program that makes a picture of it and ends.
void measureProgram(const std::string& bytes) {
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("product")));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes.data(), qint64(bytes.size())) < 0) {
        std::exit(1);
    }
    file.close();
    const auto run = [](const QStringList& arguments) {
        QProcess process;
        process.start(QStringLiteral(RAINCAST_SERVER_PROGRAM), arguments);
        if (!process.waitForFinished(kDeadline) || process.exitCode() != 0) {
            std::fprintf(stderr, "raincast-server failed.\n");
            std::exit(1);
        }
    };
    const QString picture = folder.filePath(QStringLiteral("picture.gif"));
    const Ratio ratio = ratioOf(
        kPairs,
        [&] {
            run({QStringLiteral("render"), file.fileName(), picture});
        },
        [&] { run({QStringLiteral("--version")}); }
    );
    print(Figure::of(ratio, "One Level III product, by raincast-server render", "its --version")
              .withAim(AimOf::own, kAimOfOne));
}

void measureSharp(const std::string& name, const std::string& bytes) {
    for (const auto& [detail, aim] : kSharp) {
        const Measured result = rendered(bytes, detail);
        print(Figure::of(
                  result.ratio,
                  "A sharp picture of Level III, " + name + ", x" + std::to_string(detail),
                  "an empty picture"
        )
                  .withAim(AimOf::own, aim));
        tellSize(result.bytes);
    }
}

void measureReal() {
    const QDir folder(qEnvironmentVariable("RAINCAST_TEST_DATA") + "/level3");
    for (const QString& name : folder.entryList(QDir::Files)) {
        QFile file(folder.filePath(name));
        if (file.open(QIODevice::ReadOnly)) {
            const std::string bytes = file.readAll().toStdString();
            measure(name.toStdString(), bytes);
            measureSharp(name.toStdString(), bytes);
        }
    }
}

/// Alone: nothing of it is known from another picture.
void measureSample(Product as) {
    const FileTime now = fromCalendar({2026, 11, 20, 10, 30});
    const FileTime time = SampleWeather().frameTimes("TLX", as, now).back();
    const Ratio ratio = processorRatioOf(
        5, [&] { static_cast<void>(SampleWeather().frame("TLX", as, time)); },
        [] { static_cast<void>(emptyFrame()); }
    );
    print(rateOf(ratio, "Sample weather, " + std::string(codeOf(as)) + " alone"));
}

/// The same, sharp.
void measureSharpSample(Product as) {
    const FileTime now = fromCalendar({2026, 11, 20, 10, 30});
    const FileTime time = SampleWeather().frameTimes("TLX", as, now).back();
    const std::string name(codeOf(as));
    // Over the time that the described picture takes, and altogether.
    constexpr Detail kAims[] = {{2, 500}, {4, 1500}};
    for (const auto& [detail, aim] : kAims) {
        qsizetype bytes = 0;
        const Ratio ratio = processorRatioOf(
            5,
            [&, detail = detail] {
                const auto picture = SampleWeather().sharpFrame("TLX", as, time, detail);
                bytes = picture.value_or(QByteArray()).size();
            },
            [&] { static_cast<void>(SampleWeather().frame("TLX", as, time)); }
        );
        const double more = detail == 2 ? ratio.secondMilliseconds : 0;
        print(Figure::of(
                  ratio, "Sample weather, " + name + ", x" + std::to_string(detail),
                  "the described picture"
        )
                  .withAim(AimOf::own, aim + more));
        tellSize(bytes);
    }
}

/// As they are published: all products of a site, frame after frame.
void measureSampleSite() {
    const FileTime now = fromCalendar({2026, 11, 20, 10, 30});
    const SampleWeather weather;
    const auto times = weather.frameTimes("TLX", Product::baseReflectivity, now);
    auto time = times.begin();
    const auto allProducts = [&] {
        for (const Product as : kAllProducts) {
            static_cast<void>(weather.frame("TLX", as, *time));
        }
        ++time;
    };
    const Ratio ratio =
        processorRatioOf(kPairs, allProducts, [] { static_cast<void>(emptyFrame()); });
    print(rateOf(ratio, "Sample weather, all products in turn", double(kAllProducts.size())));
}

} // namespace

int main() {
    const std::string usual = makeLevel3(product(19, 360, 230, false));
    measure("16 levels, 360 x 230", usual, kAimASecond);
    measure("digital, 360 x 460", makeLevel3(product(94, 360, 460, true)), kAimASecond);
    const std::string sharpest = makeLevel3(product(153, 720, 1840, true));
    measure("digital, 720 x 1840", sharpest);
    measureSharp("digital, 720 x 1840", sharpest);
    measureProgram(usual);
    if (qEnvironmentVariableIsSet("RAINCAST_TEST_DATA")) {
        measureReal();
    }
    for (const Product as : kAllProducts) {
        measureSample(as);
        measureSharpSample(as);
    }
    measureSampleSite();
    return 0;
}
