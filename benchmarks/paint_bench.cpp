// SPDX-License-Identifier: MIT
// What drawing the full stack costs (fill, layers, blit), at the sizes of handhelds to large
// screens and at several zooms, against a memcpy of the same buffer, or the unpacking of a frame
// that is kept packed; and what marks, and all that the picture is read by, add to it.
#include "drawing/layer_stack.h"
#include "geo/geo_reference.h"
#include "map/map_overlays.h"
#include "map/mark_manager.h"
#include "page/item_placement.h"
#include "reading/radar_reading.h"
#include "reading/reading_setting.h"
#include "sharp/detail.h"
#include "sharp/sharp_picture.h"
#include "support/figure.h"

#include <QGuiApplication>
#include <QPainter>
#include <QTemporaryDir>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace raincast;

const QSize kImage(600, 550);
constexpr int kFrames = 6;
constexpr int kPairs = 60; // and more for small pages, which take moments
constexpr double kAimOfStep = 3;
constexpr double kAimOfPan = 3;
constexpr double kAimOfReading = 1.3;

int pairsFor(QSize size) {
    constexpr int kPixels = 40'000'000;
    return std::max(kPairs, kPixels / (size.width() * size.height()));
}

std::string placeOf(QSize size, int zoom) {
    return std::to_string(size.width()) + "x" + std::to_string(size.height()) + " at zoom " +
           std::to_string(zoom);
}

Bitmap ground(int detail) {
    auto image = std::make_shared<QImage>(kImage * detail, QImage::Format_RGB32);
    for (int row = 0; row < image->height(); ++row) {
        for (int column = 0; column < image->width(); ++column) {
            image->setPixel(column, row, qRgb(column % 200, row % 200, 90));
        }
    }
    return image;
}

/// Rain in cells, a tenth of the image. In a sharp one they are as small in pixels.
QImage frame(int number, int detail) {
    QImage image(kImage * detail, QImage::Format_Indexed8);
    QList<QRgb> table(256, kTransparentWhite);
    for (int i = 1; i < 16; ++i) {
        table[i] = qRgb(i * 16, 255 - i * 16, 0);
    }
    image.setColorTable(table);
    image.fill(0);
    for (int row = 0; row < image.height(); ++row) {
        for (int column = 0; column < image.width(); ++column) {
            const int cell = (column / 25 * 31 + row / 25 * 17 + number) % 97;
            if (cell < 10) {
                image.setPixel(column, row, static_cast<uint>(1 + cell));
            }
        }
    }
    return image;
}

/// As small as the viewer keeps frames of the most detail.
QByteArray packedPixels(const QImage& image) {
    return qCompress(image.constBits(), image.sizeInBytes(), 1);
}

/// Lines a county apart.
Bitmap overlay(int detail) {
    auto image = std::make_shared<QImage>(kImage * detail, QImage::Format_RGB32);
    image->fill(kTransparentWhite);
    for (int row = 0; row < image->height(); ++row) {
        for (int column = 0; column < image->width(); ++column) {
            if (column % 40 == 0 || row % 40 == 0) {
                image->setPixel(column, row, 0xFF404040);
            }
        }
    }
    return image;
}

/// A page: its off-screen buffer and the screen that it is copied to.
class Page {
public:
    explicit Page(QSize size)
        : m_buffer(size, QImage::Format_RGB32), m_screen(size, QImage::Format_RGB32),
          m_plain(static_cast<std::size_t>(m_buffer.sizeInBytes())) {}

    void paint(
        LayerStack& stack, const ViewTransform& view, MapOverlays* overlays = nullptr,
        const std::function<void(QPainter&)>& above = {}
    ) {
        {
            QPainter painter(&m_buffer);
            // As the page does: what the item covers is not filled before.
            for (const QRect& open :
                 QRegion(m_buffer.rect())
                     .subtracted(LayerStack::imageArea(m_buffer.rect(), view, kImage))) {
                painter.fillRect(open, Qt::white);
            }
            stack.draw(painter, m_buffer.rect(), view);
            if (overlays != nullptr) {
                overlays->draw(painter, view, {0, 0, m_buffer.width(), m_buffer.height()});
            }
            if (above) {
                above(painter);
            }
        }
        QPainter(&m_screen).drawImage(0, 0, m_buffer);
    }
    void copy() { std::memcpy(m_plain.data(), m_buffer.constBits(), m_plain.size()); }

private:
    QImage m_buffer;
    QImage m_screen;
    std::vector<uchar> m_plain;
};

