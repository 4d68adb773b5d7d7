// SPDX-License-Identifier: MIT
// Runs the program for a picture of a whole radar stack and compares it, pixel by pixel, with the
// published files as Qt reads them, laid over each other here.
#include "support/files.h"
#include "support/gif_maker.h"
#include "support/http_server.h"
#include "support/qt_app.h"
#include "support/temporary_home.h"

#include <QImage>
#include <QPainter>
#include <QProcess>

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <vector>

namespace raincast {
namespace {

constexpr int kDeadline = 60'000; // milliseconds
const QSize kImage(600, 550);
const QSize kWindow(640, 660);
const QPoint kImageCentre(300, 275);
// Where the texts are, from the window's bottom.
constexpr int kTextHeight = 45;
constexpr int kScaleWidth = 60; // at the right edge

bool isOpaque(QRgb colour) {
    return qAlpha(colour) != 0 && colour != 0xFFFFFFFF;
}

class PictureTest : public test::GuiTest {
protected:
    /// The program's picture of MUX from a served tree.
    QImage programsPicture(const QString& tree) {
        HttpServer server;
        server.serveFolder(tree);
        QProcess program;
        program.setProcessEnvironment(home.environment());
        program.setWorkingDirectory(home.root());
        program.start(
            QStringLiteral(RAINCAST_PROGRAM),
            {"--site", "MUX", "--radar-server", server.host(), "--basemap-server", server.host(),
             "--geometry", "640x660", "--screenshot", "picture.png"}
        );
        EXPECT_TRUE(program.waitForFinished(kDeadline));
        EXPECT_EQ(program.exitCode(), 0) << program.readAllStandardError().toStdString();
        const QImage picture(home.path("picture.png"));
        EXPECT_EQ(picture.size(), kWindow);
        return picture.convertToFormat(QImage::Format_RGB32);
    }

    /// The layers, by their paths and the lowest first, over each other; how many pixels each of
    /// them is seen in is checked.
    static QImage laidOver(const QString& tree, const std::vector<const char*>& layers) {
        QImage stack(kImage, QImage::Format_RGB32);
        std::vector<std::size_t> top(static_cast<std::size_t>(kImage.width() * kImage.height()));
        for (std::size_t i = 0; i < layers.size(); ++i) {
            const QImage layer =
                QImage(tree + QLatin1String(layers[i])).convertToFormat(QImage::Format_ARGB32);
            EXPECT_EQ(layer.size(), kImage) << layers[i];
            for (int pixel = 0; pixel < kImage.width() * kImage.height(); ++pixel) {
                const QPoint at(pixel % kImage.width(), pixel / kImage.width());
                const QRgb colour = layer.pixel(at);
                if (i == 0 || isOpaque(colour)) {
                    stack.setPixel(at, colour);
                    top[static_cast<std::size_t>(pixel)] = i;
                }
            }
        }
        for (std::size_t i = 0; i < layers.size(); ++i) {
            EXPECT_GT(std::count(top.begin(), top.end(), i), 50) << layers[i];
        }
        return stack;
    }

    /// How many pixels of the page differ, were it to begin below a menu of that height.
    static int differences(const QImage& picture, const QImage& stack, int menu) {
        QImage expected(picture.size(), QImage::Format_RGB32);
        expected.fill(Qt::white);
        const QPoint centre(kWindow.width() / 2, (kWindow.height() - menu) / 2);
        QPainter(&expected).drawImage(centre - kImageCentre + QPoint(0, menu), stack);
        int count = 0;
        for (int row = menu; row < picture.height() - kTextHeight; ++row) {
            for (int column = 0; column < picture.width() - kScaleWidth; ++column) {
                count += picture.pixel(column, row) != expected.pixel(column, row) ? 1 : 0;
            }
        }
        return count;
    }

    void expectSame(const QString& tree, const std::vector<const char*>& layers) {
        const QImage picture = programsPicture(tree);
        const QImage stack = laidOver(tree, layers);
        int least = std::numeric_limits<int>::max();
        for (int menu = 15; menu < 60 && least > 0; ++menu) {
            least = std::min(least, differences(picture, stack, menu));
        }
        EXPECT_EQ(least, 0);
    }

