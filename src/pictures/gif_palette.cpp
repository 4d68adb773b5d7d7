// SPDX-License-Identifier: MIT
#include "pictures/gif_palette.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <utility>

namespace raincast {

namespace {

constexpr std::size_t kMostColours = 256;
constexpr std::size_t kMostKept = 160; // of pictures with more colours than there are

struct CountedColour {
    QRgb colour;
    std::uint32_t count;
};
using Colours = std::vector<CountedColour>;
using Part = int (*)(QRgb colour);
constexpr Part kParts[] = {
    [](QRgb c) { return qRed(c); }, [](QRgb c) { return qGreen(c); },
    [](QRgb c) { return qBlue(c); }};

/// Colours that one colour is to stand for: part of a list.
struct Box {
    Colours::iterator begin;
    Colours::iterator end;
    Part widest = kParts[0];
    double weight = 0; ///< how much is lost if it is not divided
};

Box makeBox(Colours::iterator begin, Colours::iterator end) {
    Box box{begin, end};
    double pixels = 0;
    std::for_each(begin, end, [&pixels](const CountedColour& each) { pixels += each.count; });
    int widest = 0;
    for (const Part part : kParts) {
        const auto [least, most] = std::minmax_element(begin, end, [part](auto& a, auto& b) {
            return part(a.colour) < part(b.colour);
        });
        const int extent = part(most->colour) - part(least->colour);
        if (extent > widest) {
            widest = extent;
            box.widest = part;
        }
    }
    box.weight = pixels * widest * widest;
    return box;
}

/// Two boxes of about as many pixels each.
std::pair<Box, Box> divide(const Box& box) {
    std::sort(box.begin, box.end, [part = box.widest](const auto& a, const auto& b) {
        return part(a.colour) < part(b.colour);
    });
    std::uint64_t half = 0;
    std::for_each(box.begin, box.end, [&half](const CountedColour& each) { half += each.count; });
    half /= 2;
    auto middle = box.begin;
    for (std::uint64_t seen = 0; seen < half && middle != box.end; ++middle) {
        seen += middle->count;
    }
    middle = std::clamp(middle, box.begin + 1, box.end - 1);
    return {makeBox(box.begin, middle), makeBox(middle, box.end)};
}

QRgb meanOf(const Box& box) {
    std::array<double, 3> sums{};
    double pixels = 0;
    std::for_each(box.begin, box.end, [&](const CountedColour& each) {
        for (std::size_t i = 0; i < sums.size(); ++i) {
            sums[i] += static_cast<double>(kParts[i](each.colour)) * each.count;
        }
        pixels += each.count;
    });
    const auto part = [&](std::size_t i) { return qRound(sums[i] / pixels); };
    return qRgb(part(0), part(1), part(2));
}

} // namespace

void GifColours::add(const QImage& picture) {
    for (int row = 0; row < picture.height(); ++row) {
        const auto* const line = reinterpret_cast<const QRgb*>(picture.constScanLine(row));
        const auto* const end = line + picture.width();
        for (const QRgb* run = line; run != end;) { // most are longer than a pixel
            const auto* const next =
                std::find_if(run, end, [run](QRgb other) { return other != *run; });
            m_counts[*run | 0xFF00'0000] += static_cast<std::uint32_t>(next - run);
            run = next;
        }
    }
}

GifPalette::GifPalette(const GifColours& colours) {
    Counts counts = colours.m_counts;
    keepFrequent(counts);
    if (!counts.empty()) {
        shareRest(counts);
    }
    for (std::size_t i = m_colours.size(); i-- > 0;) {
        m_known[m_colours[i]] = static_cast<std::uint8_t>(i);
    }
    m_colours.resize(std::max<std::size_t>(m_colours.size(), 2), 0xFF00'0000);
}

void GifPalette::keepFrequent(Counts& counts) {
    Colours colours;
    for (const auto& [colour, count] : counts) {
        colours.push_back({colour, count});
    }
    const std::size_t kept = colours.size() <= kMostColours ? colours.size() : kMostKept;
    const auto end = colours.begin() + static_cast<std::ptrdiff_t>(kept);
    std::partial_sort(colours.begin(), end, colours.end(), [](const auto& a, const auto& b) {
        return std::pair(b.count, b.colour) < std::pair(a.count, a.colour);
    });
    std::for_each(colours.begin(), end, [&](const CountedColour& each) {
        m_colours.push_back(each.colour);
        counts.erase(each.colour);
    });
}

// Median cut: Heckbert, Color Image Quantization for Frame Buffer Display (1982).
void GifPalette::shareRest(const Counts& counts) {
    Colours colours;
    for (const auto& [colour, count] : counts) {
        colours.push_back({colour, count});
    }
    // In one order, whatever order the table has them in.
    std::sort(colours.begin(), colours.end(), [](const auto& a, const auto& b) {
        return a.colour < b.colour;
    });
    std::vector<Box> boxes{makeBox(colours.begin(), colours.end())};
    while (boxes.size() < kMostColours - kMostKept) {
        const auto heaviest =
            std::max_element(boxes.begin(), boxes.end(), [](const Box& a, const Box& b) {
                return a.weight < b.weight;
            });
        if (heaviest->weight <= 0) {
            break;
        }
        const auto [first, second] = divide(*heaviest);
        *heaviest = first;
        boxes.push_back(second);
    }
    std::transform(boxes.begin(), boxes.end(), std::back_inserter(m_colours), meanOf);
}

std::uint8_t GifPalette::indexOf(QRgb colour) {
    colour |= 0xFF00'0000;
    const auto found = m_known.find(colour);
    return found != m_known.end() ? found->second
                                  : m_known.emplace(colour, nearest(colour)).first->second;
}

std::uint8_t GifPalette::nearest(QRgb colour) const {
    std::size_t best = 0;
    int leastDistance = std::numeric_limits<int>::max();
    for (std::size_t i = 0; i < m_colours.size(); ++i) {
        int distance = 0;
        for (const Part part : kParts) {
            const int difference = part(m_colours[i]) - part(colour);
            distance += difference * difference;
        }
        if (distance < leastDistance) {
            leastDistance = distance;
            best = i;
        }
    }
    return static_cast<std::uint8_t>(best);
}

} // namespace raincast
