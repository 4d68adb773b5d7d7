// SPDX-License-Identifier: MIT
#pragma once

#include "tree/frame_source.h"

#include <QByteArray>

#include <atomic>
#include <mutex>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace raincast {

/// A whole GIF that shows nothing, with a text in it.
inline QByteArray gifThatSays(const QByteArray& text) {
    constexpr qsizetype kMost = 255;
    QByteArray gif("GIF89a\x58\x02\x26\x02\0\0\0", 13);
    for (qsizetype begin = 0; begin < text.size(); begin += kMost) {
        const QByteArray piece = text.mid(begin, kMost);
        gif += "!\xFE" + QByteArray(1, static_cast<char>(piece.size())) + piece + '\0';
    }
    return gif + ';';
}

/// Frames that a test sets; each picture says what it is.
class FakeFrames : public FrameSource {
public:
    std::set<FileTime> times;            ///< of every site and product
    std::set<FileTime> lost;             ///< times that are listed but have no frame any more
    std::set<FileTime> changing;         ///< times whose frames may have other bytes later
    mutable std::vector<FileTime> order; ///< in which frames were asked for
    mutable std::atomic<int> made = 0;   ///< pictures so far
    QByteArray text;                     ///< what every picture begins to say
    QByteArray picture;                  ///< every frame, unless empty
    bool hasSharp = true;                ///< sharp frames say their detail, too

    [[nodiscard]] std::vector<FileTime>
    frameTimes(std::string_view, Product, FileTime upTo) const override {
        return {times.begin(), times.upper_bound(upTo)};
    }
    [[nodiscard]] std::optional<QByteArray>
    frame(std::string_view site, Product product, FileTime time) const override {
        ++made;
        const std::lock_guard lock(m_mutex);
        order.push_back(time);
        const bool isThere = times.contains(time) && !lost.contains(time);
        const QByteArray bytes = picture.isEmpty() ? says(site, codeOf(product)) : picture;
        return isThere ? std::optional(bytes) : std::nullopt;
    }
    [[nodiscard]] std::optional<QByteArray>
    sharpFrame(std::string_view site, Product product, FileTime time, int detail) const override {
        const auto usual = frame(site, product, time);
        if (!usual || !hasSharp) {
            return std::nullopt;
        }
        return picture.isEmpty() ? says(site, std::string(codeOf(product)) + std::to_string(detail))
                                 : picture;
    }
    [[nodiscard]] FrameStamp stamp(std::string_view, Product, FileTime time) const override {
        return {{}, changing.contains(time)};
    }
    /// One whose outline and text change with the minute.
    [[nodiscard]] WeatherWarnings
    warnings(std::string_view site, Range, FileTime time) const override {
        ++made;
        const AntennaPosition& antenna = *findAntenna(site);
        const double north = static_cast<double>(time / kFileTimePerMinute % 60) / 100;
        const WeatherWarning::Corner corner{antenna.latitude + north, antenna.longitude};
        WeatherWarning warning;
        warning.text = QString::fromUtf8(text) + QString::number(time);
        warning.polygons = {
            {{corner,
              {corner.latitude + 1, corner.longitude},
              {corner.latitude, corner.longitude + 1}}}};
        return {{warning}, false};
    }

private:
    [[nodiscard]] QByteArray says(std::string_view site, std::string_view what) const {
        return gifThatSays(text + std::string(site).c_str() + std::string(what).c_str());
    }

    mutable std::mutex m_mutex;
};

} // namespace raincast