void measure(QSize size, int zoom, int detail = 1) {
    LayerStack::Layers layers{kImage, {ground(detail), detail}, nullptr, {overlay(detail), detail}};
    std::vector<SharpPicture> frames; // packed as the viewer has them
    for (int i = 0; i < kFrames; ++i) {
        frames.emplace_back(frame(i, detail), detail, detail == kMostDetail);
    }
    layers.echoes = frames[0].unpacked();
    LayerStack stack;
    stack.setLayers(layers);
    ViewTransform view(zoom, {0, 0});
    view.placeOrigin({size.width() / 2, size.height() / 2}, {300, 275});
    Page page(size);
    const auto copy = [&page] { page.copy(); };
    int next = 0;
    const auto step = [&] {
        layers.echoes = frames[static_cast<std::size_t>(next++ % kFrames)].unpacked();
        stack.setLayers(layers);
        page.paint(stack, view);
    };
    // Everything a pan shows has been shown before.
    const auto pan = [&] {
        const int offset = next++ % 8;
        view.placeOrigin({size.width() / 2, size.height() / 2}, {300 + 4 * offset, 275});
        page.paint(stack, view);
    };
    const std::string where = placeOf(size, zoom) + (detail > 1 ? ", sharp" : "");
    for (int i = 0; i < kFrames; ++i) {
        step();
    }
    const int pairs = pairsFor(size);
    if (detail == kMostDetail) {
        const QByteArray packed = packedPixels(frame(0, detail));
        const auto unpack = [&packed] { static_cast<void>(qUncompress(packed)); };
        print(Figure::of(
            processorRatioOf(kPairs, step, unpack), "Step of a loop, " + where,
            "unpacking the frame"
        ));
    } else {
        print(Figure::of(
                  processorRatioOf(pairs, step, copy), "Step of a loop, " + where,
                  "memcpy of the same pixels"
        )
                  .withAim(AimOf::ratio, kAimOfStep));
    }
    for (int i = 0; i < 8; ++i) {
        pan();
    }
    print(
        Figure::of(processorRatioOf(pairs, pan, copy), "Pan, " + where, "memcpy of the same pixels")
            .withAim(AimOf::ratio, kAimOfPan)
    );
}

/// The image's pixels are a hundredth of a degree; pixel (0, 0) lies at 41 N, 105 W.
GeoReference placement() {
    const QTemporaryDir folder;
    const std::string file = folder.filePath(QStringLiteral("image.gfw")).toStdString();
    std::ofstream(file) << "0.01\n0\n0\n-0.01\n-105.0\n41.0\n";
    GeoReference reference;
    reference.loadWorldFile(file, kImage.width(), kImage.height());
    return reference;
}

/// Marks in rows, a pixel apart from each other, from a latitude on northwards.
void addMarks(CMarkManager& marks, int count, double latitude) {
    for (int i = 0; i < count; ++i) {
        const int row = i / 100;
        marks.add(
            {latitude + row / 100.0, -105 + i % 100 / 100.0}, QStringLiteral("Mark %1").arg(i)
        );
    }
}

