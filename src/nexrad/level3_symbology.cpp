// SPDX-License-Identifier: MIT
#include "nexrad/level3_symbology.h"

#include "nexrad/level3_cursor.h"

#include <algorithm>
#include <array>
#include <string>

namespace raincast {

namespace {

// No product has more.
constexpr std::uint32_t kMostRadials = 800;
constexpr std::uint32_t kMostBins = 2000;
constexpr std::uint32_t kMostRasterRows = 1000;
constexpr std::uint32_t kMostLayers = 18;
constexpr std::uint32_t kTenthsOfCircle = 3600;
constexpr qsizetype kLongestNote = 200;

/// A halfword that must lie within limits.
std::uint32_t
count(Level3Cursor& cursor, const char* field, std::uint32_t least, std::uint32_t most) {
    const std::uint32_t value = cursor.u16(field);
    if (cursor.ok() && (value < least || value > most)) {
        cursor.fail(
            field, 2,
            std::to_string(value) + ", not " + std::to_string(least) + " to " + std::to_string(most)
        );
        return 0;
    }
    return value;
}

/// Run-length coded cells: a byte is a run's length (high four bits) and level. They must give
/// exactly `columns` cells, or as many as the first row has when that is 0.
void readRuns(Level3Cursor& cursor, const std::string& row, std::size_t bytes, PolarScan& scan) {
    const std::size_t begin = scan.cells.size();
    for (const char byte : cursor.bytes(row, bytes)) {
        const auto run = static_cast<std::uint8_t>(byte);
        scan.cells.insert(scan.cells.end(), run >> 4, run & 15);
    }
    const std::size_t found = scan.cells.size() - begin;
    if (scan.columns == 0 && found <= kMostBins) {
        scan.columns = static_cast<int>(found);
    }
    if (cursor.ok() && found != static_cast<std::size_t>(scan.columns)) {
        const std::string wanted = std::to_string(scan.columns);
        cursor.fail(row, bytes, std::to_string(found) + " cells long instead of " + wanted);
    }
}

/// One byte a cell. Rows of an odd number of cells may be filled up to a halfword.
void readBytes(Level3Cursor& cursor, const std::string& row, std::size_t bytes, PolarScan& scan) {
    const QByteArrayView cells = cursor.bytes(row, bytes);
    const auto columns = static_cast<std::size_t>(scan.columns);
    if (cursor.ok() && (bytes < columns || bytes > columns + 1)) {
        cursor.fail(
            row, bytes, std::to_string(bytes) + " cells long instead of " + std::to_string(columns)
        );
        return;
    }
    scan.cells.insert(
        scan.cells.end(), cells.begin(),
        cells.begin() + std::min(cells.size(), static_cast<qsizetype>(columns))
    );
}

RadialSpan readSpan(Level3Cursor& cursor) {
    const std::uint32_t start = count(cursor, "a radial's start angle", 0, kTenthsOfCircle);
    const std::uint32_t width = count(cursor, "a radial's width", 1, kTenthsOfCircle);
    return {static_cast<int>(start % kTenthsOfCircle), static_cast<int>(width)};
}

/// AF1F and 16: the same head, then for each radial its length, start angle, width and cells.
void readRadials(Level3Cursor& cursor, bool runLength, PolarScan& scan) {
    const std::uint32_t first = count(cursor, "the index of the first bin", 0, kMostBins);
    scan.columns = static_cast<int>(count(cursor, "the number of bins", 1, kMostBins));
    cursor.skip("the picture's centre and scale", 6);
    const std::uint32_t radials = count(cursor, "the number of radials", 1, kMostRadials);
    scan.firstKm = first * scan.cellKm;
    for (std::uint32_t i = 0; i < radials && cursor.ok(); ++i) {
        const std::string name = "radial " + std::to_string(i + 1);
        const std::size_t length = cursor.u16("a radial's length");
        scan.radials.push_back(readSpan(cursor));
        if (runLength) {
            readRuns(cursor, name, 2 * length, scan);
        } else {
            readBytes(cursor, name, length, scan);
        }
    }
    scan.rows = static_cast<int>(radials);
}

/// BA07: rows from north to south, as many cells each as the first one has.
void readRaster(Level3Cursor& cursor, PolarScan& scan) {
    cursor.skip("the raster's flags, place and scale", 16);
    const std::uint32_t rows = count(cursor, "the number of rows", 1, kMostRasterRows);
    cursor.expect16("the raster's packing", 2);
    scan.layout = CellLayout::raster;
    for (std::uint32_t i = 0; i < rows && cursor.ok(); ++i) {
        const std::size_t length = cursor.u16("a row's length");
        readRuns(cursor, "row " + std::to_string(i + 1), length, scan);
    }
    scan.rows = static_cast<int>(rows);
}

/// Text; the first one becomes the note. `coloured`: a colour stands before the place.
void readText(Level3Cursor& cursor, bool coloured, PolarScan& scan) {
    const std::size_t head = coloured ? 6 : 4;
    const std::size_t length = cursor.u16("a text's length");
    if (length < head) {
        cursor.fail("a text's length", 2, std::to_string(length));
    }
    cursor.skip("a text's place", head);
    const QByteArrayView bytes = cursor.bytes("a text", length - std::min(head, length));
    std::string text =
        bytes.first(std::min(bytes.size(), kLongestNote)).toByteArray().toStdString();
    text.erase(text.find_last_not_of(' ') + 1);
    if (scan.note.empty() && cursor.ok()) {
        std::replace_if(
            text.begin(), text.end(), [](char c) { return c < ' ' || c > '~'; }, '?'
        );
        scan.note = text;
    }
}

struct PacketKind {
    std::uint32_t code;
    void (*read)(Level3Cursor& cursor, PolarScan& scan);
};

// Other packets (symbols, vectors, tables) do not go into a picture of cells.
constexpr std::array<PacketKind, 6> kPackets = {{
    {1, [](Level3Cursor& cursor, PolarScan& scan) { readText(cursor, false, scan); }},
    {8, [](Level3Cursor& cursor, PolarScan& scan) { readText(cursor, true, scan); }},
    {16, [](Level3Cursor& cursor, PolarScan& scan) { readRadials(cursor, false, scan); }},
    {0xAF1F, [](Level3Cursor& cursor, PolarScan& scan) { readRadials(cursor, true, scan); }},
    {0xBA07, readRaster},
    {0xBA0F, readRaster},
}};

/// Reads a layer's packets up to its picture, its end or a packet of another kind.
void readLayer(Level3Cursor& cursor, std::size_t length, PolarScan& scan) {
    if (length > cursor.left()) {
        cursor.skip("a layer", length); // reports that it is cut off
        return;
    }
    const std::size_t end = cursor.left() - length;
    while (cursor.ok() && scan.rows == 0 && cursor.left() >= end + 2) {
        const std::uint32_t code = cursor.u16("a packet's code");
        const auto* packet = std::find_if(kPackets.begin(), kPackets.end(), [&](const auto& kind) {
            return kind.code == code;
        });
        if (packet == kPackets.end()) {
            break;
        }
        packet->read(cursor, scan);
    }
    if (scan.rows == 0 && cursor.left() > end) {
        cursor.skip("a layer", cursor.left() - end);
    }
}

} // namespace

void readLevel3Symbology(Level3Cursor& cursor, PolarScan& scan) {
    cursor.expect16("the symbology's divider", 0xFFFF);
    cursor.expect16("the symbology's block number", 1);
    cursor.skip("the symbology's length", 4);
    const std::uint32_t layers = count(cursor, "the number of layers", 1, kMostLayers);
    for (std::uint32_t i = 0; i < layers && cursor.ok() && scan.rows == 0; ++i) {
        cursor.expect16("a layer's divider", 0xFFFF);
        const std::size_t length = cursor.u32("a layer's length");
        readLayer(cursor, length, scan);
    }
}

} // namespace raincast
