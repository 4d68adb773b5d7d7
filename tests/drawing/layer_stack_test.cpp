// SPDX-License-Identifier: MIT
// Compares what is drawn with the same drawn pixel by pixel, without any of the short cuts.
#include "drawing/layer_stack.h"
#include "drawing/shrink.h"

#include <QPainter>
#include <QRandomGenerator>

#include <gtest/gtest.h>

#include <optional>

namespace raincast {
namespace {

constexpr QRgb kPage = 0xFF123456;
constexpr QRgb kBlack = 0xFF000000;
const QSize kImage(70, 50);

Bitmap ground() {
    auto image = std::make_shared<QImage>(kImage, QImage::Format_RGB32);
    for (int row = 0; row < kImage.height(); ++row) {
        for (int column = 0; column < kImage.width(); ++column) {
            image->setPixel(column, row, qRgb(column * 3, row * 5, 77));
        }
    }
    return image;
}

/// Mostly transparent, with runs of colours.
Bitmap echoes(quint32 seed, bool oneByte = true) {
    QRandomGenerator random(seed);
    auto image = std::make_shared<QImage>(kImage, QImage::Format_Indexed8);
    QList<QRgb> table(256, kTransparentWhite);
    table[1] = 0xFF00FF00;
    table[2] = 0xFFFF0000;
    table[3] = 0xFFFDFDFD;
    image->setColorTable(table);
    image->fill(0);
    for (int i = 0; i < 60; ++i) {
        const int row = random.bounded(kImage.height());
        const int first = random.bounded(kImage.width());
        const int end = std::min(kImage.width(), first + random.bounded(1, 20));
        for (int column = first; column < end; ++column) {
            image->setPixel(column, row, static_cast<uint>(1 + i % 3));
        }
    }
    if (!oneByte) {
        image->convertTo(QImage::Format_RGB32);
    }
    return image;
}

Bitmap overlay() {
    auto image = std::make_shared<QImage>(kImage, QImage::Format_RGB32);
    image->fill(kTransparentWhite);
    for (int column = 0; column < kImage.width(); ++column) {
        image->setPixel(column, column % kImage.height(), 0xFF0000FF);
        image->setPixel(column, 20, 0xFF808000);
    }
    return image;
}

QRgb over(QRgb premultiplied, QRgb under) {
    const int rest = 255 - qAlpha(premultiplied);
    const auto channel = [rest](int above, int below) {
        return above + (below * rest + 127) / 255;
    };
    return qRgb(
        channel(qRed(premultiplied), qRed(under)), channel(qGreen(premultiplied), qGreen(under)),
        channel(qBlue(premultiplied), qBlue(under))
    );
}

/// The layers at a scale.
struct Shrunken {
    Shrunken(const LayerStack::Layers& layers, int shift) {
        opaque = layers.ground || layers.overlay;
        ground = layers.ground ? shrinkGround(*layers.ground, shift) : QImage();
        echoes = layers.echoes ? shrinkEchoes(*layers.echoes, shift) : QImage();
        lines = layers.overlay ? shrinkLines(*layers.overlay, shift) : QImage();
    }
    /// The colour of a pixel; kPage where nothing is.
    [[nodiscard]] QRgb pixel(int column, int row) const {
        QRgb colour = opaque ? kBlack : kPage;
        if (!ground.isNull()) {
            colour = ground.pixel(column, row);
        }
        const QRgb echo = echoes.isNull() ? 0 : echoes.pixel(column, row);
        if (qAlpha(echo) != 0 && echo != kTransparentWhite) {
            colour = echo;
        }
        return lines.isNull() ? colour : over(lines.pixel(column, row), colour);
    }