/// All that a picture is read by, shown at once: scale, rings, readout and a way that is measured.
void measureReading(QSize size, int zoom) {
    LayerStack::Layers layers{kImage, ground(1), nullptr, overlay(1)};
    std::vector<Bitmap> frames;
    for (int i = 0; i < kFrames; ++i) {
        frames.push_back(std::make_shared<QImage>(frame(i, 1)));
    }
    LayerStack stack;
    ViewTransform view(zoom, {0, 0});
    Page page(size);
    const GeoReference reference = placement();
    RadarSight sight(MapSight{QRect({}, size), view, reference});
    sight.placed = true;
    sight.hasPicture = true;
    sight.width = size.width();
    sight.radar = reference.pixelToGeo({299.5, 274.5});
    ReadingSetting::showScale(true);
    ReadingSetting::showRings(ReadingSetting::kRingsRoundRadar);
    RadarReading reading;
    reading.measureFrom(sight.radar);
    int next = 0;
    const auto paint = [&](int pixels, bool read) {
        const int turn = next++; // neither of the two finds what the other one has just used
        layers.echoes = frames[static_cast<std::size_t>(pixels == 0 ? turn % kFrames : 0)];
        stack.setLayers(layers);
        view.placeOrigin({size.width() / 2, size.height() / 2}, {300 + pixels * (turn % 8), 275});
        sight.map.view = view;
        sight.frame = layers.echoes;
        static_cast<void>(reading.pointerRested({size.width() / 3, size.height() / 3}));
        page.paint(stack, view, nullptr, [&](QPainter& painter) {
            if (read) {
                reading.draw(painter, sight);
            }
        });
    };
    for (const auto& [what, pixels] : {std::pair("Step of a loop", 0), {"Pan", 4}}) {
        for (int i = 0; i < 4 * kFrames; ++i) {
            paint(pixels, i % 2 == 0);
        }
        const Ratio ratio = processorRatioOf(
            pairsFor(size), [&, pixels = pixels] { paint(pixels, true); },
            [&, pixels = pixels] { paint(pixels, false); }
        );
        print(
            Figure::of(ratio, what + (" with all to read it by, " + placeOf(size, zoom)), "without")
                .withAim(AimOf::ratio, kAimOfReading)
        );
    }
}

struct Marks {
    const char* what;
    QSize size; ///< of the page
    int count;
    double latitude;
    int zoom;
    int step; ///< by which the view moves before each repaint
    double aim;
};

constexpr Marks kMarks[] = {
    {"Repaint with 10000 marks out of view", {240, 320}, 10000, 60, 0, 0, 2},
    {"Repaint with 10000 marks out of view", {1920, 1080}, 10000, 60, 0, 0, 2},
    {"Move with 10000 marks out of view", {240, 320}, 10000, 60, 0, 4, 10},
    {"Move with 10000 marks out of view", {1920, 1080}, 10000, 60, 0, 4, 2},
    {"Repaint with 10000 marks in view", {240, 320}, 10000, 38, 2, 0, 3},
    {"Repaint with 1000 named marks in view", {240, 320}, 1000, 40, 0, 0, 3},
};

void measure(const Marks& marks) {
    LayerStack stack;
    stack.setLayers({kImage, ground(1), std::make_shared<QImage>(frame(0, 1)), overlay(1)});
    Page page(marks.size);
    MapOverlays without; // never laid out: it knows none
    MapOverlays with;
    CMarkManager manager;
    addMarks(manager, marks.count, marks.latitude);
    with.layoutAll(placement());
    int moves = 0;
    const auto repaint = [&](MapOverlays& overlays) {
        const ViewTransform view(marks.zoom, {marks.step * (++moves / 2 % 8), 0});
        page.paint(stack, view, &overlays);
    };
    const Ratio ratio = processorRatioOf(
        kPairs, [&] { repaint(with); }, [&] { repaint(without); }
    );
    print(Figure::of(
              ratio, std::string(marks.what) + ", " + placeOf(marks.size, marks.zoom), "without"
    )
              .withAim(AimOf::ratio, marks.aim));
}

/// The sizes of handhelds to large screens.
const std::vector<std::pair<QSize, std::vector<int>>> kScreens{
    {{240, 320}, {-2, 0, 2}}, {{800, 700}, {0}}, {{1920, 1080}, {-2, 0, 2}}, {{3840, 2160}, {0}}};

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen"); // names are text, which needs an application
    const QGuiApplication application(argc, argv);
    for (const Marks& marks : kMarks) {
        measure(marks);
    }
    for (const auto& [size, zooms] : kScreens) {
        for (const int zoom : zooms) {
            measure(size, zoom);
        }
        measureReading(size, 0);
        if (wantedDetail(ViewTransform(-1, {}), size) > 1) {
            measure(size, -1, 2);
            measure(size, -2, kMostDetail);
        }
    }
    return 0;
}
