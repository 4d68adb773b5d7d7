// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_time.h"
#include "radar/catalogue/antenna_positions.h"
#include "radar/catalogue/product.h"
#include "tree/weather_warning.h"

#include <QByteArray>

#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

namespace raincast {

/// Why a listing may be empty or old.
enum class SourceState {
    ok,
    noProduct, ///< the radar makes no such product
    radarDown, ///< the radar itself is down
    provider,  ///< who provides the frames does not answer
    network,   ///< this machine has no network
};

/// Which bytes a frame has at the moment.
struct FrameStamp {
    QByteArray version;     ///< other bytes have another one
    bool mayChange = false; ///< other bytes may come

    friend bool operator==(const FrameStamp&, const FrameStamp&) = default;
};

/// The products that a source has read so far.
struct SourceCounts {
    std::uint64_t read = 0;
    std::uint64_t failed = 0; ///< they could not be decoded
};

/// Where the tree's pictures come from. Sites are named by their three letters. All pictures are
/// GIFs of 600 × 550 pixels whose ground is transparent white, given as the file's bytes. The same
/// question gets the same bytes, except for a frame whose stamp says that it may change. Several
/// threads may ask at once.
class FrameSource {
public:
    using Ready = std::function<void()>;

    virtual ~FrameSource() = default;

    /// Somebody is going to ask for the times of a site's frames. `ready` is called once, now or
    /// later and in any thread, when it is worth asking: the source may have to look elsewhere.
    virtual void prepareTimes(std::string_view /*site*/, Product /*product*/, Ready ready) const {
        ready();
    }
    /// The same for a frame, and for warnings.
    virtual void prepareFrame(
        std::string_view /*site*/, Product /*product*/, FileTime /*time*/, Ready ready
    ) const {
        ready();
    }
    virtual void prepareWarnings(Ready ready) const { ready(); }

    /// The times of the frames there are, oldest first, whole minutes, none after `upTo`. Empty for
    /// an unknown site.
    [[nodiscard]] virtual std::vector<FileTime>
    frameTimes(std::string_view site, Product product, FileTime upTo) const = 0;

    /// The frame of one of those times; nothing when there is none.
    [[nodiscard]] virtual std::optional<QByteArray>
    frame(std::string_view site, Product product, FileTime time) const = 0;

    /// The same with 2 or 4 pixels in the place of one, across and down; nothing, too, when the
    /// source has no cells of it any more.
    [[nodiscard]] virtual std::optional<QByteArray> sharpFrame(
        std::string_view /*site*/, Product /*product*/, FileTime /*time*/, int /*detail*/
    ) const {
        return std::nullopt;
    }

    [[nodiscard]] virtual FrameStamp
    stamp(std::string_view /*site*/, Product /*product*/, FileTime /*time*/) const {
        return {};
    }

    [[nodiscard]] virtual SourceState state(std::string_view /*site*/, Product /*product*/) const {
        return SourceState::ok;
    }

    /// False while it is not known yet which frames there are.
    [[nodiscard]] virtual bool isReady() const { return true; }

    /// Nothing where the source reads no products.
    [[nodiscard]] virtual std::optional<SourceCounts> counts() const { return std::nullopt; }

    /// The antenna that is in the middle of a site's pictures; null for an unknown site.
    [[nodiscard]] virtual const AntennaPosition* antenna(std::string_view site) const {
        return findAntenna(site);
    }

    /// The warnings that hold at a time and reach into a site's picture, or more of them.
    [[nodiscard]] virtual WeatherWarnings
    warnings(std::string_view site, Range range, FileTime time) const = 0;
};

/// "ok", "no-product", "radar-down", "provider", "network"
[[nodiscard]] std::string_view wordOf(SourceState state);

} // namespace raincast