    test::TemporaryHome home;
};

/// A tree in which every rule of transparency has its pixels.
class SyntheticTree {
public:
    SyntheticTree() {
        const QString overlays = "/ridge/Overlays/";
        write(overlays + "Cities/Short/MUX_City_Short.gfw", "0.009\n0\n0\n-0.009\n-124.6\n39.6\n");
        writeTopo(overlays + "Topo/Short/MUX_Topo_Short.jpg");
        // Black is the transparent colour, as in most published overlays.
        write(overlays + "Rivers/Short/MUX_Rivers_Short.gif", stripes(0, 17, 0));
        write(overlays + "Highways/Short/MUX_Highways_Short.gif", stripes(0, 23, 1));
        write("/weather_radar/basemaps/MUX_City_Short.gif", stripes(0, 31, 2));
        // No transparent colour at all: only the white is.
        write("/weather_radar/basemaps/MUX_County_Short.gif", stripes(-1, 41, 3));
        const QString frame = "/ridge/RadarImg/N0R/MUX/MUX_20190519_0554_N0R.gif";
        write(
            frame,
            makeGif({
                .screen = kImage,
                .colours = {0xFFFFFFFF, 0xFFFDFDFD, 0xFF00FF00, 0xFFFF0000},
                .transparent = 0,
                .interlaced = true,
                .pixel = [](int x, int y) { return (x / 13 + y / 7) % 3 == 0 ? (x + y) % 4 : 0; },
            })
        );
        write(
            "/ridge/Warnings/Short/MUX_Warnings_0.gif",
            makeGif({
                .screen = kImage,
                .colours = {0xFF000000, 0xFFFFFF00, 0xFFFFFFFF, 0xFF202020},
                .transparent = 0,
                .pixel = [](int x, int y) { return x / 50 == y / 50 ? 1 + y % 3 : 0; },
            })
        );
    }
    [[nodiscard]] QString path() const { return m_folder.path(); }

private:
    void write(const QString& path, const QByteArray& bytes) {
        writeFile(m_folder.filePath(path.mid(1)), bytes);
    }
    void writeTopo(const QString& path) {
        QImage image(kImage, QImage::Format_RGB32);
        for (int y = 0; y < kImage.height(); ++y) {
            for (int x = 0; x < kImage.width(); ++x) {
                image.setPixel(x, y, qRgb(x % 200, y % 180, (x + y) % 150));
            }
        }
        write(path, "");
        EXPECT_TRUE(image.save(m_folder.filePath(path.mid(1)), "JPEG"));
    }
    /// Lines at a regular distance, in the layer's colour; between them transparent or,
    /// without a transparent index, white.
    static QByteArray stripes(int transparent, int distance, int colour) {
        const QRgb line = qRgb(40 * colour + 20, 200 - 50 * colour, 90 * colour % 256);
        const QRgb clear = transparent < 0 ? 0xFFFFFFFF : 0xFF000000;
        return makeGif({
            .screen = kImage,
            .colours = {clear, line, 0xFFFFFFFF, 0xFFFEFFFF},
            .transparent = transparent,
            .pixel = [=](int x, int y) { return x % distance == 0 ? 1 + y / 40 % 3 : 0; },
        });
    }

    QTemporaryDir m_folder;
};

TEST_F(PictureTest, EveryLayerLiesWhereItBelongs) {
    const SyntheticTree tree;
    expectSame(
        tree.path(),
        {"/ridge/Overlays/Topo/Short/MUX_Topo_Short.jpg",
         "/ridge/Overlays/Rivers/Short/MUX_Rivers_Short.gif",
         "/ridge/RadarImg/N0R/MUX/MUX_20190519_0554_N0R.gif",
         "/ridge/Warnings/Short/MUX_Warnings_0.gif", "/weather_radar/basemaps/MUX_County_Short.gif",
         "/ridge/Overlays/Highways/Short/MUX_Highways_Short.gif",
         "/weather_radar/basemaps/MUX_City_Short.gif"}
    );
}

using RealDataPictureTest = PictureTest;

TEST_F(RealDataPictureTest, EveryPublishedLayerLiesWhereItBelongs) {
    const QString tree = qEnvironmentVariable("RAINCAST_TEST_DATA") + QStringLiteral("/radar-tree");
    if (!QDir(tree).exists()) {
        GTEST_SKIP() << "no recorded images";
    }
    expectSame(
        tree, {"/ridge/Overlays/Topo/Short/MUX_Topo_Short.jpg",
               "/ridge/Overlays/Rivers/Short/MUX_Rivers_Short.gif",
               "/ridge/RadarImg/N0R/MUX/MUX_20190519_0554_N0R.gif",
               "/weather_radar/basemaps/MUX_County_Short.gif",
               "/ridge/Overlays/Highways/Short/MUX_Highways_Short.gif",
               "/weather_radar/basemaps/MUX_City_Short.gif"}
    );
}

} // namespace
} // namespace raincast