    bool opaque;
    QImage ground;
    QImage echoes;
    QImage lines;
};

/// What a page of that size looks like.
QImage expectedPage(
    const LayerStack::Layers& layers, QSize page, const QRect& area, const ViewTransform& view
) {
    QImage result(page, QImage::Format_RGB32);
    result.fill(kPage);
    const int shift = std::max(view.zoom(), 0);
    const Shrunken shrunken(layers, shift);
    const QRect blocks(
        0, 0, ((kImage.width() - 1) >> shift) + 1, ((kImage.height() - 1) >> shift) + 1
    );
    const QRect visible = area.intersected(result.rect());
    for (int y = visible.top(); y <= visible.bottom(); ++y) {
        for (int x = visible.left(); x <= visible.right(); ++x) {
            const ImagePixel pixel = view.toImage({x, y});
            const QPoint block(pixel.column >> shift, pixel.row >> shift);
            if (blocks.contains(block)) {
                result.setPixel(x, y, shrunken.pixel(block.x(), block.y()));
            }
        }
    }
    return result;
}

QImage drawn(LayerStack& stack, QSize page, const QRect& area, const ViewTransform& view) {
    QImage result(page, QImage::Format_RGB32);
    result.fill(kPage);
    QPainter painter(&result);
    stack.draw(painter, area, view);
    return result;
}

struct Row {
    const char* what;
    LayerStack::Layers layers;
};

std::vector<Row> stacks() {
    return {
        {"all", {kImage, ground(), echoes(1), overlay()}},
        {"echoes of 32 bits", {kImage, ground(), echoes(1, false), overlay()}},
        {"no ground", {kImage, nullptr, echoes(2), overlay()}},
        {"no lines", {kImage, ground(), echoes(3), nullptr}},
        {"no echoes", {kImage, ground(), nullptr, overlay()}},
        {"echoes only", {kImage, nullptr, echoes(4), nullptr}},
        {"nothing", {kImage, nullptr, nullptr, nullptr}},
    };
}

TEST(LayerStackTest, DrawsEveryZoomAndPlaceAsIfPixelByPixel) {
    const QSize page(60, 48);
    const QRect areas[] = {QRect(QPoint(0, 0), page), QRect(7, 5, 33, 29), QRect(-4, -4, 90, 90)};
    for (const Row& row : stacks()) {
        LayerStack stack;
        stack.setLayers(row.layers);
        for (int zoom = ViewTransform::kLeastZoom; zoom <= ViewTransform::kMostZoom; ++zoom) {
            for (const ImagePixel origin :
                 {ImagePixel{0, 0}, ImagePixel{-13, 8}, ImagePixel{31, 17}}) {
                for (const QRect& area : areas) {
                    ViewTransform view(zoom, {0, 0});
                    view.placeOrigin({0, 0}, origin);
                    EXPECT_EQ(
                        drawn(stack, page, area, view), expectedPage(row.layers, page, area, view)
                    ) << row.what
                      << ", zoom " << zoom << ", origin " << origin.column;
                }
            }
        }
    }
}

/// Its own pattern in every pixel, `detail` times as fine.
Bitmap fineGround(int detail) {
    auto image = std::make_shared<QImage>(kImage * detail, QImage::Format_RGB32);
    for (int row = 0; row < image->height(); ++row) {
        for (int column = 0; column < image->width(); ++column) {
            image->setPixel(column, row, qRgb(column, row, 40 * detail));
        }
    }
    return image;
}

/// Every third pixel of a row is opaque.
Bitmap finePattern(int detail, uint colour, int offset) {
    auto image = std::make_shared<QImage>(kImage * detail, QImage::Format_Indexed8);
    QList<QRgb> table(256, kTransparentWhite);
    table[1] = 0xFF00FF00;
    table[2] = 0xFFFF0000;
    table[3] = 0xFF0000FF;
    image->setColorTable(table);
    image->fill(0);
    for (int row = 0; row < image->height(); ++row) {
        for (int column = (row + offset) % 5; column < image->width(); column += 3) {
            image->setPixel(column, row, colour);
        }
    }
    return image;
}

/// What a layer has at a page pixel whose place is counted in parts of an image pixel; nothing
/// where it is transparent.
std::optional<QRgb> fineColour(const DetailedBitmap& layer, QPoint part, int parts) {
    const int each = parts / layer.detail;
    const QPoint pixel(part.x() / each, part.y() / each);
    if (!layer || !layer->valid(pixel) || layer->pixel(pixel) == kTransparentWhite) {
        return std::nullopt;
    }
    return layer->pixel(pixel);
}

QImage expectedFine(const LayerStack::Layers& layers, QSize page, int zoom, ImagePixel origin) {
    const int side = 1 << -zoom;
    const QRect image(QPoint(0, 0), kImage * side);
    QImage result(page, QImage::Format_RGB32);
    for (int y = 0; y < page.height(); ++y) {
        for (int x = 0; x < page.width(); ++x) {
            const QPoint part(x + origin.column * side, y + origin.row * side);
            QRgb colour = image.contains(part) ? kBlack : kPage;
            for (const auto* layer :
                 {&layers.ground, &layers.echoes, &layers.warnings, &layers.overlay}) {
                const bool inside = image.contains(part);
                colour = (inside ? fineColour(*layer, part, side) : std::nullopt).value_or(colour);
            }
            result.setPixel(x, y, colour);
        }
    }
    return result;
}

TEST(LayerStackTest, EachLayerIsAsFineAsItIs) {
    const QSize page(120, 90);
    for (const int zoom : {-1, -2}) {
        for (int which = 0; which < 81; ++which) {
            const auto detailOf = [which, zoom](int place) {
                return std::min(1 << (which / place % 3), 1 << -zoom);
            };
            const LayerStack::Layers layers{
                kImage,
                {fineGround(detailOf(1)), detailOf(1)},
                {finePattern(detailOf(3), 1, 0), detailOf(3)},
                {finePattern(detailOf(9), 2, 1), detailOf(9)},
                {finePattern(detailOf(27), 3, 2), detailOf(27)}};
            for (const ImagePixel origin : {ImagePixel{0, 0}, ImagePixel{-9, 31}}) {
                LayerStack stack;
                stack.setLayers(layers);
                EXPECT_EQ(
                    drawn(stack, page, QRect(QPoint(0, 0), page), ViewTransform(zoom, origin)),
                    expectedFine(layers, page, zoom, origin)
                ) << which
                  << ", zoom " << zoom;
            }
        }
    }
}

TEST(LayerStackTest, AFinerFrameTakesThePlaceOfABlownUpOne) {
    const QRect page(0, 0, 100, 80);
    const ViewTransform view(-2, {3, 4});
    LayerStack stack;
    LayerStack::Layers layers{kImage, ground(), echoes(1), overlay()};
    layers.leastDetail = 4;
    for (const int detail : {1, 4, 2, 1}) {
        layers.echoes = {finePattern(detail, 1, 0), detail};
        stack.setLayers(layers);
        LayerStack fresh;
        fresh.setLayers(layers);
        EXPECT_EQ(drawn(stack, page.size(), page, view), drawn(fresh, page.size(), page, view));
        EXPECT_EQ(
            drawn(stack, page.size(), page, view),
            expectedFine(layers, page.size(), -2, view.origin())
        ) << detail;
    }
}

TEST(LayerStackTest, EchoesThatAreMadeAnewAreKnownByTheirKey) {
    const QRect page(0, 0, 100, 80);
    const ViewTransform view(-2, {3, 4});
    LayerStack stack;
    LayerStack::Layers layers{kImage, ground(), nullptr, overlay()};
    for (const int offset : {0, 1, 0, 2, 1}) {
        layers.echoes = {finePattern(4, 1, offset), 4};
        layers.echoesKey = -1 - offset;
        stack.setLayers(layers);
        EXPECT_EQ(
            drawn(stack, page.size(), page, view),
            expectedFine(layers, page.size(), -2, view.origin())
        ) << offset;
    }
}

TEST(LayerStackTest, FineLayersAreReleasedOthersStay) {
    const QRect page(QPoint(0, 0), kImage);
    const ViewTransform view(-1, {});
    for (const int detail : {1, 2}) {
        const LayerStack::Layers layers{kImage, {fineGround(detail), detail}, echoes(1), overlay()};
        LayerStack stack;
        stack.setLayers(layers);
        const QImage before = drawn(stack, kImage, page, view);
        const auto users = layers.ground.bitmap.use_count();
        stack.releaseFine();
        EXPECT_EQ(layers.ground.bitmap.use_count(), detail > 1 ? users - 1 : users);
        stack.setLayers(layers);
        EXPECT_EQ(drawn(stack, kImage, page, view), before);
    }
}

TEST(LayerStackTest, ASharpEchoOf32BitsIsDrawnToo) {
    LayerStack::Layers layers{kImage, ground(), {finePattern(2, 1, 0), 2}, nullptr};
    layers.echoes->convertTo(QImage::Format_RGB32);
    for (const int leastDetail : {1, 4}) {
        layers.leastDetail = leastDetail;
        LayerStack stack;
        stack.setLayers(layers);
        EXPECT_EQ(
            drawn(stack, {99, 77}, QRect(0, 0, 99, 77), ViewTransform(-2, {1, 1})),
            expectedFine(layers, {99, 77}, -2, {1, 1})
        );
    }
}

TEST(LayerStackTest, AnotherFrameIsDrawn) {
    LayerStack stack;
    LayerStack::Layers layers{kImage, ground(), echoes(1), overlay()};
    for (const int zoom : {0, 2}) {
        const ViewTransform view(zoom, {0, 0});
        for (const quint32 frame : {1U, 2U, 3U, 1U}) {
            layers.echoes = echoes(frame);
            stack.setLayers(layers);
            EXPECT_EQ(
                drawn(stack, kImage, QRect(QPoint(0, 0), kImage), view),
                expectedPage(layers, kImage, QRect(QPoint(0, 0), kImage), view)
            );
        }
    }
}

TEST(LayerStackTest, WhatIsDrawnIntoAPictureShows) {
    LayerStack stack;
    const LayerStack::Layers layers{kImage, nullptr, echoes(1), nullptr};
    const ViewTransform view;
    stack.setLayers(layers);
    const QImage before = drawn(stack, kImage, QRect(QPoint(0, 0), kImage), view);
    layers.echoes->fill(2);
    stack.setLayers(layers);
    const QImage after = drawn(stack, kImage, QRect(QPoint(0, 0), kImage), view);
    EXPECT_NE(before, after);
    EXPECT_EQ(after.pixel(5, 5), 0xFFFF0000);
}

TEST(LayerStackTest, ALayerSmallerThanTheImageLeavesTheRest) {
    auto small = std::make_shared<QImage>(10, 10, QImage::Format_RGB32);
    small->fill(qRgb(1, 2, 3));
    LayerStack stack;
    stack.setLayers({kImage, small, nullptr, nullptr});
    const QImage page = drawn(stack, kImage, QRect(QPoint(0, 0), kImage), ViewTransform());
    EXPECT_EQ(page.pixel(9, 9), qRgb(1, 2, 3));
    EXPECT_EQ(page.pixel(10, 9), kBlack);
    EXPECT_EQ(page.pixel(9, 10), kBlack);
}

TEST(LayerStackTest, EveryKindOfPainterGetsTheSame) {
    const LayerStack::Layers layers{kImage, ground(), echoes(1), overlay()};
    const QSize page(90, 70);
    const QRect whole(QPoint(0, 0), page);
    const QRect clip(11, 13, 41, 29);
    for (const int zoom : {-2, -1, 0, 1}) {
        ViewTransform view(zoom, {0, 0});
        view.placeOrigin({45, 35}, {30, 20});
        LayerStack stack;
        stack.setLayers(layers);
        const QImage expected = expectedPage(layers, page, whole, view);
        EXPECT_EQ(drawn(stack, page, whole, view), expected) << zoom;
        // One that is drawn through, not into.
        QImage other(page, QImage::Format_ARGB32_Premultiplied);
        other.fill(kPage);
        {
            QPainter painter(&other);
            stack.draw(painter, whole, view);
        }
        EXPECT_EQ(other.convertToFormat(QImage::Format_RGB32), expected) << zoom;
        // One that may not draw everywhere.
        QImage clipped(page, QImage::Format_RGB32);
        clipped.fill(kPage);
        {
            QPainter painter(&clipped);
            painter.setClipRect(clip);
            stack.draw(painter, whole, view);
        }
        QImage expectedClipped(page, QImage::Format_RGB32);
        expectedClipped.fill(kPage);
        QPainter(&expectedClipped).drawImage(clip.topLeft(), expected, clip);
        EXPECT_EQ(clipped, expectedClipped) << zoom;
        // Somebody keeps a copy, which is to stay as it is.
        QImage shared(page, QImage::Format_RGB32);
        shared.fill(kPage);
        QPainter painter(&shared);
        const QImage copy = shared;
        stack.draw(painter, whole, view);
        painter.end();
        EXPECT_EQ(shared, expected) << zoom;
        EXPECT_EQ(copy.pixel(45, 35), kPage) << zoom;
    }
}

TEST(LayerStackTest, TheImagesAreaIsWhatIsDrawn) {
    const LayerStack::Layers layers{kImage, ground(), echoes(1), nullptr};
    const QSize page(200, 180);
    for (int zoom = ViewTransform::kLeastZoom; zoom <= ViewTransform::kMostZoom; ++zoom) {
        for (const QRect& area : {QRect(QPoint(0, 0), page), QRect(20, 30, 50, 40)}) {
            ViewTransform view(zoom, {0, 0});
            view.placeOrigin({60, 50}, {10, 30});
            LayerStack stack;
            stack.setLayers(layers);
            const QImage picture = drawn(stack, page, area, view);
            QRect changed;
            for (int y = 0; y < page.height(); ++y) {
                for (int x = 0; x < page.width(); ++x) {
                    changed |= picture.pixel(x, y) != kPage ? QRect(x, y, 1, 1) : QRect();
                }
            }
            EXPECT_EQ(LayerStack::imageArea(area, view, kImage), changed) << zoom;
        }
    }
    EXPECT_TRUE(LayerStack::imageArea(QRect(0, 0, 9, 9), ViewTransform(), QSize()).isEmpty());
}

TEST(LayerStackTest, FarAwayNothingIsDrawn) {
    LayerStack stack;
    stack.setLayers({kImage, ground(), echoes(1), overlay()});
    QImage page(kImage, QImage::Format_RGB32);
    page.fill(kPage);
    const QImage empty = page;
    for (const int zoom : {-2, 0, 4}) {
        for (const std::int32_t far : {INT32_MIN, -100000, 100000, INT32_MAX}) {
            const ViewTransform view(zoom, {far, far});
            EXPECT_EQ(drawn(stack, kImage, QRect(QPoint(0, 0), kImage), view), empty);
        }
    }
}

} // namespace
} // namespace raincast
